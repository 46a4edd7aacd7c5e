#include "labels/LabelsSignalRouter.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using namespace Torvik::View3d;

class tst_LabelsSignalRouter : public QObject {
    Q_OBJECT

private slots:
    void aSecondChangeHidesNothingAgainAndDelaysTheShowing()
    {
        auto& router = LabelsSignalRouter::instance();
        QSignalSpy hidden(&router, &LabelsSignalRouter::hideLabels);
        QSignalSpy shown(&router, &LabelsSignalRouter::showLabels);

        router.onLabelPositionChanged();
        QCOMPARE(hidden.count(), 1);
        QTest::qWait(200);
        router.onLabelPositionChanged();
        QElapsedTimer sinceTheLast;
        sinceTheLast.start();

        QVERIFY(shown.wait(5000));
        // Timers count whole milliseconds.
        QVERIFY2(sinceTheLast.elapsed() >= 499, qPrintable(QString::number(sinceTheLast.elapsed())));
        QCOMPARE(hidden.count(), 1);
        QCOMPARE(shown.count(), 1);
    }

    void aChangeAfterTheShowingHidesAgain()
    {
        auto& router = LabelsSignalRouter::instance();
        router.onLabelPositionChanged();
        QSignalSpy hidden(&router, &LabelsSignalRouter::hideLabels);
        QSignalSpy shown(&router, &LabelsSignalRouter::showLabels);
        QVERIFY(shown.wait(5000));

        router.onLabelPositionChanged();

        QCOMPARE(hidden.count(), 1);
        QVERIFY(shown.wait(5000));
        QCOMPARE(shown.count(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_LabelsSignalRouter)
#include "tst_LabelsSignalRouter.moc"
