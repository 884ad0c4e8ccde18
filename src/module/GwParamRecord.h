#pragma once
// Owns one zero-filled gateway parameter record and fills or reads its
// entries. Every gateway parameter call of the module goes through it, so the
// bounded copy (at most 127 bytes plus NUL for keys and values) lives here.

#include "GwPlatform.h"

#include <QByteArray>
#include <memory>

class GwParamRecord
{
public:
    GwParamRecord(); // allocates without throwing; check isValid()

    bool isValid() const { return m_record != nullptr; }

    // Appends an entry after those in use and raises count; returns its slot,
    // or -1 when the record is full or invalid.
    int addEntry(const QByteArray &key, const QByteArray &value = QByteArray());
    // Writes a fixed slot without touching count.
    void setEntry(int slot, const QByteArray &key, const QByteArray &value = QByteArray());
    void setCount(int count);
    int count() const;

    QByteArray key(int slot = 0) const;
    QByteArray value(int slot = 0) const; // up to the NUL, within the value field

    GW_PARAM_RECORD *data() { return m_record.get(); }

    // The module's bounded copy: nothing happens when dst, src or size is
    // missing; otherwise min(srcLen, size - 1) bytes and a NUL are written.
    static void boundedCopy(char *dst, int size, const char *src, int srcLen);

    static constexpr int kCopyLimit = 128; // 127 bytes + NUL, for keys and values

private:
    std::unique_ptr<GW_PARAM_RECORD> m_record;
};
