#include "RecvEvent4Script.h"

RecvEvent4Script::RecvEvent4Script(QObject *parent)
    : RecvEvent(parent, 4)
{
}

void RecvEvent4Script::setResponseEnable(bool value)
{
    m_responseEnable = value;
    emit responseEnableChanged();
}

void RecvEvent4Script::setSplitChar(QString value)
{
    m_splitChar = value;
    emit splitCharChanged();
}
