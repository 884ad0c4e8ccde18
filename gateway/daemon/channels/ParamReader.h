#pragma once

#include "StreamChannel.h"

#include <QHostAddress>

// Reads a stream device's parameters for its worker. Their rules (range,
// form, default) are the module type's ParamSchema, which checked every
// value before the gateway stored it and supplies a default for every key
// never written, so the reader only converts the text into what the device
// needs. A key that is missing or does not convert, which only a caller that
// bypassed the schema can cause, makes ok() false for good: a worker reads
// every value and checks once.
class ParamReader
{
public:
    explicit ParamReader(const StreamChannel::Params &params) : m_params(params) {}

    int integer(const char *key);
    quint16 port(const char *key);
    QHostAddress ipv4(const char *key);
    // "true" in any case is true, anything else false.
    bool boolean(const char *key);
    QByteArray text(const char *key);

    bool ok() const { return m_ok; }

private:
    QByteArray value(const char *key);

    const StreamChannel::Params &m_params;
    bool m_ok = true;
};
