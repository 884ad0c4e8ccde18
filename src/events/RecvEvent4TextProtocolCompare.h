#pragma once

#include "RecvEvent.h"

// Compares an incoming text protocol and assembles a reply.
class RecvEvent4TextProtocolCompare : public RecvEvent
{
    Q_OBJECT
    Q_PROPERTY(bool compareCharLengthEnable READ compareCharLengthEnable WRITE setCompareCharLengthEnable NOTIFY compareCharLengthEnableChanged)
    Q_PROPERTY(bool responseEnable READ responseEnable WRITE setResponseEnable NOTIFY responseEnableChanged)
    Q_PROPERTY(int charsLength READ charsLength WRITE setCharsLength NOTIFY charsLengthChanged)
    Q_PROPERTY(QString inputSplitChar READ inputSplitChar WRITE setInputSplitChar NOTIFY inputSplitCharChanged)
    Q_PROPERTY(QString assembleSplitChar READ assembleSplitChar WRITE setAssembleSplitChar NOTIFY assembleSplitCharChanged)

public:
    explicit RecvEvent4TextProtocolCompare(QObject *parent = nullptr);

    Q_INVOKABLE bool compareCharLengthEnable() const { return m_compareCharLengthEnable; }
    Q_INVOKABLE void setCompareCharLengthEnable(bool value);
    Q_INVOKABLE bool responseEnable() const { return m_responseEnable; }
    Q_INVOKABLE void setResponseEnable(bool value);
    Q_INVOKABLE int charsLength() const { return m_charsLength; }
    Q_INVOKABLE void setCharsLength(int value);
    Q_INVOKABLE QString inputSplitChar() const { return m_inputSplitChar; }
    Q_INVOKABLE void setInputSplitChar(QString value);
    Q_INVOKABLE QString assembleSplitChar() const { return m_assembleSplitChar; }
    Q_INVOKABLE void setAssembleSplitChar(QString value);

signals:
    void compareCharLengthEnableChanged();
    void responseEnableChanged();
    void charsLengthChanged();
    void inputSplitCharChanged();
    void assembleSplitCharChanged();

private:
    bool m_compareCharLengthEnable = false;
    bool m_responseEnable = false;
    int m_charsLength = 0;
    QString m_inputSplitChar = QStringLiteral(";");
    QString m_assembleSplitChar = QStringLiteral(";");
};
