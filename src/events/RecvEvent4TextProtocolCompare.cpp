#include "RecvEvent4TextProtocolCompare.h"

RecvEvent4TextProtocolCompare::RecvEvent4TextProtocolCompare(QObject *parent)
    : RecvEvent(parent, 2)
{
}

void RecvEvent4TextProtocolCompare::setCompareCharLengthEnable(bool value)
{
    m_compareCharLengthEnable = value;
    emit compareCharLengthEnableChanged();
}

void RecvEvent4TextProtocolCompare::setResponseEnable(bool value)
{
    m_responseEnable = value;
    emit responseEnableChanged();
}

void RecvEvent4TextProtocolCompare::setCharsLength(int value)
{
    m_charsLength = value;
    emit charsLengthChanged();
}

void RecvEvent4TextProtocolCompare::setInputSplitChar(QString value)
{
    m_inputSplitChar = value;
    emit inputSplitCharChanged();
}

void RecvEvent4TextProtocolCompare::setAssembleSplitChar(QString value)
{
    m_assembleSplitChar = value;
    emit assembleSplitCharChanged();
}
