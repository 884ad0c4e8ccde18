#include "GatewayModule.h"

#include "GwErrorCodes.h"

GatewayModule::GatewayModule(const StoredModule &stored, const ParamSchema &schema, QObject *parent)
    : QObject(parent), m_id(stored.id), m_type(stored.type), m_name(stored.name), m_schema(schema),
      m_values(schema.defaults())
{
    // Stored values win over defaults; keys the schema no longer has are dropped.
    for (auto it = stored.params.cbegin(); it != stored.params.cend(); ++it)
        if (schema.find(it.key()))
            m_values.insert(it.key(), it.value());
}

quint32 GatewayModule::param(int addressId, const QByteArray &key, QByteArray *value) const
{
    if (addressId != -1)
        return GW_ERR_UNKNOWN_ADDRESS;
    if (key == "ConnectState") {
        *value = connectState() ? "true" : "false";
        return GW_OK;
    }
    if (m_schema.access(key) == ParamSchema::Access::ReadOnly)
        return statusParam(key, value);
    const auto it = m_values.constFind(key);
    if (it == m_values.cend())
        return GW_ERR_UNKNOWN_KEY;
    *value = it.value();
    return GW_OK;
}

quint32 GatewayModule::allParams(int addressId, ParamMap *values) const
{
    if (addressId != -1)
        return GW_ERR_UNKNOWN_ADDRESS;
    *values = m_values;
    values->insert("ConnectState", connectState() ? "true" : "false");
    return GW_OK;
}

quint32 GatewayModule::checkParams(int addressId, const ParamMap &changes) const
{
    if (addressId != -1)
        return GW_ERR_UNKNOWN_ADDRESS;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        if (const quint32 rc = m_schema.validate(it.key(), it.value()))
            return rc;
    return GW_OK;
}

quint32 GatewayModule::applyParams(int addressId, const ParamMap &changes)
{
    if (addressId != -1)
        return GW_ERR_UNKNOWN_ADDRESS;
    bool pending = false;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (m_values.value(it.key()) == it.value())
            continue;
        m_values.insert(it.key(), it.value());
        const ParamSchema::Key *key = m_schema.find(it.key());
        pending = pending || (isOpen() && key && key->integerValued());
    }
    return pending ? GW_ERR_PENDING_REOPEN : GW_OK;
}

quint32 GatewayModule::statusParam(const QByteArray &, QByteArray *) const
{
    return GW_ERR_UNKNOWN_KEY;
}

quint32 GatewayModule::runAction(const QByteArray &, const QByteArray &)
{
    return GW_ERR_NOT_SUPPORTED;
}

quint32 GatewayModule::addAddress(const QByteArray &, int, StoredAddress *)
{
    return GW_ERR_NOT_SUPPORTED;
}

quint32 GatewayModule::deleteAddress(int)
{
    return GW_ERR_NOT_SUPPORTED;
}

quint32 GatewayModule::validateAddress(int, const ParamMap &) const
{
    return GW_ERR_NOT_SUPPORTED;
}

quint32 GatewayModule::readData(int, QByteArray *) const
{
    return GW_ERR_NOT_SUPPORTED;
}

quint32 GatewayModule::plcWrite(int, const QByteArray &)
{
    return GW_ERR_NOT_SUPPORTED;
}

quint32 GatewayModule::plcRead(int, QByteArray *) const
{
    return GW_ERR_NOT_SUPPORTED;
}
