// Request handling without the process: one payload in, one reply frame out.
// What the client library never sends (unknown operations, fields missing or
// left over) and what it never reads (the answer fields of a refused call)
// are checked here; tst_gatewayd drives every operation end to end.
#include "GatewayService.h"
#include "GwErrorCodes.h"
#include "GwFrameDecoder.h"
#include "GwOp.h"
#include "GwWireReader.h"
#include "GwWireWriter.h"
#include "RequestHandler.h"

#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

namespace {
using Fields = std::function<void(GwWireWriter &)>;

// The payload of a frame whose fields `fill` writes.
QByteArray payloadOf(GwFrameKind kind, const Fields &fill)
{
    GwWireWriter writer(kind, 0);
    fill(writer);
    const std::string frame = writer.finish();
    return QByteArray(frame.data() + kGwHeaderSize, int(frame.size() - kGwHeaderSize));
}

QByteArray request(GwOp op, const Fields &fill = [](GwWireWriter &) {})
{
    return payloadOf(GwFrameKind::Request, [&](GwWireWriter &w) {
        w.u16(uint16_t(op));
        fill(w);
    });
}

QByteArray answer(const Fields &fill)
{
    return payloadOf(GwFrameKind::Reply, fill);
}

constexpr uint32_t kSeq = 0x01020304;
constexpr int32_t kModule = 1; // the open EtherNet/IP device of init()
} // namespace

class tst_RequestHandler : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void handle_data();
    void handle();

private:
    std::unique_ptr<QTemporaryDir> m_stateDir;
    std::unique_ptr<GatewayService> m_service;
};

void tst_RequestHandler::init()
{
    m_stateDir = std::make_unique<QTemporaryDir>();
    m_service = std::make_unique<GatewayService>();
    QVERIFY(m_service->start(m_stateDir->path()));
    int id = 0;
    QCOMPARE(m_service->addModule("EipModule", "plc", &id), GW_OK);
    QCOMPARE(id, kModule);
    QCOMPARE(m_service->setParams(kModule, -1, {{"ConnectState", "true"}}), GW_OK);
}

void tst_RequestHandler::cleanup()
{
    m_service.reset();
    m_stateDir.reset();
}

void tst_RequestHandler::handle_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("answer");
    const QByteArray none;
    const auto heartbeat = [](GwWireWriter &w) { w.u32(1).bytes("Heartbeat"); };
    const QByteArray heartbeatValue = answer([](GwWireWriter &w) { w.u32(1).bytes("Heartbeat").bytes("1000"); });

    QTest::newRow("hello offers deadlines")
        << request(GwOp::Hello, [](GwWireWriter &w) { w.u32(kGwProtocolVersion); }) << GW_OK
        << answer([](GwWireWriter &w) { w.u32(kGwFeatureDeadlines); });
    QTest::newRow("answer fields follow the code")
        << request(GwOp::AddModule, [](GwWireWriter &w) { w.bytes("UdpModule").bytes("udp"); }) << GW_OK
        << answer([](GwWireWriter &w) { w.i32(kModule + 1); });
    QTest::newRow("read and read-all share the answer")
        << request(GwOp::GetAllParam, [&](GwWireWriter &w) { w.i32(kModule).i32(-1); heartbeat(w); }) << GW_OK
        << heartbeatValue;
    QTest::newRow("accepted for the next open") << request(GwOp::SetModuleParam, [](GwWireWriter &w) {
        w.i32(kModule).i32(-1).u32(1).bytes("Heartbeat").bytes("2000");
    }) << GW_ERR_PENDING_REOPEN << none;

    // A refused call answers with its code alone, whatever was written.
    QTest::newRow("refused add has no id")
        << request(GwOp::AddModule, [](GwWireWriter &w) { w.bytes("NoSuchModule").bytes("x"); })
        << GW_ERR_UNKNOWN_TYPE << none;
    QTest::newRow("read refused after a first value") << request(GwOp::GetModuleParam, [](GwWireWriter &w) {
        w.i32(kModule).i32(-1).u32(2).bytes("Heartbeat").bytes("Colour");
    }) << GW_ERR_UNKNOWN_KEY << none;
    QTest::newRow("unknown module") << request(GwOp::ReadData, [](GwWireWriter &w) { w.i32(kModule + 7).i32(1); })
                                    << GW_ERR_UNKNOWN_MODULE << none;

    // Payloads that do not decode exactly.
    QTest::newRow("empty payload") << QByteArray() << GW_ERR_PROTOCOL << none;
    QTest::newRow("operation 0") << QByteArray(2, '\0') << GW_ERR_PROTOCOL << none;
    QTest::newRow("operation after the last") << QByteArray::fromHex("1600") << GW_ERR_PROTOCOL << none;
    QTest::newRow("hello of another version") << request(GwOp::Hello, [](GwWireWriter &w) { w.u32(2); })
                                              << GW_ERR_PROTOCOL << none;
    QTest::newRow("field missing") << request(GwOp::DeleteModule) << GW_ERR_PROTOCOL << none;
    QTest::newRow("field left over")
        << request(GwOp::GetLocalIpList, [](GwWireWriter &w) { w.u16(0); }) << GW_ERR_PROTOCOL << none;
    QTest::newRow("list longer than the payload") << request(GwOp::GetModuleParam, [](GwWireWriter &w) {
        w.i32(kModule).i32(-1).u32(0xFFFFFFFF);
    }) << GW_ERR_PROTOCOL << none;
    QTest::newRow("delete with a field left over")
        << request(GwOp::DeleteModule, [](GwWireWriter &w) { w.i32(kModule).i32(0); }) << GW_ERR_PROTOCOL << none;
}

// One reply frame repeating the sequence number, the code first.
void tst_RequestHandler::handle()
{
    QFETCH(QByteArray, payload);
    QFETCH(quint32, code);
    QFETCH(QByteArray, answer);
    RequestHandler handler(*m_service);
    const std::string reply = handler.handle(kSeq, std::string_view(payload.constData(), size_t(payload.size())));

    GwFrameDecoder decoder;
    decoder.append(reply.data(), reply.size());
    GwFrame frame;
    QCOMPARE(decoder.next(frame), GwFrameDecoder::Status::Frame);
    QCOMPARE(decoder.pending(), size_t(0));
    QCOMPARE(frame.kind, GwFrameKind::Reply);
    QCOMPARE(frame.seq, kSeq);
    GwWireReader reader(frame.payload);
    QCOMPARE(reader.u32(), code);
    QCOMPARE(QByteArray::fromStdString(frame.payload.substr(sizeof(uint32_t))), answer);
    QCOMPARE(m_service->modules(1).value(0).id, kModule); // nothing refused was carried out
}

QTEST_GUILESS_MAIN(tst_RequestHandler)
#include "tst_requesthandler.moc"
