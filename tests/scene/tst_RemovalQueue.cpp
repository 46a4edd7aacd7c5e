#include "scene/RemovalQueue.h"

#include <QSignalSpy>
#include <Qt3DCore/QEntity>
#include <QtTest>

using Qt3DCore::QEntity;
using Torvik::View3d::RemovalQueue;

namespace {

/** Entities under one root that write down in which order they go. */
struct Crowd {
    explicit Crowd(int size)
    {
        for (int i = 0; i < size; ++i) {
            auto* const entity = new QEntity(&root);
            QObject::connect(entity, &QObject::destroyed, &root, [this, i] { gone.append(i); });
            entities.append(entity);
        }
    }

    QEntity root;
    QVector<QEntity*> entities;
    QVector<int> gone;
};

} // namespace

class tst_RemovalQueue : public QObject {
    Q_OBJECT

private slots:
    void aFewLeaveInTheNextTurnOfTheEventLoop()
    {
        Crowd crowd(3);
        RemovalQueue queue;
        for (QEntity* entity : crowd.entities)
            queue.remove(entity);
        QVERIFY(crowd.gone.isEmpty());
        QVERIFY(!queue.isBusy());

        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(crowd.gone, (QVector<int> {0, 1, 2}));
    }

    void manyLeaveInTheirOrderAndOutOfSightMeanwhile()
    {
        Crowd crowd(1000);
        RemovalQueue queue;
        QSignalSpy finished(&queue, &RemovalQueue::finished);
        for (QEntity* entity : crowd.entities)
            queue.remove(entity);
        QVERIFY(queue.isBusy());
        QVERIFY(!crowd.entities.last()->isEnabled());

        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 5000);
        QVERIFY(!queue.isBusy());
        QCOMPARE(crowd.gone.size(), 1000);
        QVERIFY(std::is_sorted(crowd.gone.begin(), crowd.gone.end()));
        QVERIFY(crowd.root.childNodes().isEmpty());
    }

    void theRootMayGoFirst()
    {
        RemovalQueue queue;
        QSignalSpy finished(&queue, &RemovalQueue::finished);
        {
            Crowd crowd(1000);
            for (QEntity* entity : crowd.entities)
                queue.remove(entity);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 5000);
    }

    void nullIsIgnored()
    {
        RemovalQueue queue;
        queue.remove(nullptr);
        QVERIFY(!queue.isBusy());
    }
};

QTEST_GUILESS_MAIN(tst_RemovalQueue)
#include "tst_RemovalQueue.moc"
