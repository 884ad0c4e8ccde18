#pragma once

#include "RecvEvent.h"

// Hands received data to a script.
class RecvEvent4Script : public RecvEvent
{
    Q_OBJECT
    Q_PROPERTY(bool responseEnable READ responseEnable WRITE setResponseEnable NOTIFY responseEnableChanged)
    Q_PROPERTY(QString splitChar READ splitChar WRITE setSplitChar NOTIFY splitCharChanged)

public:
    explicit RecvEvent4Script(QObject *parent = nullptr);

    Q_INVOKABLE bool responseEnable() const { return m_responseEnable; }
    Q_INVOKABLE void setResponseEnable(bool value);
    Q_INVOKABLE QString splitChar() const { return m_splitChar; }
    Q_INVOKABLE void setSplitChar(QString value);

signals:
    void responseEnableChanged();
    void splitCharChanged();

private:
    bool m_responseEnable = false;
    QString m_splitChar = QStringLiteral(";");
};
