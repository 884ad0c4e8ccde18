#pragma once

#include "RecvEvent.h"

// Matches received bytes against rules.
class RecvEvent4ByteMatchCompare : public RecvEvent
{
    Q_OBJECT
    Q_PROPERTY(bool byteCompareEnable READ byteCompareEnable WRITE setByteCompareEnable NOTIFY byteCompareEnableChanged)
    Q_PROPERTY(int byteLength READ byteLength WRITE setByteLength NOTIFY byteLengthChanged)
    Q_PROPERTY(bool asciiDataEnable READ asciiDataEnable WRITE setAsciiDataEnable NOTIFY asciiDataEnableChanged)
    Q_PROPERTY(int matchRule READ matchRule WRITE setMatchRule NOTIFY matchRuleChanged)
    Q_PROPERTY(bool responseEnable READ responseEnable WRITE setResponseEnable NOTIFY responseEnableChanged)
    Q_PROPERTY(QString assembleSplitChar READ assembleSplitChar WRITE setAssembleSplitChar NOTIFY assembleSplitCharChanged)

public:
    explicit RecvEvent4ByteMatchCompare(QObject *parent = nullptr);

    Q_INVOKABLE bool byteCompareEnable() const { return m_byteCompareEnable; }
    Q_INVOKABLE void setByteCompareEnable(bool value);
    Q_INVOKABLE int byteLength() const { return m_byteLength; }
    Q_INVOKABLE void setByteLength(int value);
    Q_INVOKABLE bool asciiDataEnable() const { return m_asciiDataEnable; }
    Q_INVOKABLE void setAsciiDataEnable(bool value);
    Q_INVOKABLE int matchRule() const { return m_matchRule; }
    Q_INVOKABLE void setMatchRule(int value);
    Q_INVOKABLE bool responseEnable() const { return m_responseEnable; }
    Q_INVOKABLE void setResponseEnable(bool value);
    Q_INVOKABLE QString assembleSplitChar() const { return m_assembleSplitChar; }
    Q_INVOKABLE void setAssembleSplitChar(QString value);

signals:
    void byteCompareEnableChanged();
    void byteLengthChanged();
    void asciiDataEnableChanged();
    void matchRuleChanged();
    void responseEnableChanged();
    void assembleSplitCharChanged();

private:
    bool m_byteCompareEnable = false;
    int m_byteLength = 0;
    bool m_asciiDataEnable = false;
    int m_matchRule = 0;
    bool m_responseEnable = false;
    QString m_assembleSplitChar = QStringLiteral(";");
};
