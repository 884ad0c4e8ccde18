#include "RecvEvent.h"

RecvEvent::RecvEvent(QObject *parent, int kind)
    : QObject(parent)
    , m_kind(kind)
{
}

void RecvEvent::setSplitChars(const QStringList &chars)
{
    if (chars == m_splitChars)
        return;
    m_splitChars = chars;
    emit splitCharsChanged();
}

void RecvEvent::setEnumIndex(int kind)
{
    if (kind == m_kind)
        return;
    m_kind = kind;
    emit enumIndexChanged();
}
