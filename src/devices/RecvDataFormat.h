#pragma once
// Text forms of received bytes, shared by the device receive lists and the
// fieldbus address histories:
//   printable: 0x20..0x7E as characters, every other byte as "[XX]"
//   hex:       every byte as "[XX]"
//   entry:     "[yyyy-MM-dd hh:mm:ss.zzz] <form>"
// Formatting uses a lookup table, and the time stamp caches the text of the
// current second per thread (local-time conversion is slow when TZ is unset).

#include <QString>

class RecvDataFormat
{
public:
    static QString printable(const char *data, int length);
    static QString hex(const char *data, int length);
    // The current local time as "yyyy-MM-dd hh:mm:ss.zzz".
    static QString timeStamp();
    static QString entry(const QString &stamp, const QString &form);
};
