#pragma once

#include "RecvEvent.h"

// Splits an incoming text at a separator and checks field lengths.
class RecvEvent4TextProtocolParse : public RecvEvent
{
    Q_OBJECT
    Q_PROPERTY(bool compareCharLengthEnable READ compareCharLengthEnable WRITE setCompareCharLengthEnable NOTIFY compareCharLengthEnableChanged)
    Q_PROPERTY(int charsLength READ charsLength WRITE setCharsLength NOTIFY charsLengthChanged)
    Q_PROPERTY(QString splitChar READ splitChar WRITE setSplitChar NOTIFY splitCharChanged)

public:
    explicit RecvEvent4TextProtocolParse(QObject *parent = nullptr);

    Q_INVOKABLE bool compareCharLengthEnable() const { return m_compareCharLengthEnable; }
    Q_INVOKABLE void setCompareCharLengthEnable(bool value);
    Q_INVOKABLE int charsLength() const { return m_charsLength; }
    Q_INVOKABLE void setCharsLength(int value);
    Q_INVOKABLE QString splitChar() const { return m_splitChar; }
    Q_INVOKABLE void setSplitChar(QString value);

signals:
    void compareCharLengthEnableChanged();
    void charsLengthChanged();
    void splitCharChanged();
    void splitCharsChanged(); // declared by this kind as well

private:
    bool m_compareCharLengthEnable = false;
    int m_charsLength = 0;
    QString m_splitChar = QStringLiteral(";");
    QStringList m_parsed; // not exposed
};
