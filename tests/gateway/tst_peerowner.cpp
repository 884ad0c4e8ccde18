// Finding the owner of a loopback peer in the kernel's socket tables.
#include "PeerOwner.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <unistd.h>

class tst_PeerOwner : public QObject
{
    Q_OBJECT
private slots:
    void find_data();
    void find();
    void ofSocket_loopbackPeerIsThisProcessesUser();
    void isAdmitted_data();
    void isAdmitted();
};

namespace {
const QByteArray kTcpHeader = "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n";
const QByteArray kTcp6Header =
    "  sl  local_address                         remote_address                        st tx_queue rx_queue tr tm->when "
    "retrnsmt   uid  timeout inode\n";
// 127.0.0.1 as the kernel prints it on a little-endian host.
const quint32 kLoopback = 0x7F000001;
} // namespace

void tst_PeerOwner::find_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<uint>("owner");
    // Peer 127.0.0.1:40000 (0x9C40) connected to the gateway at 127.0.0.1:5600 (0x15E0).
    const QByteArray listener = "   0: 0100007F:15E0 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000 0 11 1\n";
    const QByteArray ours = "   1: 0100007F:15E0 0100007F:9C40 01 00000000:00000000 00:00000000 00000000  1000 0 12 1\n";
    const QByteArray peer = "   2: 0100007F:9C40 0100007F:15E0 01 00000000:00000000 00:00000000 00000000 65534 0 13 1\n";
    QTest::newRow("the peer's row, not ours or the listener's") << kTcpHeader + listener + ours + peer << 65534u;
    QTest::newRow("lower-case hex") << kTcpHeader + peer.toLower() << 65534u;
    QTest::newRow("root") << kTcpHeader
                                 + "   2: 0100007F:9C40 0100007F:15E0 01 00000000:00000000 00:00000000 00000000     0 0 13 1\n"
                          << 0u;
    QTest::newRow("IPv4-mapped in tcp6")
        << kTcp6Header
               + "   0: 0000000000000000FFFF00000100007F:9C40 0000000000000000FFFF00000100007F:15E0 01 "
                 "00000000:00000000 00:00000000 00000000  1001 0 14 1\n"
        << 1001u;
    QTest::newRow("another connection's peer") << kTcpHeader
                                                      + "   2: 0100007F:9C41 0100007F:15E0 01 00000000:00000000 "
                                                        "00:00000000 00000000 65534 0 13 1\n"
                                               << uint(PeerOwner::kUnknown);
    QTest::newRow("only our own end") << kTcpHeader + ours << uint(PeerOwner::kUnknown);
    QTest::newRow("truncated row") << kTcpHeader + "   2: 0100007F:9C40 0100007F:15E0 01\n" << uint(PeerOwner::kUnknown);
    QTest::newRow("empty") << QByteArray() << uint(PeerOwner::kUnknown);
}

void tst_PeerOwner::find()
{
    QFETCH(QByteArray, table);
    QFETCH(uint, owner);
    QCOMPARE(uint(PeerOwner::find(table, kLoopback, 40000, kLoopback, 5600)), owner);
}

void tst_PeerOwner::ofSocket_loopbackPeerIsThisProcessesUser()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost, 0));
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QVERIFY(client.waitForConnected(3000));
    QVERIFY(server.waitForNewConnection(3000));
    QTcpSocket *accepted = server.nextPendingConnection();
    QCOMPARE(PeerOwner::ofSocket(int(accepted->socketDescriptor())), ::geteuid());
    QVERIFY(PeerOwner::isAdmitted(PeerOwner::ofSocket(int(accepted->socketDescriptor()))));
}

void tst_PeerOwner::isAdmitted_data()
{
    QTest::addColumn<uint>("owner");
    QTest::addColumn<bool>("admitted");
    QTest::newRow("own user") << uint(::geteuid()) << true;
    QTest::newRow("root") << 0u << true;
    QTest::newRow("unknown owner") << uint(PeerOwner::kUnknown) << false;
    QTest::newRow("another user allowed by --allow-uid") << 4242u << true;
    if (::geteuid() != 65534)
        QTest::newRow("nobody") << 65534u << false;
}

void tst_PeerOwner::isAdmitted()
{
    QFETCH(uint, owner);
    QFETCH(bool, admitted);
    QCOMPARE(PeerOwner::isAdmitted(uid_t(owner), {4242}), admitted);
}

QTEST_GUILESS_MAIN(tst_PeerOwner)
#include "tst_peerowner.moc"
