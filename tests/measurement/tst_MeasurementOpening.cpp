#include "MeasuredProject.h"

#include "common/LogCapture.h"
#include "measurement/PointsAccess.h"

#include <QElapsedTimer>
#include <QThread>

using namespace Torvik::View3d;

namespace {

const QString category = QStringLiteral("MeasurementPointsHandler");
const QString initialising = QStringLiteral("Table SECMES is during initialization");
const QString heldBack = QStringLiteral("Some commands were queued during SECMES initialization");

MeasurementPointsHandler& handler()
{
    return *MeasurementPointsHandler::instance();
}

/** Counts what is delivered to the handler. */
class Deliveries : public QObject {
public:
    Deliveries() { handler().installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::MetaCall ? 1 : 0;
        return false;
    }
};

/** Hands over the database's next answer, but not that to what is asked thereupon. */
void takeOneAnswer()
{
    const Deliveries deliveries;
    QElapsedTimer waited;
    waited.start();
    while (deliveries.count == 0 && waited.elapsed() < 10000) {
        QThread::msleep(2);
        QCoreApplication::sendPostedEvents(&handler(), QEvent::MetaCall);
    }
    QCOMPARE(deliveries.count, 1);
}

} // namespace

/** From the moment at which a measurement is asked for to that at which its points are known, step by step. */
class tst_MeasurementOpening : public QObject {
    Q_OBJECT

private slots:
    void init() { m_project = std::make_unique<MeasuredProject>(); }
    void cleanup() { m_project.reset(); }

    void commandsAreHeldBackWhileThePointsAreRead();
    void commandsAreHeldBackWhileANewMeasurementIsReadBack();
    void aMeasurementThatWaitedToBeOpenedTakesThePointsBehindIt();
    void aMeasurementOfAnEarlierRunIsContinuedWhenItWasAskedFor_data();
    void aMeasurementOfAnEarlierRunIsContinuedWhenItWasAskedFor();
    void aMeasurementOfAnotherKindIsNotContinued();
    void aShapeTakesTheMeasurementsPlace();
    void comingBackToAnInspectionItsPointsAreAtHandAgain();
    void aShapeIsStoredBesideARunningMeasurement();

private:
    std::unique_ptr<MeasuredProject> m_project;
};

void tst_MeasurementOpening::commandsAreHeldBackWhileThePointsAreRead()
{
    m_project->openedWith(3);
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "8, 0, 0");
    const Kx::Test::LogCapture log;

    handler().readSecMp(id);
    takeOneAnswer();
    QVERIFY(log.lines().isEmpty());
    handler().addRowToSECMP(id, measured(9), 1, false);
    QCOMPARE(log.count(1, category, initialising), 1);
    takeOneAnswer();

    QCOMPARE(log.count(3, category, heldBack), 1);
    handler().waitUntilStored();
    QCOMPARE(m_project->line(id), lineOf({8, 9}));
}

void tst_MeasurementOpening::commandsAreHeldBackWhileANewMeasurementIsReadBack()
{
    m_project->openedWith(3);
    const QString id = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().createNewSecMes(id);
    handler().addRowToSECMP(id, measured(0), 0, false);
    QVERIFY2(log.lines().isEmpty(), "nothing is being read yet");
    takeOneAnswer(); // it is made, and looked for
    handler().addRowToSECMP(id, measured(1), 1, false);
    takeOneAnswer(); // it is found, and its points are read
    handler().addRowToSECMP(id, measured(2), 2, false);
    QCOMPARE(log.count(1, category, initialising), 2);
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0"));
    handler().waitUntilStored();

    QCOMPARE(log.count(3, category, heldBack), 1);
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementOpening::aMeasurementThatWaitedToBeOpenedTakesThePointsBehindIt()
{
    const QString read = m_project->opened();
    const QString id = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().readSecMp(read);
    handler().createNewSecMes(id);
    for (int i = 0; i < 3; ++i)
        handler().addRowToSECMP(id, measured(i), i, false);
    handler().waitUntilStored();

    QCOMPARE(log.count(1, category, initialising), 4);
    QCOMPARE(log.lines().size(), 5);
    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
    QCOMPARE(m_project->pointCount(m_project->key(read)), 0);
}

void tst_MeasurementOpening::aMeasurementOfAnEarlierRunIsContinuedWhenItWasAskedFor_data()
{
    QTest::addColumn<bool>("asked");
    QTest::addColumn<int>("measurements");
    QTest::addColumn<QString>("points");
    QTest::newRow("asked for") << true << 1 << "1:8 0 0, 2:9 0 0";
    QTest::newRow("not asked for") << false << 2 << "1:8 0 0";
}

void tst_MeasurementOpening::aMeasurementOfAnEarlierRunIsContinuedWhenItWasAskedFor()
{
    QFETCH(bool, asked);
    m_project->opened();
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "8, 0, 0");

    if (asked)
        handler().switchToInspection(id);
    handler().createNewSecMes(id);
    handler().addRowToSECMP(id, measured(9), 1, false);
    handler().waitUntilStored();

    QTEST(m_project->measurements(id), "measurements");
    QTEST(m_project->points("m"), "points");
}

void tst_MeasurementOpening::aMeasurementOfAnotherKindIsNotContinued()
{
    const QString id = m_project->newInspection();
    MeasurementPointsAccess(id).writePoints("LINESTRING ZM(1 0 0 0,2 0 0 0)");
    const QString whole = m_project->key(id);

    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(7), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 2);
    QCOMPARE(m_project->points(whole), QString("1:1 0 0, 2:2 0 0"));
    QCOMPARE(m_project->stored("SECMES", "MES_PK", whole, "MES_TxtValues").toString(),
             QString("LINESTRING ZM(1 0 0 0,2 0 0 0)"));
    QCOMPARE(m_project->stored("SECMP", "MP_X_Value || ''", "7", "count(*)").toInt(), 1);
}

void tst_MeasurementOpening::aShapeTakesTheMeasurementsPlace()
{
    const QString id = m_project->openedWith(4);
    const QString key = m_project->key(id);

    MeasurementPointsAccess(id).writePoints("LINESTRING ZM(1 0 0 0,2 0 0 0)");

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->points(key), QString("1:1 0 0, 2:2 0 0"));
    QCOMPARE(m_project->line(id), QString("LINESTRING ZM(1 0 0 0,2 0 0 0)"));
    // What measures goes on with the points that it knows.
    handler().addRowToSECMP(id, measured(4), 4, false);
    handler().waitUntilStored();
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3, 4}));
    QCOMPARE(m_project->points(key), QString("1:1 0 0, 2:2 0 0, 5:4 0 0"));
}

void tst_MeasurementOpening::comingBackToAnInspectionItsPointsAreAtHandAgain()
{
    const QString id = m_project->openedWith(2);
    const QString between = m_project->openedWith(3);

    handler().switchToInspection(id);
    handler().waitUntilStored();
    handler().createNewSecMes(id);
    handler().addRowToSECMP(id, measured(9), 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 9}));
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:9 0 0"));
    QCOMPARE(m_project->line(between), lineOf({0, 1, 2}));
}

void tst_MeasurementOpening::aShapeIsStoredBesideARunningMeasurement()
{
    constexpr int readings = 300;
    const QString id = m_project->openedWith(1);
    const QString other = m_project->newInspection();
    const Kx::Test::LogCapture log;

    for (int i = 1; i <= readings; ++i)
        handler().addRowToSECMP(id, measured(i), i, false);
    MeasurementPointsAccess(other).writePoints("LINESTRING ZM(1 0 0 0,2 0 0 0)");
    QVERIFY2(handler().waitingStatements() > 0, "the measurement was over before");
    handler().waitUntilStored();

    QCOMPARE(m_project->pointCount(m_project->key(id)), readings + 1);
    QCOMPARE(m_project->points(m_project->key(other)), QString("1:1 0 0, 2:2 0 0"));
    QVERIFY(log.lines().isEmpty());
}

QTEST_GUILESS_MAIN(tst_MeasurementOpening)
#include "tst_MeasurementOpening.moc"
