#pragma once

#include "GwConnection.h"
#include "GwPlatform.h"
#include "GwReconnector.h"
#include "GwWireWriter.h"

#include <memory>
#include <mutex>
#include <vector>

// The library's process-wide state: the connection to the gateway and the
// registered callbacks. Every GW_PF_* function goes through here. When the
// connection closes, calls fail at once and the reconnector brings up a new
// one to the same address in the background.
class GwClient
{
public:
    static GwClient &instance();

    uint32_t init(const char *host, int port);
    uint32_t deinit();
    // Sends a request built with request() and waits for its reply.
    GwConnection::Reply call(GwWireWriter &request);
    static GwWireWriter request(uint16_t op);

    void setResultCallback(GW_RESULT_CALLBACK callback, void *userData);
    void setEventCallback(GW_EVENT_CALLBACK callback, void *userData);
    void setRecvEventCallback(GW_RECV_EVENT_CALLBACK callback, void *userData);

private:
    GwClient();
    void onPush(const GwFrame &frame);
    void deliverEvent(eGW_EVENT_TYPE type, std::string data);
    // Gateway-level events, on the reconnector's thread. While no event
    // callback is set (a host sets it late in its start-up) a loss and the
    // restore after it are remembered, and told once a callback is set, so
    // that the host still learns that the gateway went away under it.
    void reportGatewayEvent(eGW_EVENT_TYPE type, const std::string &data);
    void replayMissedEvents();
    std::shared_ptr<GwConnection> connection();
    // A connected and greeted connection, or null with `rc` set.
    std::shared_ptr<GwConnection> connect(const std::string &host, int port, uint32_t &rc);
    void onConnectionLost(const GwConnection *conn);
    bool reconnect();

    std::mutex m_connMutex;
    std::shared_ptr<GwConnection> m_conn;
    // Connections closed from their own callback thread wait here until
    // that thread has surely left them.
    std::vector<std::shared_ptr<GwConnection>> m_retired;
    std::string m_host; // where the connection in use went, for reconnecting
    int m_port = 0;
    GwReconnector m_reconnector;

    std::mutex m_callbackMutex;
    GW_RESULT_CALLBACK m_resultCallback = nullptr;
    void *m_resultUserData = nullptr;
    GW_EVENT_CALLBACK m_eventCallback = nullptr;
    void *m_eventUserData = nullptr;
    bool m_missedLoss = false;    // LOST came while no event callback was set
    bool m_missedRestore = false; // ... and RESTORED after it
    GW_RECV_EVENT_CALLBACK m_recvEventCallback = nullptr;
    void *m_recvEventUserData = nullptr;
};
