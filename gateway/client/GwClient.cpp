#include "GwClient.h"

#include "GwHopStamps.h"
#include "GwOp.h"
#include "GwWireReader.h"

#include <cstdlib>
#include <string>
#include <utility>

namespace {
// The slowest calls of a healthy gateway (bench_calltimes, 2-core development
// machine under load): switching a TCP server or a serial port on and off
// 92 ms and 71 ms at most, adding and deleting a module beside 256 others
// 85 ms, the whole first read of 256 modules 41 ms; a one-key read 0.015 ms.
// Three seconds leaves a margin of 30 over those for slower boards, real
// UARTs and flash storage, and bounds how long a hung gateway holds a click.
constexpr int kDefaultTimeoutMs = 3000;

// GW_PF_TIMEOUT_MS bounds how long a call waits for an unresponsive gateway.
int callTimeoutMs()
{
    const char *text = std::getenv("GW_PF_TIMEOUT_MS");
    const int value = text ? std::atoi(text) : 0;
    return value > 0 ? value : kDefaultTimeoutMs;
}
} // namespace

GwClient::GwClient()
    : m_reconnector([this] { return reconnect(); },
                    [this](eGW_EVENT_TYPE type, const std::string &data) { reportGatewayEvent(type, data); },
                    [this] { replayMissedEvents(); })
{
}

GwClient &GwClient::instance()
{
    static GwClient client;
    return client;
}

std::shared_ptr<GwConnection> GwClient::connect(const std::string &host, int port, uint32_t &rc)
{
    auto conn = std::make_shared<GwConnection>([this](const GwFrame &frame) { onPush(frame); }, callTimeoutMs(),
                                               [this](const GwConnection *lost) { onConnectionLost(lost); });
    rc = conn->open(host, port);
    if (rc != GW_OK)
        return nullptr;
    GwWireWriter hello = request(uint16_t(GwOp::Hello));
    hello.u32(kGwProtocolVersion);
    const GwConnection::Reply reply = conn->call(hello.finish());
    rc = reply.code;
    if (rc != GW_OK)
        return nullptr;
    // A gateway that takes deadlines says so after the code; an older one
    // answers the code alone.
    GwWireReader answer(reply.payload);
    const uint32_t features = answer.u32();
    conn->setSendDeadlines(answer.ok() && (features & kGwFeatureDeadlines));
    return conn;
}

uint32_t GwClient::init(const char *host, int port)
{
    deinit();
    {
        std::lock_guard<std::mutex> lock(m_callbackMutex);
        m_missedLoss = m_missedRestore = false; // a new session owes nothing
    }
    const std::string address = host && *host ? host : "127.0.0.1";
    uint32_t rc = GW_OK;
    std::shared_ptr<GwConnection> conn = connect(address, port, rc);
    if (!conn)
        return rc;
    {
        std::lock_guard<std::mutex> lock(m_connMutex);
        m_conn = std::move(conn);
        m_host = address;
        m_port = port;
    }
    m_reconnector.start();
    return GW_OK;
}

void GwClient::onConnectionLost(const GwConnection *conn)
{
    {
        std::lock_guard<std::mutex> lock(m_connMutex);
        if (m_conn.get() != conn)
            return; // a connection being tried, or one already replaced
    }
    m_reconnector.connectionLost();
}

bool GwClient::reconnect()
{
    std::string host;
    int port = 0;
    {
        std::lock_guard<std::mutex> lock(m_connMutex);
        host = m_host;
        port = m_port;
    }
    uint32_t rc = GW_OK;
    std::shared_ptr<GwConnection> conn = connect(host, port, rc);
    if (!conn)
        return false;
    std::shared_ptr<GwConnection> old;
    {
        std::lock_guard<std::mutex> lock(m_connMutex);
        old.swap(m_conn);
        m_conn = conn;
    }
    if (old)
        old->close(); // already failed; this joins its threads
    // A new connection that failed between its Hello and now is not current
    // at the moment it reported: report it again.
    if (!conn->isUsable())
        m_reconnector.connectionLost();
    return true;
}

uint32_t GwClient::deinit()
{
    m_reconnector.stop();
    std::shared_ptr<GwConnection> conn;
    {
        std::lock_guard<std::mutex> lock(m_connMutex);
        conn.swap(m_conn);
    }
    if (!conn)
        return GW_OK;
    const bool fromCallback = conn->isOwnThread();
    conn->close();
    // Closed from one of its own threads (a callback calling DeInit): that
    // thread is still running on it, so it must outlive this call.
    if (fromCallback) {
        std::lock_guard<std::mutex> lock(m_connMutex);
        m_retired.push_back(std::move(conn));
    }
    return GW_OK;
}

std::shared_ptr<GwConnection> GwClient::connection()
{
    std::lock_guard<std::mutex> lock(m_connMutex);
    return m_conn;
}

GwWireWriter GwClient::request(uint16_t op)
{
    GwWireWriter writer(GwFrameKind::Request, 0);
    writer.u16(op);
    return writer;
}

GwConnection::Reply GwClient::call(GwWireWriter &request)
{
    std::shared_ptr<GwConnection> conn = connection();
    if (!conn) {
        GwConnection::Reply reply;
        reply.code = GW_ERR_NOT_INITIALISED;
        return reply;
    }
    return conn->call(request.finish());
}

void GwClient::setResultCallback(GW_RESULT_CALLBACK callback, void *userData)
{
    std::lock_guard<std::mutex> lock(m_callbackMutex);
    m_resultCallback = callback;
    m_resultUserData = userData;
}

void GwClient::setEventCallback(GW_EVENT_CALLBACK callback, void *userData)
{
    bool missed = false;
    {
        std::lock_guard<std::mutex> lock(m_callbackMutex);
        m_eventCallback = callback;
        m_eventUserData = userData;
        missed = callback && m_missedLoss;
    }
    if (missed)
        m_reconnector.requestReplay();
}

void GwClient::reportGatewayEvent(eGW_EVENT_TYPE type, const std::string &data)
{
    bool lossFirst = false;
    {
        std::lock_guard<std::mutex> lock(m_callbackMutex);
        if (!m_eventCallback) {
            if (type == GW_EVENT_GATEWAY_LOST) {
                m_missedLoss = true;
                m_missedRestore = false;
            } else if (type == GW_EVENT_GATEWAY_RESTORED && m_missedLoss) {
                m_missedRestore = true;
            }
            return;
        }
        lossFirst = m_missedLoss && type != GW_EVENT_GATEWAY_LOST;
        m_missedLoss = m_missedRestore = false;
    }
    if (lossFirst)
        deliverEvent(GW_EVENT_GATEWAY_LOST, std::string());
    deliverEvent(type, data);
}

void GwClient::replayMissedEvents()
{
    bool loss = false;
    bool restore = false;
    {
        std::lock_guard<std::mutex> lock(m_callbackMutex);
        if (!m_eventCallback)
            return;
        std::swap(loss, m_missedLoss);
        std::swap(restore, m_missedRestore);
    }
    if (loss)
        deliverEvent(GW_EVENT_GATEWAY_LOST, std::string());
    if (restore)
        deliverEvent(GW_EVENT_GATEWAY_RESTORED, std::string());
}

void GwClient::setRecvEventCallback(GW_RECV_EVENT_CALLBACK callback, void *userData)
{
    std::lock_guard<std::mutex> lock(m_callbackMutex);
    m_recvEventCallback = callback;
    m_recvEventUserData = userData;
}

void GwClient::onPush(const GwFrame &frame)
{
    GwWireReader reader(frame.payload);
    if (frame.kind == GwFrameKind::Result) {
        const int32_t moduleId = reader.i32();
        const int32_t addressId = reader.i32();
        std::string data(reader.bytes());
        GW_RESULT_CALLBACK callback;
        void *userData;
        {
            std::lock_guard<std::mutex> lock(m_callbackMutex);
            callback = m_resultCallback;
            userData = m_resultUserData;
        }
        GW_HOP_MARK(GwHop::Callback, data.data(), data.size());
        if (reader.done() && callback)
            callback(moduleId, addressId, &data[0], int(data.size()), userData);
        return;
    }
    const int32_t type = reader.i32();
    std::string data(reader.bytes());
    if (reader.done())
        deliverEvent(eGW_EVENT_TYPE(type), std::move(data));
}

void GwClient::deliverEvent(eGW_EVENT_TYPE type, std::string data)
{
    GW_EVENT_CALLBACK callback;
    void *userData;
    {
        std::lock_guard<std::mutex> lock(m_callbackMutex);
        callback = m_eventCallback;
        userData = m_eventUserData;
    }
    if (callback)
        callback(type, &data[0], userData, int(data.size()));
}
