#include "common/NotificationRecorder.h"
#include "common/TestProject.h"

#include <QElapsedTimer>
#include <QThread>

using namespace Torvik::Database;
using Kx::Test::NotificationRecorder;
using Kx::Test::TestProject;

namespace {

void deliver()
{
    QCoreApplication::sendPostedEvents();
}

void change(const CDomainObjectPointer& object, const QString& key, const QVariant& value, int origin)
{
    object->updateValue(key, value);
    CDatabaseLibrary::dbAccessManager()->updateObject(object, origin);
}

class ThreadReceiver : public QObject {
public:
    QThread* deliveredOn = nullptr;

protected:
    void customEvent(QEvent*) override
    {
        deliveredOn = QThread::currentThread();
        QThread::currentThread()->quit();
    }
};

} // namespace

class tst_Notifications : public QObject {
    Q_OBJECT

private slots:
    void everyChangedValueIsToldWithItsOrigin()
    {
        TestProject p;
        const auto a = p.addNode("A");
        deliver();
        NotificationRecorder recorder;

        a->updateValue("OBJ_Key", "New");
        a->updateValue("OBJ_DepthToInvert", 3);
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 5000);
        QVERIFY(recorder.heard.isEmpty());
        deliver();

        QCOMPARE(recorder.heard,
                 (QStringList {"2 " + a->id() + " OBJ_Key 5000", "2 " + a->id() + " OBJ_DepthToInvert 5000", "7"}));
    }

    void anEventBearsTheNumberThatReceiversKnow() { QCOMPARE(int(CDomainNotificationEvent::eventType), 3020); }

    void theWriterOfTheCoordinateSystemIsToldToo()
    {
        TestProject p;
        deliver();
        NotificationRecorder recorder;

        p.project()->setProjectionWKT("LOCAL_CS[\"x\"]");
        CDatabaseLibrary::dbAccessManager()->updateObject(p.project(), -1);
        deliver();

        QCOMPARE(recorder.heard, (QStringList {"2 " + p.project()->id() + " PRJ_ProjectionWKT -1", "7"}));
    }

    void anObjectWithoutChangeTellsNothing()
    {
        TestProject p;
        const auto a = p.addNode("A", {}, {{"OBJ_Size1", 1000}});
        deliver();
        NotificationRecorder recorder;

        change(a, "OBJ_Key", "A", 1);
        change(a, "OBJ_Size1", 1000, 1);
        CDatabaseLibrary::dbAccessManager()->updateObject(a, 1);
        deliver();

        QVERIFY(recorder.heard.isEmpty());
    }

    void creationAndDeletionAreTold()
    {
        TestProject p;
        deliver();
        NotificationRecorder recorder;

        const auto section = p.addSection("S", {}, {});
        const auto inspection = p.addInspection(section);
        QVERIFY(ProjectStore::instance().deleteObject(section).ok());
        deliver();

        const QString project = p.project()->id();
        QCOMPARE(recorder.heard,
                 (QStringList {"4 " + section->id(), "1 " + project, "7", "4 " + inspection->id(), "1 " + section->id(),
                               "7", "5 " + inspection->id(), "5 " + section->id(), "1 " + project, "7"}));
    }

    void theProjectIsUnloadedAtItsEnd()
    {
        TestProject p;
        const QString id = p.project()->id();
        deliver();
        NotificationRecorder recorder;

        p.close();
        deliver();

        QCOMPARE(recorder.heard, QStringList {"6 " + id});
    }

    void aReceiverAddedTwiceHearsOnce()
    {
        TestProject p;
        const auto a = p.addNode("A");
        deliver();
        NotificationRecorder recorder;
        CAsyncNotificationMapper second(CDatabaseLibrary::notificationManager());
        second.addGlobalNotificationReceiver(recorder);
        second.addGlobalNotificationReceiver(recorder);

        change(a, "OBJ_Key", "New", 1);
        deliver();

        QCOMPARE(recorder.heard.size(), 2);
    }

    void receiversAndMappersMayGoInAnyOrder()
    {
        TestProject p;
        const auto a = p.addNode("A");
        auto mapper = std::make_unique<CAsyncNotificationMapper>(CDatabaseLibrary::notificationManager());
        auto receiver = std::make_unique<QObject>();
        mapper->addGlobalNotificationReceiver(*receiver);
        receiver.reset();
        change(a, "OBJ_Key", "1", 1);
        QObject survivor;
        mapper->addGlobalNotificationReceiver(survivor);
        mapper.reset();

        change(a, "OBJ_Key", "2", 1);
        deliver();

        QCOMPARE(a->readValue("OBJ_Key").toString(), QString("2"));
    }

    void aReceiverHearsOnItsOwnThread()
    {
        TestProject p;
        const auto a = p.addNode("A");
        QThread thread;
        ThreadReceiver receiver;
        receiver.moveToThread(&thread);
        CAsyncNotificationMapper mapper(CDatabaseLibrary::notificationManager());
        mapper.addGlobalNotificationReceiver(receiver);
        thread.start();

        change(a, "OBJ_Key", "New", 1);

        QVERIFY(thread.wait(5000));
        QCOMPARE(receiver.deliveredOn, &thread);
    }

    void aProxyHearsOfItsObjectOnly()
    {
        TestProject p;
        const auto a = p.addNode("A");
        const auto b = p.addNode("B");
        CDomainObjectProxy* proxy = nullptr;
        {
            CAsyncNotificationMapper mapper(CDatabaseLibrary::notificationManager());
            proxy = new CDomainObjectProxy(mapper, a, this);
        }
        QSignalSpy changed(proxy, &CDomainObjectProxy::objectValueChanged);

        change(b, "OBJ_Key", "X", 1);
        change(a, "OBJ_Key", "Y", 5000);
        QCOMPARE(changed.count(), 0);
        deliver();

        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toString(), QString("OBJ_Key"));
        QVERIFY2(changed[0][1].toString() == QString("A"), "the value before the change");
        QCOMPARE(changed[0][2].toInt(), 5000);
        QCOMPARE(proxy->domainObject().toStrongRef(), a);
        delete proxy;
    }

    void aProxyForNothingIsSilent()
    {
        CAsyncNotificationMapper mapper(CDatabaseLibrary::notificationManager());
        const CDomainObjectProxy proxy(mapper, {}, nullptr);

        QVERIFY(!proxy.domainObject());
    }

    void proxiesOfOneObjectGoInAnyOrder()
    {
        TestProject p;
        const auto a = p.addNode("A");
        CAsyncNotificationMapper mapper(CDatabaseLibrary::notificationManager());
        std::vector<std::unique_ptr<CDomainObjectProxy>> proxies;
        int heard = 0;
        for (int i = 0; i < 4; ++i) {
            proxies.push_back(std::make_unique<CDomainObjectProxy>(mapper, a, nullptr));
            connect(proxies.back().get(), &CDomainObjectProxy::objectValueChanged, this, [&heard] { ++heard; });
        }

        proxies.erase(proxies.begin() + 1);
        proxies.erase(proxies.begin());
        change(a, "OBJ_Key", "1", 1);
        deliver();
        QCOMPARE(heard, 2);
        proxies.pop_back();
        change(a, "OBJ_Key", "2", 1);
        deliver();
        QCOMPARE(heard, 3);
        proxies.clear();
        change(a, "OBJ_Key", "3", 1);
        deliver();

        QCOMPARE(heard, 3);
    }

    void manyProxiesDoNotSlowOneChange()
    {
        TestProject p;
        const auto a = p.addNode("A");
        const auto b = p.addNode("B");
        CAsyncNotificationMapper mapper(CDatabaseLibrary::notificationManager());
        std::vector<std::unique_ptr<CDomainObjectProxy>> proxies;
        const int count = 50000;
        for (int i = 0; i < count; ++i) {
            proxies.push_back(std::make_unique<CDomainObjectProxy>(mapper, b, nullptr));
        }
        CDomainObjectProxy proxy(mapper, a, nullptr);
        QSignalSpy changed(&proxy, &CDomainObjectProxy::objectValueChanged);
        int delivered = 0;
        for (const auto& other : proxies) {
            connect(other.get(), &CDomainObjectProxy::objectValueChanged, this, [&delivered] { ++delivered; });
        }

        change(a, "OBJ_Key", "New", 1);
        deliver();
        QElapsedTimer timer;
        timer.start();
        while (!proxies.empty()) {
            proxies.erase(proxies.begin() + long(proxies.size() / 2), proxies.end());
        }

        QCOMPARE(changed.count(), 1);
        QCOMPARE(delivered, 0);
        // A walk through the others for each would take minutes; a hundredth of that leaves room for a busy machine.
        QVERIFY(timer.elapsed() < 5000);
    }
};

QTEST_GUILESS_MAIN(tst_Notifications)
#include "tst_Notifications.moc"
