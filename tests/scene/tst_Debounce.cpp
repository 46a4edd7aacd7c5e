#include "scene/Debounce.h"

#include <QElapsedTimer>
#include <QtTest>

#include <memory>
#include <vector>

using Torvik::View3d::Debounce;

class tst_Debounce : public QObject {
    Q_OBJECT

private slots:
    void theActionRunsOnceAfterTheLastStartOfABurst()
    {
        int calls = 0;
        QElapsedTimer sinceLast;
        Debounce debounce(60, [&] { ++calls; });

        debounce.start();
        QTest::qWait(30);
        debounce.start();
        sinceLast.start();

        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 1000);
        QVERIFY(sinceLast.elapsed() >= 59);
        QVERIFY(!debounce.isActive());
        QTest::qWait(100);
        QCOMPARE(calls, 1);
    }

    void aFlushRunsWhatWaitsAndWhatThatStarts()
    {
        QStringList ran;
        Debounce storing(50000, [&] { ran << "stored"; });
        Debounce settling(60000, [&] {
            ran << "settled";
            storing.start();
        });
        Debounce idle(60000, [&] { ran << "idle"; });
        settling.start();
        Debounce::pauseAll();
        Debounce::flushAll();
        QCOMPARE(ran, QStringList());
        Debounce::resumeAll();
        Debounce::flushAll();
        QCOMPARE(ran, (QStringList {"settled", "stored"}));
        QVERIFY(!settling.isActive() && !storing.isActive());
    }

    void aStoppedWaitDoesNothing()
    {
        int calls = 0;
        Debounce debounce(20, [&] { ++calls; });

        debounce.start();
        debounce.stop();

        QTest::qWait(60);
        QCOMPARE(calls, 0);
    }

    void aDestroyedOwnerIsForgottenAndTheOthersRun()
    {
        int calls = 0;
        auto first = std::make_unique<Debounce>(20, [&] { calls += 100; });
        Debounce second(20, [&] { ++calls; });
        first->start();
        second.start();

        first.reset();

        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 1000);
    }

    void anActionMayDestroyItsOwnOwnerAndAnother()
    {
        std::unique_ptr<Debounce> first;
        std::unique_ptr<Debounce> second;
        int calls = 0;
        first = std::make_unique<Debounce>(10, [&] {
            ++calls;
            second.reset();
            first.reset();
        });
        second = std::make_unique<Debounce>(10, [&] { calls += 100; });
        first->start();
        second->start();

        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 1000);
        QTest::qWait(40);
        QCOMPARE(calls, 1);
    }

    void anActionMayStartItselfAgain()
    {
        int calls = 0;
        std::unique_ptr<Debounce> debounce;
        debounce = std::make_unique<Debounce>(10, [&] {
            if (++calls < 3)
                debounce->start();
        });

        debounce->start();

        QTRY_COMPARE_WITH_TIMEOUT(calls, 3, 1000);
    }

    void aPauseHoldsWhatIsDueUntilTheLastResume()
    {
        int calls = 0;
        Debounce debounce(10, [&] { ++calls; });
        Debounce::pauseAll();
        Debounce::pauseAll();
        debounce.start();
        QTest::qWait(50);
        Debounce::resumeAll();
        QTest::qWait(30);
        QCOMPARE(calls, 0);
        QVERIFY(debounce.isActive());

        Debounce::resumeAll();

        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 1000);
        Debounce::resumeAll();
        debounce.start();
        QTRY_COMPARE_WITH_TIMEOUT(calls, 2, 1000);
    }

    void tenThousandWaitsRestartTenTimesInAMoment()
    {
        int calls = 0;
        std::vector<std::unique_ptr<Debounce>> waits;
        for (int i = 0; i < 10000; ++i)
            waits.push_back(std::make_unique<Debounce>(50, [&] { ++calls; }));

        QElapsedTimer clock;
        clock.start();
        for (int round = 0; round < 10; ++round) {
            for (auto& wait : waits)
                wait->start();
        }

        // A walk over all of them in each restart would take minutes.
        QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
        QTRY_COMPARE_WITH_TIMEOUT(calls, 10000, 5000);
    }
};

QTEST_GUILESS_MAIN(tst_Debounce)
#include "tst_Debounce.moc"
