#include "common/TestProject.h"
#include "domain/NotificationsReceiver.h"

#include <QCoreApplication>
#include <QtTest>

using namespace Torvik::Database;
using Torvik::View3d::NotificationsReceiver;

namespace {

/** Writes down which signal came. */
class Listener : public QObject {
public:
    explicit Listener(NotificationsReceiver& receiver)
    {
        connect(&receiver, &NotificationsReceiver::objectListChanged, this,
                [this] { heard << QStringLiteral("list"); });
        connect(&receiver, &NotificationsReceiver::objectValueChanged, this,
                [this](const CDomainObjectPointer&, const QString& key) { heard << QStringLiteral("value ") + key; });
        connect(&receiver, &NotificationsReceiver::objectCreated, this, [this] { heard << QStringLiteral("created"); });
        connect(&receiver, &NotificationsReceiver::objectDeleted, this, [this] { heard << QStringLiteral("deleted"); });
        connect(&receiver, &NotificationsReceiver::objectUnloaded, this,
                [this] { heard << QStringLiteral("unloaded"); });
        connect(&receiver, &NotificationsReceiver::transactionCompleted, this,
                [this] { heard << QStringLiteral("transaction"); });
    }

    QStringList heard;
};

std::shared_ptr<const CDomainNotification> notification(int type, const CDomainObjectPointer& object = {})
{
    if (type == CDomainNotification::ObjectValueChanged)
        return std::make_shared<CObjectValueChangedNotification>(object, QStringLiteral("OBJ_Key"), QVariant(), 0);
    if (type == CDomainNotification::ObjectListChanged)
        return std::make_shared<CObjectListChangedNotification>(object);
    return std::make_shared<CDomainNotification>(type, object);
}

void post(NotificationsReceiver& receiver, int type, const CDomainObjectPointer& object = {})
{
    QCoreApplication::postEvent(&receiver, new CDomainNotificationEvent(notification(type, object)));
    QCoreApplication::sendPostedEvents(&receiver);
}

} // namespace

class tst_NotificationsReceiver : public QObject {
    Q_OBJECT

private slots:
    void eachTypeHasItsSignal_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("heard");
        QTest::newRow("list changed") << 1 << QStringList {QStringLiteral("list")};
        QTest::newRow("value changed") << 2 << QStringList {QStringLiteral("value OBJ_Key")};
        QTest::newRow("without a meaning") << 3 << QStringList();
        QTest::newRow("created") << 4 << QStringList {QStringLiteral("created")};
        QTest::newRow("deleted") << 5 << QStringList {QStringLiteral("deleted")};
        QTest::newRow("unloaded") << 6 << QStringList {QStringLiteral("unloaded")};
        QTest::newRow("transaction") << 7 << QStringList {QStringLiteral("transaction")};
        QTest::newRow("unknown") << 8 << QStringList();
    }

    void eachTypeHasItsSignal()
    {
        QFETCH(int, type);
        QFETCH(QStringList, heard);
        NotificationsReceiver receiver;
        Listener listener(receiver);
        post(receiver, type);
        QCOMPARE(listener.heard, heard);
    }

    void otherEventsAreLeftAlone()
    {
        NotificationsReceiver receiver;
        Listener listener(receiver);
        QEvent event(QEvent::Type(QEvent::User + 1));
        event.ignore();
        QCoreApplication::sendEvent(&receiver, &event);
        QVERIFY(listener.heard.isEmpty());
        QVERIFY(!event.isAccepted());
    }

    void theObjectTravelsAlong_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("value changed") << 2;
        QTest::newRow("created") << 4;
        QTest::newRow("deleted") << 5;
        QTest::newRow("unloaded") << 6;
    }

    void theObjectTravelsAlong()
    {
        QFETCH(int, type);
        Kx::Test::TestProject project;
        const CDomainObjectPointer node = project.addNode(QStringLiteral("A"));
        NotificationsReceiver receiver;
        QVector<CDomainObjectPointer> heard;
        const auto note = [&heard](const CDomainObjectPointer& object) { heard.append(object); };
        connect(&receiver, &NotificationsReceiver::objectValueChanged, this, note);
        connect(&receiver, &NotificationsReceiver::objectCreated, this, note);
        connect(&receiver, &NotificationsReceiver::objectDeleted, this, note);
        connect(&receiver, &NotificationsReceiver::objectUnloaded, this, note);

        post(receiver, type, node);
        receiver.hold();
        post(receiver, type, node);
        receiver.release();

        QCOMPARE(heard, (QVector<CDomainObjectPointer> {node, node}));
    }

    void aNotificationIsAccepted()
    {
        NotificationsReceiver receiver;
        CDomainNotificationEvent event(notification(4));
        event.ignore();
        QCoreApplication::sendEvent(&receiver, &event);
        QVERIFY(event.isAccepted());
    }

    void whatArrivesDuringALoadIsToldAfterwardsInItsOrder()
    {
        NotificationsReceiver receiver;
        Listener listener(receiver);
        receiver.hold();
        for (int type : {4, 2, 1, 5, 7})
            post(receiver, type);
        QVERIFY(listener.heard.isEmpty());

        receiver.release();
        QCOMPARE(listener.heard,
                 (QStringList {QStringLiteral("created"), QStringLiteral("value OBJ_Key"), QStringLiteral("list"),
                               QStringLiteral("deleted"), QStringLiteral("transaction")}));
        post(receiver, 4);
        QCOMPARE(listener.heard.size(), 6);
    }

    void aLoadThatIsGivenUpForgetsWhatWasKept()
    {
        NotificationsReceiver receiver;
        Listener listener(receiver);
        receiver.hold();
        post(receiver, 4);
        receiver.discard();
        receiver.release();
        QVERIFY(listener.heard.isEmpty());
        post(receiver, 5);
        QCOMPARE(listener.heard, QStringList {QStringLiteral("deleted")});
    }
};

QTEST_GUILESS_MAIN(tst_NotificationsReceiver)
#include "tst_NotificationsReceiver.moc"
