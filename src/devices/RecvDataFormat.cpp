#include "RecvDataFormat.h"

#include <QDateTime>
#include <array>
#include <cstdio>
#include <ctime>

namespace {
// "[XX]" for every byte value.
struct HexTable {
    std::array<std::array<QChar, 4>, 256> cells;
    HexTable()
    {
        static const char digits[] = "0123456789ABCDEF";
        for (int b = 0; b < 256; ++b)
            cells[size_t(b)] = {QLatin1Char('['), QLatin1Char(digits[b >> 4]), QLatin1Char(digits[b & 0xF]),
                                QLatin1Char(']')};
    }
};

const HexTable &hexTable()
{
    static const HexTable table;
    return table;
}

bool isPrintable(unsigned char b)
{
    return b >= 0x20 && b <= 0x7E;
}

// "yyyy-MM-dd hh:mm:ss" of a second since the epoch, in local time. Qt's date
// formatting is not used: it goes through the system locale, whose first use
// in a process is not thread safe in Qt 5.15 (concurrent first callers can get
// an empty text), and stamps are made on gateway threads.
QString localSecondText(qint64 secondsSinceEpoch)
{
    const std::time_t t = static_cast<std::time_t>(secondsSinceEpoch);
    std::tm local{};
    if (!localtime_r(&t, &local))
        return QStringLiteral("0000-00-00 00:00:00");
    char text[32];
    const int n = std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900,
                                local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return QString::fromLatin1(text, n > 0 && n < int(sizeof(text)) ? n : 0);
}
} // namespace

QString RecvDataFormat::printable(const char *data, int length)
{
    if (!data || length <= 0)
        return QString();
    const HexTable &table = hexTable();
    QString out(length * 4, Qt::Uninitialized);
    QChar *p = out.data();
    for (int i = 0; i < length; ++i) {
        const unsigned char b = static_cast<unsigned char>(data[i]);
        if (isPrintable(b)) {
            *p++ = QLatin1Char(char(b));
        } else {
            const auto &cell = table.cells[b];
            std::copy(cell.begin(), cell.end(), p);
            p += 4;
        }
    }
    out.truncate(int(p - out.constData()));
    return out;
}

QString RecvDataFormat::hex(const char *data, int length)
{
    if (!data || length <= 0)
        return QString();
    const HexTable &table = hexTable();
    QString out(length * 4, Qt::Uninitialized);
    QChar *p = out.data();
    for (int i = 0; i < length; ++i) {
        const auto &cell = table.cells[static_cast<unsigned char>(data[i])];
        std::copy(cell.begin(), cell.end(), p);
        p += 4;
    }
    return out;
}

QString RecvDataFormat::timeStamp()
{
    thread_local qint64 cachedSecond = -1;
    thread_local QString cachedText;
    const qint64 ms = QDateTime::currentMSecsSinceEpoch();
    const qint64 second = ms / 1000;
    if (second != cachedSecond) {
        cachedSecond = second;
        cachedText = localSecondText(second) + QLatin1Char('.');
    }
    const int millis = int(ms % 1000);
    QString stamp = cachedText;
    stamp += QLatin1Char(char('0' + millis / 100));
    stamp += QLatin1Char(char('0' + millis / 10 % 10));
    stamp += QLatin1Char(char('0' + millis % 10));
    return stamp;
}

QString RecvDataFormat::entry(const QString &stamp, const QString &form)
{
    QString out;
    out.reserve(stamp.size() + form.size() + 3);
    out += QLatin1Char('[');
    out += stamp;
    out += QLatin1String("] ");
    out += form;
    return out;
}
