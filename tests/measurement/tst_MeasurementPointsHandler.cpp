#include "MeasuredProject.h"

#include "common/LogCapture.h"

#include <limits>

using namespace Torvik::View3d;

namespace {

const QString category = QStringLiteral("MeasurementPointsHandler");

MeasurementPointsHandler& handler()
{
    return *MeasurementPointsHandler::instance();
}

} // namespace

/** Statements run on another thread: each test reads the database when all of them are done. */
class tst_MeasurementPointsHandler : public QObject {
    Q_OBJECT

private slots:
    void init() { m_project = std::make_unique<MeasuredProject>(); }
    void cleanup() { m_project.reset(); }

    void thereIsOneHandler();
    void aMeasurementIsOpenedAsARow();
    void anOpenMeasurementIsNotOpenedAgain();
    void threePointsMakeThreeRowsAndALine();
    void pointsBeforeTheDatabaseHasAnsweredAreStored();
    void aPointBehindTheEndIsStoredButNotInTheLine();
    void aLineOfNoPointsIsStoredToo();
    void aPointInBetweenMovesTheOthersUp();
    void withoutMovingTheNumbersStay();
    void anUnknownInspectionIsLeftAlone();
    void removedRowsAreCountedFromZero();
    void removingClosesTheGapOnlyWhenAsked();
    void aRangeMayEndOnePastTheLastPoint();
    void aRangeFurtherOutIsRefused();
    void anEmptyRangeRemovesNothing();
    void nobodyWaitsForTheDatabase();
    void ofALineThatWaitsOnlyTheNewestIsStored();
    void aFailedPointDoesNotStopTheNext();

private:
    std::unique_ptr<MeasuredProject> m_project;
};

void tst_MeasurementPointsHandler::thereIsOneHandler()
{
    QVERIFY(MeasurementPointsHandler::instance());
    QCOMPARE(MeasurementPointsHandler::instance(), MeasurementPointsHandler::instance());
    QVERIFY(!handler().parent());
}

void tst_MeasurementPointsHandler::aMeasurementIsOpenedAsARow()
{
    const QString id = m_project->newInspection();
    const auto before = QDateTime::currentDateTime();

    handler().createNewSecMes(id);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->ofMeasurement(id, "MES_Type").toString(), QString("3DGS"));
    QCOMPARE(m_project->ofMeasurement(id, "MES_Method").toString(), QString("forward"));
    QVERIFY(m_project->ofMeasurement(id, "MES_JOB_FK").isNull());
    QVERIFY(m_project->ofMeasurement(id, "MES_TxtValues").isNull());
    const QString date = m_project->ofMeasurement(id, "MES_Date").toString();
    QVERIFY2(isBetween(before, date, "yyyy_MM_dd_hh_mm_ss"), qPrintable(date));
}

void tst_MeasurementPointsHandler::anOpenMeasurementIsNotOpenedAgain()
{
    const QString id = m_project->openedWith(2);

    handler().createNewSecMes(id);
    handler().addRowToSECMP(id, measured(2), 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementPointsHandler::threePointsMakeThreeRowsAndALine()
{
    const QString id = m_project->opened();
    const auto before = QDateTime::currentDateTime();

    handler().addRowToSECMP(id, {1, 2, 3}, 0, false);
    handler().addRowToSECMP(id, {4.5F, -5, 1234.5678F}, 1, false);
    handler().addRowToSECMP(id, {7, 8, 9}, 2, false);
    handler().waitUntilStored();

    const QString key = m_project->key(id);
    QCOMPARE(m_project->points(key), QString("1:1 2 3, 2:4.5 -5 1234.57, 3:7 8 9"));
    QCOMPARE(m_project->line(id), QString("LINESTRING ZM(1 2 3 160, 4.5 -5 1234.57 160, 7 8 9 160)"));
    const QString time = m_project->stored("SECMP", "MP_Measurement_FK", key, "min(MP_TimeStamp)").toString();
    QVERIFY2(isBetween(before, time, "yyyy-MM-dd hh:mm:ss.zzz"), qPrintable(time));
}

void tst_MeasurementPointsHandler::pointsBeforeTheDatabaseHasAnsweredAreStored()
{
    m_project->opened();
    const QString id = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().createNewSecMes(id);
    for (int i = 0; i < 3; ++i)
        handler().addRowToSECMP(id, measured(i), i, false);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, measured(3), 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0, 4:3 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3}));
    QVERIFY(log.lines().isEmpty());
}

void tst_MeasurementPointsHandler::aPointBehindTheEndIsStoredButNotInTheLine()
{
    const QString id = m_project->openedWith(2);

    handler().addRowToSECMP(id, measured(2), 2, false);
    handler().addRowToSECMP(id, measured(9), 9, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0, 10:9 0 0"));
}

void tst_MeasurementPointsHandler::aLineOfNoPointsIsStoredToo()
{
    const QString id = m_project->opened();

    handler().addRowToSECMP(id, measured(5), 5, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->line(id), QString("LINESTRING ZM()"));
    QCOMPARE(m_project->points(m_project->key(id)), QString("6:5 0 0"));
}

void tst_MeasurementPointsHandler::aPointInBetweenMovesTheOthersUp()
{
    const QString id = m_project->openedWith(3);
    const QString other = m_project->opened();
    handler().addRowToSECMP(other, measured(7), 0, false);
    handler().readSecMp(id);
    handler().waitUntilStored();

    handler().addRowToSECMP(id, measured(9), 1, true);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:9 0 0, 3:1 0 0, 4:2 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 9, 1, 2}));
    QCOMPARE(m_project->points(m_project->key(other)), QString("1:7 0 0"));
}

void tst_MeasurementPointsHandler::withoutMovingTheNumbersStay()
{
    const QString id = m_project->openedWith(2);

    handler().addRowToSECMP(id, measured(9), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 1:9 0 0, 2:1 0 0"));
    QCOMPARE(m_project->line(id), lineOf({9, 0, 1}));
}

void tst_MeasurementPointsHandler::anUnknownInspectionIsLeftAlone()
{
    const QString id = m_project->openedWith(1);
    const QString unknown = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().addRowToSECMP(unknown, measured(5), 0, true);
    handler().removeRowsFromSECMP(unknown, 0, 9, true);
    handler().addRowToSECMP(id, measured(1), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(unknown), 0);
    QCOMPARE(m_project->line(id), lineOf({0, 1}));
    QVERIFY(log.lines().isEmpty());
}

void tst_MeasurementPointsHandler::removedRowsAreCountedFromZero()
{
    const QString id = m_project->openedWith(5);

    handler().removeRowsFromSECMP(id, 1, 3, true);
    handler().waitUntilStored();

    // The numbers of rows count from 1: those before the points that leave the line go.
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:2 0 0, 2:3 0 0, 3:4 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3, 4}));
    handler().addRowToSECMP(id, measured(9), 3, false);
    handler().waitUntilStored();
    QCOMPARE(m_project->line(id), lineOf({0, 3, 4, 9}));
}

void tst_MeasurementPointsHandler::removingClosesTheGapOnlyWhenAsked()
{
    const QString id = m_project->openedWith(4);

    handler().removeRowsFromSECMP(id, 1, 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("3:2 0 0, 4:3 0 0"));
}

void tst_MeasurementPointsHandler::aRangeMayEndOnePastTheLastPoint()
{
    const QString id = m_project->openedWith(3);
    const Kx::Test::LogCapture log;

    handler().removeRowsFromSECMP(id, 2, 4, false);
    handler().addRowToSECMP(id, measured(9), 2, false);
    handler().waitUntilStored();

    QVERIFY(log.lines().isEmpty());
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 3:9 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 9}));
}

void tst_MeasurementPointsHandler::aRangeFurtherOutIsRefused()
{
    const QString id = m_project->openedWith(3);
    const Kx::Test::LogCapture log;

    handler().removeRowsFromSECMP(id, 0, 5, true);
    handler().addRowToSECMP(id, measured(3), 3, false);
    handler().waitUntilStored();

    QCOMPARE(log.count(1, category, "Wrong index in remove rows from SECMP command. Index=4, array size=3"), 1);
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(m_project->pointCount(m_project->key(id)), 4);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3}));
}

void tst_MeasurementPointsHandler::anEmptyRangeRemovesNothing()
{
    const QString id = m_project->openedWith(3);

    handler().removeRowsFromSECMP(id, 1, 1, true);
    handler().addRowToSECMP(id, measured(3), 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0, 4:3 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3}));
}

void tst_MeasurementPointsHandler::nobodyWaitsForTheDatabase()
{
    const QString id = m_project->opened();
    Torvik::Database::StoreStatus status;
    const auto connection =
        Torvik::Database::SqlConnection::open(Torvik::Database::ProjectStore::databaseFile(m_project->path()),
                                              Torvik::Database::SqlConnection::ReadWrite, status);
    auto lock = std::make_unique<Torvik::Database::SqlTransaction>(*connection);
    QVERIFY(lock->begun());

    for (int i = 0; i < 20; ++i)
        handler().addRowToSECMP(id, measured(i), i, false);
    QCOMPARE(m_project->pointCount(m_project->key(id)), 0);
    // Twenty points, and the one line that has to be written of theirs; maybe one before it was on its way already.
    QVERIFY(handler().waitingStatements() >= 21 && handler().waitingStatements() <= 22);
    lock.reset();
    handler().waitUntilStored();
    QCOMPARE(handler().waitingStatements(), 0);

    QCOMPARE(m_project->pointCount(m_project->key(id)), 20);
}

void tst_MeasurementPointsHandler::ofALineThatWaitsOnlyTheNewestIsStored()
{
    const QString id = m_project->opened();
    const QString other = m_project->opened();
    MeasuredProject::execute("CREATE TABLE WRITTEN (MES_PK, LENGTH)");
    MeasuredProject::execute(
        "CREATE TRIGGER counting AFTER UPDATE OF MES_TxtValues ON SECMES BEGIN INSERT INTO WRITTEN "
        "VALUES (NEW.MES_PK, length(NEW.MES_TxtValues)); END");
    constexpr int count = 300;
    {
        Torvik::Database::StoreStatus status;
        const auto connection =
            Torvik::Database::SqlConnection::open(Torvik::Database::ProjectStore::databaseFile(m_project->path()),
                                                  Torvik::Database::SqlConnection::ReadWrite, status);
        const Torvik::Database::SqlTransaction lock(*connection);
        QVERIFY(lock.begun());
        for (int i = 0; i < count; ++i)
            handler().addRowToSECMP(id, measured(i), i, false);
        handler().addRowToSECMP(other, measured(0), count, false);
    }
    handler().waitUntilStored();

    const auto written = [&](const QString& inspection) {
        return m_project->stored("WRITTEN", "MES_PK", m_project->key(inspection), "count(*)").toInt();
    };
    // Each text would be a copy of all the points.
    QCOMPARE(written(id), 1);
    QCOMPARE(written(other), 1);
    QCOMPARE(m_project->line(id).count(" 0 0 160"), count);
    QCOMPARE(m_project->line(other).count(" 0 0 160"), count + 1);
    QCOMPARE(m_project->pointCount(m_project->key(id)), count);
}

void tst_MeasurementPointsHandler::aFailedPointDoesNotStopTheNext()
{
    const QString id = m_project->opened();
    const Kx::Test::LogCapture log;

    handler().addRowToSECMP(id, {std::numeric_limits<float>::quiet_NaN(), 0, 0}, 0, false);
    handler().addRowToSECMP(id, measured(1), 1, false);
    handler().waitUntilStored();

    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(int(log.lines().first().level), 1);
    QCOMPARE(m_project->points(m_project->key(id)), QString("2:1 0 0"));
}

QTEST_GUILESS_MAIN(tst_MeasurementPointsHandler)
#include "tst_MeasurementPointsHandler.moc"
