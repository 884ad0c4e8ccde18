// A TCP server channel written to from several threads while its peer
// streams in, then closed and destroyed. Run under ThreadSanitizer too.
#include "ChannelProbe.h"
#include "ChannelStatus.h"
#include "GwErrorCodes.h"
#include "StreamChannel.h"
#include "../../devices/ThreadJoiner.h"

#include <QTcpSocket>
#include <QtTest>
#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {
constexpr int kWriters = 3;
constexpr int kWritesPerThread = 400;
constexpr int kPeerLines = 2000;
constexpr int kLineSize = 64;

// A 64-byte line naming its writer and sequence number, ending with LF.
QByteArray line(int writer, int seq)
{
    QByteArray text = QByteArray::number(writer) + ':' + QByteArray::number(seq) + ':';
    return text + QByteArray(kLineSize - 1 - text.size(), 'x') + '\n';
}

// Opens a TCP server channel on loopback `port` with LF framing.
quint32 openServer(StreamChannel &channel, quint16 port)
{
    return channel.open(channelParams("TcpServerModule", {{"LocalIP", "127.0.0.1"},
                                                          {"LocalPort", QByteArray::number(port)},
                                                          {"EndChar", "\n"}}));
}
} // namespace

class tst_StreamChannelsThreads : public QObject
{
    Q_OBJECT
private slots:
    void writeFromThreads_whilePeerStreams_data();
    void writeFromThreads_whilePeerStreams();
    void statusReadFromThreads_whilePeersComeAndGo();
};

void tst_StreamChannelsThreads::writeFromThreads_whilePeerStreams_data()
{
    QTest::addColumn<bool>("closeWhileWriting");
    QTest::newRow("close after the writers") << false;
    QTest::newRow("close while writers run") << true;
}

void tst_StreamChannelsThreads::writeFromThreads_whilePeerStreams()
{
    QFETCH(bool, closeWhileWriting);
    const quint16 port = freeTcpPort();
    std::unique_ptr<StreamChannel> channel(StreamChannel::create("TcpServerModule"));
    ChannelProbe probe(channel.get());
    QCOMPARE(openServer(*channel, port), GW_OK);
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(peer.waitForConnected(5000));
    peer.write(line(9, 0));
    QTRY_COMPARE(probe.frames().size(), 1); // accepted: writes now have a peer

    std::array<std::atomic<int>, kWriters> accepted{};
    std::atomic<int> refused{0};
    std::atomic<int> finished{0};
    std::vector<std::thread> threads;
    {
        ThreadJoiner joiner{threads};
        for (int w = 0; w < kWriters; ++w) {
            threads.emplace_back([shared = channel.get(), w, &accepted, &refused, &finished] {
                for (int i = 0; i < kWritesPerThread; ++i) {
                    const quint32 rc = shared->write(line(w, i));
                    if (rc == GW_OK)
                        ++accepted[size_t(w)];
                    else if (rc == GW_ERR_BUSY || rc == GW_ERR_NOT_OPEN)
                        ++refused;
                }
                ++finished;
            });
        }
        for (int i = 1; i <= kPeerLines; ++i)
            peer.write(line(8, i));
        if (closeWhileWriting)
            channel->close();
        QTRY_COMPARE(finished.load(), kWriters); // the peer streams in meanwhile
    }

    int total = 0;
    for (const auto &count : accepted)
        total += count;
    QCOMPARE(total + refused, kWriters * kWritesPerThread);
    if (!closeWhileWriting) {
        // Everything accepted reaches the peer, each line whole.
        QTRY_COMPARE(peer.bytesAvailable(), qint64(total) * kLineSize);
        std::array<int, kWriters> got{};
        while (peer.canReadLine()) {
            const QByteArray text = peer.readLine();
            QCOMPARE(text.size(), kLineSize);
            const int writer = text.left(text.indexOf(':')).toInt();
            QVERIFY(writer >= 0 && writer < kWriters);
            ++got[size_t(writer)];
        }
        for (int w = 0; w < kWriters; ++w)
            QCOMPARE(got[size_t(w)], accepted[size_t(w)].load());
        QTRY_COMPARE(probe.frames().size(), kPeerLines + 1);
        QCOMPARE(probe.frames().last(), line(8, kPeerLines));
    }
    channel->close();
    QCOMPARE(channel->write(line(0, 0)), GW_ERR_NOT_OPEN);
    channel.reset();
    QTRY_COMPARE(peer.state(), QAbstractSocket::UnconnectedState);
}

// The gateway's main thread reads state, detail, counters and peers while
// the worker counts, adds and removes peers and a peer is dropped on request;
// readers on std::threads stand for it, so ThreadSanitizer sees every access.
void tst_StreamChannelsThreads::statusReadFromThreads_whilePeersComeAndGo()
{
    const quint16 port = freeTcpPort();
    std::unique_ptr<StreamChannel> channel(StreamChannel::create("TcpServerModule"));
    ChannelProbe probe(channel.get());
    QCOMPARE(openServer(*channel, port), GW_OK);
    ChannelStatus *status = channel->status();
    QVERIFY(status);
    std::atomic<bool> stop{false};
    std::atomic<int> reads{0};
    std::vector<std::thread> threads;
    {
        ThreadJoiner joiner{threads};
        for (int r = 0; r < 2; ++r) {
            threads.emplace_back([status, &stop, &reads] {
                while (!stop) {
                    const QByteArray text = status->countersText() + status->peersText(639)
                        + status->detail().toUtf8() + ChannelStatus::stateName(status->state());
                    if (!text.isEmpty())
                        ++reads;
                }
            });
        }
        QTcpSocket first, second;
        for (QTcpSocket *peer : {&first, &second}) {
            peer->connectToHost(QHostAddress::LocalHost, port);
            QVERIFY(peer->waitForConnected(5000));
        }
        QTRY_COMPARE(status->peerCount(), 2);
        for (int i = 0; i < kPeerLines; ++i)
            first.write(line(7, i));
        QCOMPARE(channel->dropPeer(QStringLiteral("127.0.0.1:%1").arg(second.localPort())), GW_OK);
        QCOMPARE(channel->write(line(0, 0)), GW_OK);
        QTRY_COMPARE(probe.frames().size(), kPeerLines);
        status->resetCounters();
        first.disconnectFromHost();
        QTRY_COMPARE(status->peerCount(), 0);
        QTRY_VERIFY(reads > 0);
        stop = true;
    }
    QCOMPARE(status->state(), GW_DEVICE_LISTENING);
    channel->close();
    QCOMPARE(status->state(), GW_DEVICE_CLOSED);
}

QTEST_GUILESS_MAIN(tst_StreamChannelsThreads)
#include "tst_streamchannels_threads.moc"
