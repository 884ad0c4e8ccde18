#pragma once
// The payload of a gateway event as the client library delivers it: int32
// fields in host order, one after the other (module id and state, attempt
// and delay, ...).

#include <QByteArray>
#include <QtGlobal>
#include <cstring>
#include <initializer_list>

inline QByteArray eventPayload(std::initializer_list<qint32> fields)
{
    QByteArray payload(int(fields.size() * sizeof(qint32)), '\0');
    std::memcpy(payload.data(), fields.begin(), fields.size() * sizeof(qint32));
    return payload;
}
