#include "GeneralDeviceSendData.h"

GeneralDeviceSendData::GeneralDeviceSendData(QObject *parent)
    : QObject(parent)
{
}

void GeneralDeviceSendData::setText(QString text)
{
    m_text = text;
}

void GeneralDeviceSendData::setHexEnable(bool enable)
{
    m_hexEnable = enable;
    emit hexEnableChanged();
}

QString GeneralDeviceSendData::hexToString(const QString &hex)
{
    QString digits = hex;
    digits.remove(QLatin1Char(' '));
    if (digits.size() % 2)
        digits.chop(1);
    if (digits.isEmpty())
        return QString();
    // fromHex skips characters that are not hexadecimal digits.
    const QByteArray bytes = QByteArray::fromHex(digits.toLatin1());
    if (bytes.isNull())
        return QString();
    const int zero = bytes.indexOf('\0');
    return QString::fromLatin1(zero < 0 ? bytes : bytes.left(zero));
}
