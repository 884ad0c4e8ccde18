#include "RecvEvent4TextProtocolParse.h"

RecvEvent4TextProtocolParse::RecvEvent4TextProtocolParse(QObject *parent)
    : RecvEvent(parent, 1)
{
}

void RecvEvent4TextProtocolParse::setCompareCharLengthEnable(bool value)
{
    m_compareCharLengthEnable = value;
    emit compareCharLengthEnableChanged();
}

void RecvEvent4TextProtocolParse::setCharsLength(int value)
{
    m_charsLength = value;
    emit charsLengthChanged();
}

void RecvEvent4TextProtocolParse::setSplitChar(QString value)
{
    m_splitChar = value;
    emit splitCharChanged();
}
