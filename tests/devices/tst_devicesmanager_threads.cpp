// Devices are created and deleted on the GUI thread while gateway threads
// deliver results and events for them. Run under ThreadSanitizer (label tsan)
// and AddressSanitizer: a result must never reach a freed device.
#include "CommDevice.h"
#include "DevicesManager.h"
#include "FakeGateway.h"
#include "GwCallbacks.h"
#include "ThreadJoiner.h"

#include <QtTest>
#include <atomic>
#include <thread>
#include <vector>

class tst_DevicesManagerThreads : public QObject
{
    Q_OBJECT
private slots:
    void createAndDelete_whileResultsAndEventsArrive();
};

void tst_DevicesManagerThreads::createAndDelete_whileResultsAndEventsArrive()
{
    FakeGateway &gw = FakeGateway::instance();
    gw.reset();
    DevicesManager *mgr = DevicesManager::Instance();
    mgr->LoadDevices();

    // Bounded work per gateway thread, so the queued events stay finite.
    constexpr int kBlocks = 4000;
    std::atomic<int> running{3};
    std::vector<std::thread> gateway;
    const ThreadJoiner joiner{gateway}; // also when a check fails early
    for (int t = 0; t < 3; ++t) {
        gateway.emplace_back([&running, t] {
            QByteArray block = QByteArrayLiteral("frame\r\n");
            int id = 1;
            for (int i = 0; i < kBlocks; ++i) {
                ResultCallBack(id, -1, block.data(), block.size(), nullptr);
                ResultCallBack(id, 5, block.data(), block.size(), nullptr);
                if (t == 0 && i % 20 == 0) {
                    QByteArray payload = FakeGateway::modulePayload(id);
                    EventCallBack(GW_EVENT_CONNECTED, payload.data(), nullptr, payload.size());
                }
                id = id % 12 + 1;
            }
            running.fetch_sub(1);
        });
    }

    QList<int> kept;
    for (int round = 0; round < 400 && (round < 40 || running.load() > 0); ++round) {
        QVERIFY(mgr->loadAlgorithmTabXML(QStringLiteral("UdpModule")));
        const int id = mgr->createCommDevice(QStringLiteral("UdpModule"), QStringLiteral("d"));
        QVERIFY(id > 0);
        if (round % 2)
            QCOMPARE(mgr->deleteCommDevice(id), 0);
        else
            kept.append(id);
        // The GUI thread reads and clears the lists of devices that results reach.
        CommDevice *device = mgr->getDeviceById(kept.at(round % kept.size()));
        QVERIFY(device);
        QVERIFY(device->recvDataList().size() <= 200);
        if (round % 7 == 0)
            device->clearRecvDatas();
        QCoreApplication::processEvents(); // queued events and deferred deletes
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    for (auto &t : gateway)
        t.join();
    QCoreApplication::processEvents();
    QCOMPARE(mgr->commDeviceList().size(), kept.size());

    gw.reset();
    mgr->LoadDevices();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QTEST_GUILESS_MAIN(tst_DevicesManagerThreads)
#include "tst_devicesmanager_threads.moc"
