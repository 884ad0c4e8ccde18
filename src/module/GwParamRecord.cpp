#include "GwParamRecord.h"

#include <cstring>
#include <new>

GwParamRecord::GwParamRecord()
    : m_record(new (std::nothrow) GW_PARAM_RECORD{})
{
}

void GwParamRecord::boundedCopy(char *dst, int size, const char *src, int srcLen)
{
    if (!dst || !src || size <= 0)
        return;
    const int n = qMax(0, qMin(srcLen, size - 1));
    std::memcpy(dst, src, size_t(n));
    dst[n] = '\0';
}

int GwParamRecord::addEntry(const QByteArray &key, const QByteArray &value)
{
    if (!m_record || m_record->count < 0 || m_record->count >= GW_PARAM_MAX_ENTRIES)
        return -1;
    const int slot = m_record->count;
    setEntry(slot, key, value);
    m_record->count = slot + 1;
    return slot;
}

void GwParamRecord::setEntry(int slot, const QByteArray &key, const QByteArray &value)
{
    if (!m_record || slot < 0 || slot >= GW_PARAM_MAX_ENTRIES)
        return;
    GW_PARAM_ENTRY &entry = m_record->entries[slot];
    boundedCopy(entry.key, kCopyLimit, key.constData(), key.size());
    boundedCopy(entry.value, kCopyLimit, value.constData(), value.size());
}

void GwParamRecord::setCount(int count)
{
    if (m_record)
        m_record->count = qBound(0, count, GW_PARAM_MAX_ENTRIES);
}

int GwParamRecord::count() const
{
    return m_record ? m_record->count : 0;
}

QByteArray GwParamRecord::key(int slot) const
{
    if (!m_record || slot < 0 || slot >= GW_PARAM_MAX_ENTRIES)
        return QByteArray();
    const char *k = m_record->entries[slot].key;
    return QByteArray(k, int(strnlen(k, GW_PARAM_KEY_SIZE)));
}

QByteArray GwParamRecord::value(int slot) const
{
    if (!m_record || slot < 0 || slot >= GW_PARAM_MAX_ENTRIES)
        return QByteArray();
    const char *v = m_record->entries[slot].value;
    return QByteArray(v, int(strnlen(v, GW_PARAM_VALUE_SIZE)));
}

uint32_t GwParamRecord::readOne(int moduleId, const QByteArray &key, QByteArray &value, int addressId)
{
    GwParamRecord record;
    if (!record.isValid())
        return GW_ERR_NO_MEMORY;
    record.addEntry(key);
    const uint32_t rc = GW_PF_GetModuleParam(moduleId, record.data(), addressId);
    if (rc == GW_OK)
        value = record.value(0);
    return rc;
}

uint32_t GwParamRecord::writeOne(int moduleId, const QByteArray &key, const QByteArray &value, int addressId)
{
    GwParamRecord record;
    if (!record.isValid())
        return GW_ERR_NO_MEMORY;
    record.addEntry(key, value);
    return GW_PF_SetModuleParam(moduleId, record.data(), addressId);
}

QByteArray GwParamRecord::boolText(bool value)
{
    return value ? QByteArrayLiteral("true") : QByteArrayLiteral("false");
}

bool GwParamRecord::isTrueText(const QByteArray &text)
{
    return text == "true" || text == "True";
}
