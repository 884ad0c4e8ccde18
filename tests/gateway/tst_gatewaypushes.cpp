// Pushes reach the clients from several threads at once, as a device's
// worker sends the frames it read straight to the sessions: each client gets
// every frame whole and each thread's frames in the order they were pushed,
// also when its socket fills and the rest waits for the main thread; a client
// that stops reading holds every device's input until it has caught up.
#include "ClientSession.h"
#include "GatewayServer.h"
#include "GatewayService.h"
#include "GwFrameDecoder.h"
#include "GwWireReader.h"
#include "GwWireWriter.h"
#include "StreamChannel.h"

#include <QElapsedTimer>
#include <QtTest>
#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
// A result frame of `size` data bytes naming its thread (as the module) and
// its number in that thread (as the address).
QByteArray resultFrame(int thread, int number, int size)
{
    GwWireWriter writer(GwFrameKind::Result, 0);
    const std::string data(size_t(size), char('a' + thread));
    writer.i32(thread).i32(number).bytes(std::string_view(data));
    const std::string frame = writer.finish();
    return QByteArray(frame.data(), int(frame.size()));
}

int connectTo(quint16 port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // A small receive buffer, so that the session's output backs up after a
    // few frames whatever the machine's socket buffer tuning.
    const int buffer = 64 * 1024;
    ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &buffer, sizeof(buffer));
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(port);
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof(addr)) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

// What a client read: frames decoded, per thread the numbers in arrival order.
struct Received {
    GwFrameDecoder decoder;
    QVector<QVector<int>> numbers;
    int frames = 0;
    int wrongData = 0;
    bool broken = false;

    explicit Received(int threads) : numbers(threads) {}
    // Takes what the socket holds without waiting.
    void read(int fd)
    {
        for (;;) {
            const ssize_t n = ::recv(fd, decoder.prepare(65536), 65536, MSG_DONTWAIT);
            if (n <= 0)
                break;
            decoder.commit(size_t(n));
        }
        GwFrame frame;
        GwFrameDecoder::Status status;
        while ((status = decoder.next(frame)) == GwFrameDecoder::Status::Frame) {
            GwWireReader in(frame.payload);
            const int thread = in.i32();
            const int number = in.i32();
            const std::string data(in.bytes());
            if (frame.kind != GwFrameKind::Result || !in.done() || thread < 0 || thread >= numbers.size()
                || data.find_first_not_of(char('a' + thread)) != std::string::npos) {
                ++wrongData;
                continue;
            }
            numbers[thread].append(number);
            ++frames;
        }
        broken = broken || status == GwFrameDecoder::Status::Error;
    }
};

// Runs the event loop until `done` or the time is up.
bool spinUntil(const std::function<bool()> &done, int ms = 20000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && !timer.hasExpired(ms))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return done();
}
} // namespace

class TstGatewayPushes : public QObject
{
    Q_OBJECT
private slots:
    void pushesFromThreads_arriveWholeAndInOrder_data();
    void pushesFromThreads_arriveWholeAndInOrder();
    void clientThatStopsReading_holdsInputUntilItCatchesUp();
    void cleanup() { StreamChannel::holdAllInput(false); }
};

void TstGatewayPushes::pushesFromThreads_arriveWholeAndInOrder_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("clients");
    QTest::addColumn<bool>("readAfterPushes");
    QTest::newRow("one worker, short lines") << 1 << 2000 << 64 << 1 << false;
    QTest::newRow("four workers, short lines, two clients") << 4 << 1000 << 64 << 2 << false;
    // Large frames fill the client's socket: the rest waits for the main
    // thread. 10.8 MB in all, below the output a session keeps before it drops.
    QTest::newRow("three workers, frames that fill the socket") << 3 << 60 << 60000 << 1 << false;
    // The client reads only once every push was made: what the sockets did
    // not take must follow, in order.
    QTest::newRow("client reads only after the pushes") << 1 << 30 << 60000 << 1 << true;
    QTest::newRow("workers and the main thread") << 2 << 500 << 1000 << 1 << false;
}

void TstGatewayPushes::pushesFromThreads_arriveWholeAndInOrder()
{
    QFETCH(int, threads);
    QFETCH(int, frames);
    QFETCH(int, size);
    QFETCH(int, clients);
    QFETCH(bool, readAfterPushes);
    const bool mainThreadToo = QByteArray(QTest::currentDataTag()).contains("main thread");
    GatewayService service;
    GatewayServer server(service);
    QVERIFY(server.listen(0));
    std::vector<int> fds;
    for (int i = 0; i < clients; ++i) {
        fds.push_back(connectTo(server.port()));
        QVERIFY(fds.back() >= 0);
    }
    // The sessions exist once the server has accepted: a push then arrives.
    const int total = threads * frames + (mainThreadToo ? frames : 0);
    const int lanes = threads + (mainThreadToo ? 1 : 0);
    std::vector<Received> received(size_t(clients), Received{lanes});
    QVERIFY(spinUntil([&] {
        emit service.pushFrames(resultFrame(0, -1, 8));
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        bool all = true;
        for (int i = 0; i < clients; ++i) {
            received[size_t(i)].read(fds[size_t(i)]);
            all = all && received[size_t(i)].frames > 0;
        }
        return all;
    }));
    for (Received &r : received) {
        r.numbers = QVector<QVector<int>>(lanes);
        r.frames = 0;
    }

    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([&service, t, frames, size] {
            for (int n = 0; n < frames; ++n)
                emit service.pushFrames(resultFrame(t, n, size));
        });
    }
    if (readAfterPushes) {
        for (std::thread &worker : workers)
            worker.join();
        workers.clear();
    }
    int mainPushed = 0;
    const bool complete = spinUntil([&] {
        if (mainThreadToo && mainPushed < frames)
            emit service.pushFrames(resultFrame(threads, mainPushed++, size));
        bool all = true;
        for (int i = 0; i < clients; ++i) {
            received[size_t(i)].read(fds[size_t(i)]);
            all = all && received[size_t(i)].frames >= total;
        }
        return all;
    });
    for (std::thread &worker : workers)
        worker.join();
    for (int fd : fds)
        ::close(fd);
    QVERIFY2(complete, "not every frame arrived");
    for (const Received &r : received) {
        QVERIFY(!r.broken);
        QCOMPARE(r.wrongData, 0);
        QCOMPARE(r.frames, total);
        for (int lane = 0; lane < lanes; ++lane) {
            QCOMPARE(r.numbers[lane].size(), frames);
            for (int n = 0; n < frames; ++n)
                QCOMPARE(r.numbers[lane][n], n);
        }
    }
}

void TstGatewayPushes::clientThatStopsReading_holdsInputUntilItCatchesUp()
{
    GatewayService service;
    GatewayServer server(service);
    QVERIFY(server.listen(0));
    const int fd = connectTo(server.port());
    QVERIFY(fd >= 0);
    Received received(1);
    QVERIFY(spinUntil([&] {
        emit service.pushFrames(resultFrame(0, -1, 8));
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        received.read(fd);
        return received.frames > 0;
    }));
    received.numbers = QVector<QVector<int>>(1);
    received.frames = 0;

    // A worker pushes while the client reads nothing: the input is held
    // from the worker's own push, before the main thread runs again. Three
    // times the backed-up mark: the sockets' buffers (up to 4 MB for the
    // sender) take part of it; the rest stays below the mark where pushes
    // are dropped.
    const int frameSize = 64 * 1024;
    const int frames = int(3 * ClientSession::kBackedUpBytes / frameSize);
    QVERIFY(3 * ClientSession::kBackedUpBytes < ClientSession::kMaxPendingOutput);
    std::thread worker([&service, frames, frameSize] {
        for (int n = 0; n < frames; ++n)
            emit service.pushFrames(resultFrame(0, n, frameSize));
    });
    worker.join();
    QVERIFY(StreamChannel::allInputHeld());

    // Once the client has read everything, the hold ends.
    QVERIFY(spinUntil([&] {
        received.read(fd);
        return received.frames >= frames && !StreamChannel::allInputHeld();
    }));
    ::close(fd);
    QCOMPARE(received.frames, frames);
    QCOMPARE(received.wrongData, 0);
    for (int n = 0; n < frames; ++n)
        QCOMPARE(received.numbers[0][n], n);
}

QTEST_MAIN(TstGatewayPushes)
#include "tst_gatewaypushes.moc"
