#include "scene/EntityRegistry.h"

#include <QtTest>

using Torvik::View3d::EntityRegistry;

class tst_EntityRegistry : public QObject {
    Q_OBJECT

private slots:
    void anEntryIsFoundTakenAndGone()
    {
        EntityRegistry<QObject> registry;
        QObject object;
        registry.insert(QStringLiteral("a"), &object);
        QCOMPARE(registry.value(QStringLiteral("a")), &object);
        QCOMPARE(registry.take(QStringLiteral("a")), &object);
        QVERIFY(!registry.take(QStringLiteral("a")));
        QVERIFY(registry.isEmpty());
    }

    void theSameKeyIsOverwritten()
    {
        EntityRegistry<QObject> registry;
        QObject one;
        QObject other;
        registry.insert(QStringLiteral("a"), &one);
        registry.insert(QStringLiteral("a"), &other);
        registry.removeObject(&one);
        QCOMPARE(registry.value(QStringLiteral("a")), &other);
        QCOMPARE(registry.size(), 1);
    }

    void anObjectIsTakenOutUnderAllItsKeys()
    {
        EntityRegistry<QObject> registry;
        QObject object;
        QObject other;
        registry.insert(QStringLiteral("a"), &object);
        registry.insert(QStringLiteral("b"), &object);
        registry.insert(QStringLiteral("c"), &other);
        registry.removeObject(&object);
        QCOMPARE(registry.keys(), QList<QString> {QStringLiteral("c")});
    }

    void anUnknownObjectIsIgnored()
    {
        EntityRegistry<QObject> registry;
        QObject object;
        registry.insert(QStringLiteral("a"), nullptr);
        registry.removeObject(&object);
        QVERIFY(registry.contains(QStringLiteral("a")));
    }
};

QTEST_GUILESS_MAIN(tst_EntityRegistry)
#include "tst_EntityRegistry.moc"
