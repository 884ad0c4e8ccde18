#pragma once
// Owns one zero-filled gateway parameter record and fills or reads its
// entries. Every gateway parameter call of the module goes through it, so the
// bounded copy (at most 127 bytes plus NUL for keys and values) lives here,
// and so do the one-key read and write and the boolean text of the gateway.

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

    // One parameter of a module (addressId -1) or of one of its addresses, in a
    // record of one entry. They return the gateway's code, or 0xE0000002 when
    // the record cannot be allocated (no call is made then), and log nothing:
    // each caller logs a failure with its own text.
    static uint32_t readOne(int moduleId, const QByteArray &key, QByteArray &value,
                            int addressId = GW_MODULE_ADDRESS);
    static uint32_t writeOne(int moduleId, const QByteArray &key, const QByteArray &value,
                             int addressId = GW_MODULE_ADDRESS);

    // Booleans cross as "true" / "false"; read back, exactly "true" or "True" is true.
    static QByteArray boolText(bool value);
    static bool isTrueText(const QByteArray &text);

private:
    std::unique_ptr<GW_PARAM_RECORD> m_record;
};
