#include "GeneralDeviceSendData.h"

#include <QStringList>

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

QString GeneralDeviceSendData::stringToHex(const QString &text)
{
    QStringList codes;
    for (const uint code : text.toUcs4())
        codes.append(QString::number(code, 16).toUpper().rightJustified(2, QLatin1Char('0')));
    return codes.join(QLatin1Char(' '));
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
