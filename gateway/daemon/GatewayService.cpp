#include "GatewayService.h"

#include "FieldbusModule.h"
#include "GwErrorCodes.h"
#include "GwFrame.h"
#include "GwHopStamps.h"
#include "GwPlatform.h"
#include "GwWireWriter.h"
#include "StreamChannel.h"
#include "StreamModule.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QSerialPortInfo>
#include <QtDebug>

namespace {
constexpr int kMaxNameBytes = 551; // the listed name field holds 552 bytes with its NUL

bool isFieldbusType(const QByteArray &type)
{
    return ParamSchema::forAddressOf(type) != nullptr;
}

QByteArray joinTab(const QStringList &parts)
{
    return parts.join(QLatin1Char('\t')).toUtf8();
}
} // namespace

GatewayService::GatewayService(ChannelFactory channels, QObject *parent) : QObject(parent), m_channels(channels) {}

GatewayService::~GatewayService()
{
    stop();
}

bool GatewayService::start(const QString &stateDir)
{
    if (!m_store.open(stateDir)) {
        qWarning("cannot open the state database in %s: %s", qPrintable(stateDir), qPrintable(m_store.lastError()));
        return false;
    }
    for (const StoredModule &stored : m_store.load()) {
        GatewayModule *created = createModule(stored);
        if (!created) {
            qWarning("module %d of unknown type %s skipped", stored.id, stored.type.constData());
            continue;
        }
        if (stored.open) {
            const quint32 rc = created->setOpen(true);
            if (rc != GW_OK)
                qWarning("module %d could not be reopened, error=%x", stored.id, rc);
        }
    }
    return true;
}

void GatewayService::stop()
{
    for (GatewayModule *module : qAsConst(m_modules))
        delete module; // closes its device and waits for its thread
    m_modules.clear();
}

GatewayModule *GatewayService::createModule(const StoredModule &stored)
{
    const ParamSchema *schema = ParamSchema::forModuleType(stored.type);
    if (!schema)
        return nullptr;
    GatewayModule *created = isFieldbusType(stored.type)
        ? static_cast<GatewayModule *>(new FieldbusModule(stored, *schema, this))
        : new StreamModule(stored, *schema, m_channels(stored.type, nullptr), this);
    // Direct: a stream module emits these on its device's worker thread;
    // encoding and pushing are safe there (see GatewayServer).
    connect(created, &GatewayModule::eventRaised, this, &GatewayService::onEvent, Qt::DirectConnection);
    connect(created, &GatewayModule::deviceStatusChanged, this, &GatewayService::onDeviceStatus,
            Qt::DirectConnection);
    connect(created, &GatewayModule::resultsReady, this, &GatewayService::onResults, Qt::DirectConnection);
    connect(created, &GatewayModule::logLine, this,
            [id = stored.id](const QString &text) { qInfo("module %d: %s", id, qPrintable(text)); });
    m_modules.insert(stored.id, created);
    return created;
}

GatewayModule *GatewayService::module(int id) const
{
    return m_modules.value(id, nullptr);
}

QList<ModuleSummary> GatewayService::modules(int capacity) const
{
    QList<ModuleSummary> list;
    for (GatewayModule *module : m_modules) {
        if (list.size() >= capacity)
            break;
        list.append({module->id(), module->connectState(), module->type(), module->name()});
    }
    return list;
}

quint32 GatewayService::addModule(const QByteArray &type, const QByteArray &name, int *id)
{
    const ParamSchema *schema = ParamSchema::forModuleType(type);
    if (!schema)
        return GW_ERR_UNKNOWN_TYPE;
    if (name.isEmpty())
        return GW_ERR_NAME_EMPTY;
    if (name.size() > kMaxNameBytes)
        return GW_ERR_VALUE_TOO_LONG;
    StoredModule stored;
    stored.type = type;
    stored.name = name;
    stored.params = schema->defaults();
    stored.id = m_store.addModule(type, name, stored.params);
    if (stored.id == 0) {
        qWarning("storing a new %s failed: %s", type.constData(), qPrintable(m_store.lastError()));
        return GW_ERR_STORAGE;
    }
    createModule(stored);
    *id = stored.id;
    return GW_OK;
}

quint32 GatewayService::deleteModule(int id)
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    if (!m_store.deleteModule(id))
        return GW_ERR_STORAGE;
    m_modules.remove(id);
    delete found;
    return GW_OK;
}

quint32 GatewayService::renameModule(int id, const QByteArray &name)
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    if (name.isEmpty())
        return GW_ERR_NAME_EMPTY;
    if (name.size() > kMaxNameBytes)
        return GW_ERR_VALUE_TOO_LONG;
    if (!m_store.renameModule(id, name))
        return GW_ERR_STORAGE;
    found->setName(name);
    return GW_OK;
}

quint32 GatewayService::params(int id, int addressId, const QList<QByteArray> &keys,
                               QList<QPair<QByteArray, QByteArray>> *out) const
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    out->clear();
    if (keys.isEmpty()) {
        ParamMap all;
        if (const quint32 rc = found->allParams(addressId, &all))
            return rc;
        for (auto it = all.cbegin(); it != all.cend(); ++it)
            out->append({it.key(), it.value()});
        return GW_OK;
    }
    for (const QByteArray &key : keys) {
        QByteArray value;
        if (const quint32 rc = found->param(addressId, key, &value))
            return rc;
        out->append({key, value});
    }
    return GW_OK;
}

quint32 GatewayService::setParams(int id, int addressId, const QList<QPair<QByteArray, QByteArray>> &pairs)
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    ParamMap changes;
    ParamMap actions; // checked with the settings, run after them, never stored
    QByteArray connectState;
    for (const auto &pair : pairs) {
        if (pair.first == "ConnectState" && addressId == -1)
            connectState = pair.second;
        else if (addressId == -1 && found->schema().access(pair.first) == ParamSchema::Access::Action)
            actions.insert(pair.first, pair.second);
        else
            changes.insert(pair.first, pair.second);
    }
    if (!connectState.isEmpty() && connectState != "true" && connectState != "false")
        return GW_ERR_INVALID_VALUE;
    if (const quint32 rc = found->checkParams(addressId, changes))
        return rc;
    if (const quint32 rc = found->checkParams(addressId, actions))
        return rc;
    quint32 result = GW_OK;
    if (!changes.isEmpty()) {
        if (!m_store.setParams(id, addressId, changes))
            return GW_ERR_STORAGE;
        result = found->applyParams(addressId, changes);
    }
    if (!connectState.isEmpty())
        if (const quint32 rc = setConnectState(found, connectState))
            return rc;
    for (auto it = actions.cbegin(); it != actions.cend(); ++it)
        if (const quint32 rc = found->runAction(it.key(), it.value()))
            return rc;
    return result;
}

quint32 GatewayService::setConnectState(GatewayModule *module, const QByteArray &value)
{
    const bool open = value == "true";
    const quint32 rc = module->setOpen(open);
    if (rc != GW_OK)
        return rc;
    if (!m_store.setOpen(module->id(), open))
        qWarning("module %d: the open state could not be stored: %s", module->id(), qPrintable(m_store.lastError()));
    return GW_OK;
}

quint32 GatewayService::addresses(int id, int capacity, QList<StoredAddress> *out) const
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    *out = found->addresses().mid(0, qMax(capacity, 0));
    return GW_OK;
}

quint32 GatewayService::addAddress(int id, const QByteArray &name, int direction, int *addressId)
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    StoredAddress added;
    if (const quint32 rc = found->addAddress(name, direction, &added))
        return rc;
    if (!m_store.addAddress(id, added)) {
        found->deleteAddress(added.id);
        return GW_ERR_STORAGE;
    }
    *addressId = added.id;
    return GW_OK;
}

quint32 GatewayService::deleteAddress(int id, int addressId)
{
    GatewayModule *found = module(id);
    if (!found)
        return GW_ERR_UNKNOWN_MODULE;
    QByteArray unused;
    if (const quint32 rc = found->readData(addressId, &unused))
        return rc;
    if (!m_store.deleteAddress(id, addressId))
        return GW_ERR_STORAGE;
    return found->deleteAddress(addressId);
}

quint32 GatewayService::validateAddress(int id, int direction, const ParamMap &params) const
{
    GatewayModule *found = module(id);
    return found ? found->validateAddress(direction, params) : GW_ERR_UNKNOWN_MODULE;
}

quint32 GatewayService::readData(int id, int addressId, QByteArray *data) const
{
    GatewayModule *found = module(id);
    return found ? found->readData(addressId, data) : GW_ERR_UNKNOWN_MODULE;
}

quint32 GatewayService::writeValues(int id, int addressId, int count, const QByteArray &text, bool isFloat)
{
    GatewayModule *found = module(id);
    return found ? found->writeValues(addressId, count, text, isFloat) : GW_ERR_UNKNOWN_MODULE;
}

quint32 GatewayService::writeString(int id, int addressId, const QByteArray &text)
{
    GatewayModule *found = module(id);
    return found ? found->writeString(addressId, text) : GW_ERR_UNKNOWN_MODULE;
}

quint32 GatewayService::plcWrite(int id, int addressId, const QByteArray &data)
{
    GatewayModule *found = module(id);
    return found ? found->plcWrite(addressId, data) : GW_ERR_UNKNOWN_MODULE;
}

quint32 GatewayService::plcRead(int id, int addressId, QByteArray *data) const
{
    GatewayModule *found = module(id);
    return found ? found->plcRead(addressId, data) : GW_ERR_UNKNOWN_MODULE;
}

QByteArray GatewayService::localIpList() const
{
    QStringList ips;
    for (const QHostAddress &address : QNetworkInterface::allAddresses())
        if (address.protocol() == QAbstractSocket::IPv4Protocol && !ips.contains(address.toString()))
            ips.append(address.toString());
    return joinTab(ips);
}

// Listing the system's ports walks sysfs and udev (some 15 ms); a page that
// loads many serial devices asks once per device, so the list is kept for a
// second. A port plugged in appears at the latest a second later.
QByteArray GatewayService::serialList() const
{
    if (!m_serialListAge.isValid() || m_serialListAge.hasExpired(kSerialListLifeMs)) {
        m_systemSerialPorts.clear();
        for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
            m_systemSerialPorts.append(info.systemLocation());
        m_serialListAge.start();
    }
    QStringList ports = m_systemSerialPorts;
    for (const QString &extra : m_serialExtras)
        if (!ports.contains(extra))
            ports.append(extra);
    return joinTab(ports);
}

QByteArray GatewayService::reservedPorts() const
{
    QList<quint16> ports;
    if (m_listenerPort)
        ports.append(m_listenerPort);
    for (GatewayModule *module : m_modules)
        ports += module->reservedPorts();
    std::sort(ports.begin(), ports.end());
    ports.erase(std::unique(ports.begin(), ports.end()), ports.end());
    QStringList texts;
    for (quint16 port : qAsConst(ports))
        texts.append(QString::number(port));
    return texts.join(QLatin1Char(',')).toLatin1();
}

void GatewayService::holdInput(bool hold)
{
    if (StreamChannel::allInputHeld() == hold)
        return;
    StreamChannel::holdAllInput(hold);
    if (!hold) {
        for (GatewayModule *module : qAsConst(m_modules))
            module->resumeInput();
    }
}

void GatewayService::onEvent(int type, int moduleId)
{
    const qint32 payload = moduleId;
    GwWireWriter writer(GwFrameKind::Event, 0);
    writer.i32(type).bytes(std::string_view(reinterpret_cast<const char *>(&payload), sizeof(payload)));
    const std::string frame = writer.finish();
    emit pushFrames(QByteArray(frame.data(), int(frame.size())));
}

void GatewayService::onDeviceStatus(int moduleId, int state)
{
    const qint32 payload[2] = {moduleId, state};
    GwWireWriter writer(GwFrameKind::Event, 0);
    writer.i32(GW_EVENT_DEVICE_STATUS)
        .bytes(std::string_view(reinterpret_cast<const char *>(payload), sizeof(payload)));
    const std::string frame = writer.finish();
    emit pushFrames(QByteArray(frame.data(), int(frame.size())));
}

void GatewayService::onResults(int moduleId, int addressId, const QList<QByteArray> &frames)
{
    // One buffer per device thread, kept between batches: a fresh one for
    // each batch cost page faults on every read of a busy stream.
    thread_local std::string encoded;
    encoded.clear();
    encoded.reserve(size_t(StreamChannel::bytesOf(frames)) + size_t(frames.size()) * 32);
    for (const QByteArray &data : frames) {
        GW_HOP_MARK(GwHop::PushEncoded, data.constData(), size_t(data.size()));
        GwWireWriter writer(GwFrameKind::Result, 0, std::move(encoded));
        writer.i32(moduleId).i32(addressId).bytes(std::string_view(data.constData(), size_t(data.size())));
        encoded = writer.finish();
    }
    // The sessions copy what they keep before emit returns.
    emit pushFrames(QByteArray::fromRawData(encoded.data(), int(encoded.size())));
    if (encoded.capacity() > size_t(StreamChannel::kKeptBufferBytes))
        std::string().swap(encoded); // after a burst, not held for good
}
