#include "GwClient.h"

#include "GwOp.h"
#include "GwWireReader.h"

#include <cstdlib>
#include <string>

namespace {
constexpr int kDefaultTimeoutMs = 5000;

// GW_PF_TIMEOUT_MS bounds how long a call waits for an unresponsive gateway.
int callTimeoutMs()
{
    const char *text = std::getenv("GW_PF_TIMEOUT_MS");
    const int value = text ? std::atoi(text) : 0;
    return value > 0 ? value : kDefaultTimeoutMs;
}
} // namespace

GwClient &GwClient::instance()
{
    static GwClient client;
    return client;
}

uint32_t GwClient::init(const char *host, int port)
{
    deinit();
    auto conn = std::make_shared<GwConnection>([this](const GwFrame &frame) { onPush(frame); }, callTimeoutMs());
    const uint32_t rc = conn->open(host && *host ? host : "127.0.0.1", port);
    if (rc != GW_OK)
        return rc;
    GwWireWriter hello = request(uint16_t(GwOp::Hello));
    hello.u32(kGwProtocolVersion);
    const GwConnection::Reply reply = conn->call(hello.finish());
    if (reply.code != GW_OK)
        return reply.code;
    std::lock_guard<std::mutex> lock(m_connMutex);
    m_conn = std::move(conn);
    return GW_OK;
}

uint32_t GwClient::deinit()
{
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
    std::lock_guard<std::mutex> lock(m_callbackMutex);
    m_eventCallback = callback;
    m_eventUserData = userData;
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
        if (reader.done() && callback)
            callback(moduleId, addressId, &data[0], int(data.size()), userData);
        return;
    }
    const int32_t type = reader.i32();
    std::string data(reader.bytes());
    GW_EVENT_CALLBACK callback;
    void *userData;
    {
        std::lock_guard<std::mutex> lock(m_callbackMutex);
        callback = m_eventCallback;
        userData = m_eventUserData;
    }
    if (reader.done() && callback)
        callback(eGW_EVENT_TYPE(type), &data[0], userData, int(data.size()));
}
