#include "RecvEvent4ByteMatchCompare.h"

RecvEvent4ByteMatchCompare::RecvEvent4ByteMatchCompare(QObject *parent)
    : RecvEvent(parent, 3)
{
}

void RecvEvent4ByteMatchCompare::setByteCompareEnable(bool value)
{
    m_byteCompareEnable = value;
    emit byteCompareEnableChanged();
}

void RecvEvent4ByteMatchCompare::setByteLength(int value)
{
    m_byteLength = value;
    emit byteLengthChanged();
}

void RecvEvent4ByteMatchCompare::setAsciiDataEnable(bool value)
{
    m_asciiDataEnable = value;
    emit asciiDataEnableChanged();
}

void RecvEvent4ByteMatchCompare::setMatchRule(int value)
{
    m_matchRule = value;
    emit matchRuleChanged();
}

void RecvEvent4ByteMatchCompare::setResponseEnable(bool value)
{
    m_responseEnable = value;
    emit responseEnableChanged();
}

void RecvEvent4ByteMatchCompare::setAssembleSplitChar(QString value)
{
    m_assembleSplitChar = value;
    emit assembleSplitCharChanged();
}
