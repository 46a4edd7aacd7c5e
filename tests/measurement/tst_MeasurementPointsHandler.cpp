#include "MeasuredProject.h"

#include "common/LogCapture.h"
#include "measurement/MeasurementPointsHandler.h"

#include <QProcess>

#include <limits>

using namespace Torvik::View3d;

namespace {

const QString category = QStringLiteral("MeasurementPointsHandler");
const QString initialising = QStringLiteral("Table SECMES is during initialization");
const QString heldBack = QStringLiteral("Some commands were queued during SECMES initialization");

MeasurementPointsHandler& handler()
{
    return *MeasurementPointsHandler::instance();
}

/** A point that tells its number. */
QVector3D p(int number)
{
    return {float(number), 0, 0};
}

QString lineOf(const QVector<int>& numbers)
{
    QStringList points;
    for (int number : numbers)
        points << QString("%1 0 0 160").arg(number);
    return QString("LINESTRING ZM(%1)").arg(points.join(", "));
}

} // namespace

/** Statements run on another thread: each test reads the database when all of them are done. */
class tst_MeasurementPointsHandler : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_project.reset(); }

    void thereIsOneHandler();
    void aMeasurementIsOpenedAsARow();
    void anOpenMeasurementIsNotOpenedAgain();
    void threePointsMakeThreeRowsAndALine();
    void pointsBeforeTheDatabaseHasAnsweredAreStored();
    void aPointBehindTheEndIsStoredButNotInTheLine();
    void aPointInBetweenMovesTheOthersUp();
    void withoutMovingTheNumbersStay();
    void anUnknownInspectionIsLeftAlone();
    void removedRowsAreCountedFromZero();
    void removingClosesTheGapOnlyWhenAsked();
    void aRangeMayEndOnePastTheLastPoint();
    void aRangeFurtherOutIsRefused();
    void anEmptyRangeRemovesNothing();
    void whatTheDatabaseHoldsIsReadFirst();
    void readingAnUnmeasuredInspectionOpensItsMeasurement();
    void commandsDuringTheLookupRunAfterIt();
    void heldBackCommandsGoToTheirOwnInspections();
    void openingDuringTheLookupMakesNoSecondRow();
    void severalMeasurementsAreAnsweredByAnother();
    void aColumnOfAnotherNameChangesNothing();
    void aLookupBehindOtherStatementsHearsItsOwnAnswer();
    void onlyTheLatestOfTwoLookupsCounts();
    void nobodyWaitsForTheDatabase();
    void aFailedPointDoesNotStopTheNext();
    void closingTheProjectStoresWhatIsQueued();
    void closingTheProjectStoresWhatIsHeldBack();
    void aKnownInspectionStaysKnownWhenTheProjectReturns();
    void theEndOfTheProgramStoresWhatIsQueued_data();
    void theEndOfTheProgramStoresWhatIsQueued();

private:
    /** An inspection whose measurement is open and empty, so that the points in memory are none. */
    QString opened();
    QString openedWith(int points);

    std::unique_ptr<MeasuredProject> m_project;
};

void tst_MeasurementPointsHandler::init()
{
    m_project = std::make_unique<MeasuredProject>();
}

QString tst_MeasurementPointsHandler::opened()
{
    const QString id = m_project->newInspection();
    handler().createNewSecMes(id);
    handler().waitUntilStored();
    return id;
}

QString tst_MeasurementPointsHandler::openedWith(int points)
{
    const QString id = opened();
    for (int i = 0; i < points; ++i)
        handler().addRowToSECMP(id, p(i), i, false);
    handler().waitUntilStored();
    return id;
}

void tst_MeasurementPointsHandler::thereIsOneHandler()
{
    QVERIFY(MeasurementPointsHandler::instance());
    QCOMPARE(MeasurementPointsHandler::instance(), MeasurementPointsHandler::instance());
    QVERIFY(!handler().parent());
}

void tst_MeasurementPointsHandler::aMeasurementIsOpenedAsARow()
{
    const QString id = m_project->newInspection();

    handler().createNewSecMes(id);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->ofMeasurement(id, "MES_Type").toString(), QString("3DGS"));
    QCOMPARE(m_project->ofMeasurement(id, "MES_Method").toString(), QString("forward"));
    QVERIFY(m_project->ofMeasurement(id, "MES_JOB_FK").isNull());
    QVERIFY(m_project->ofMeasurement(id, "MES_TxtValues").isNull());
    const QString date = m_project->ofMeasurement(id, "MES_Date").toString();
    QVERIFY2(QDateTime::fromString(date, "yyyy_MM_dd_hh_mm_ss").isValid(), qPrintable(date));
}

void tst_MeasurementPointsHandler::anOpenMeasurementIsNotOpenedAgain()
{
    const QString id = openedWith(2);

    handler().createNewSecMes(id);
    handler().addRowToSECMP(id, p(2), 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementPointsHandler::threePointsMakeThreeRowsAndALine()
{
    const QString id = opened();

    handler().addRowToSECMP(id, {1, 2, 3}, 0, false);
    handler().addRowToSECMP(id, {4.5F, -5, 1234.5678F}, 1, false);
    handler().addRowToSECMP(id, {7, 8, 9}, 2, false);
    handler().waitUntilStored();

    const QString key = m_project->key(id);
    QCOMPARE(m_project->points(key), QString("1:1 2 3, 2:4.5 -5 1234.57, 3:7 8 9"));
    QCOMPARE(m_project->line(id), QString("LINESTRING ZM(1 2 3 160, 4.5 -5 1234.57 160, 7 8 9 160)"));
    const QString time = m_project->stored("SECMP", "MP_Measurement_FK", key, "min(MP_TimeStamp)").toString();
    QVERIFY2(QDateTime::fromString(time, "yyyy-MM-dd hh:mm:ss.zzz").isValid(), qPrintable(time));
}

void tst_MeasurementPointsHandler::pointsBeforeTheDatabaseHasAnsweredAreStored()
{
    opened();
    const QString id = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().createNewSecMes(id);
    for (int i = 0; i < 3; ++i)
        handler().addRowToSECMP(id, p(i), i, false);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, p(3), 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0, 4:3 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3}));
    QVERIFY(log.lines().isEmpty());
}

void tst_MeasurementPointsHandler::aPointBehindTheEndIsStoredButNotInTheLine()
{
    const QString id = openedWith(2);

    handler().addRowToSECMP(id, p(2), 2, false);
    handler().addRowToSECMP(id, p(9), 9, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0, 10:9 0 0"));
}

void tst_MeasurementPointsHandler::aPointInBetweenMovesTheOthersUp()
{
    const QString id = openedWith(3);
    const QString other = opened();
    handler().addRowToSECMP(other, p(7), 0, false);
    handler().readSecMp(id);
    handler().waitUntilStored();

    handler().addRowToSECMP(id, p(9), 1, true);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:9 0 0, 3:1 0 0, 4:2 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 9, 1, 2}));
    QCOMPARE(m_project->points(m_project->key(other)), QString("1:7 0 0"));
}

void tst_MeasurementPointsHandler::withoutMovingTheNumbersStay()
{
    const QString id = openedWith(2);

    handler().addRowToSECMP(id, p(9), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 1:9 0 0, 2:1 0 0"));
    QCOMPARE(m_project->line(id), lineOf({9, 0, 1}));
}

void tst_MeasurementPointsHandler::anUnknownInspectionIsLeftAlone()
{
    const QString id = openedWith(1);
    const QString unknown = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().addRowToSECMP(unknown, p(5), 0, true);
    handler().removeRowsFromSECMP(unknown, 0, 9, true);
    handler().addRowToSECMP(id, p(1), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(unknown), 0);
    QCOMPARE(m_project->line(id), lineOf({0, 1}));
    QVERIFY(log.lines().isEmpty());
}

void tst_MeasurementPointsHandler::removedRowsAreCountedFromZero()
{
    const QString id = openedWith(5);

    handler().removeRowsFromSECMP(id, 1, 3, true);
    handler().waitUntilStored();

    // The numbers of rows count from 1: those before the points that leave the line go.
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:2 0 0, 2:3 0 0, 3:4 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3, 4}));
    handler().addRowToSECMP(id, p(9), 3, false);
    handler().waitUntilStored();
    QCOMPARE(m_project->line(id), lineOf({0, 3, 4, 9}));
}

void tst_MeasurementPointsHandler::removingClosesTheGapOnlyWhenAsked()
{
    const QString id = openedWith(4);

    handler().removeRowsFromSECMP(id, 1, 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("3:2 0 0, 4:3 0 0"));
}

void tst_MeasurementPointsHandler::aRangeMayEndOnePastTheLastPoint()
{
    const QString id = openedWith(3);
    const Kx::Test::LogCapture log;

    handler().removeRowsFromSECMP(id, 2, 4, false);
    handler().addRowToSECMP(id, p(9), 2, false);
    handler().waitUntilStored();

    QVERIFY(log.lines().isEmpty());
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 3:9 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 9}));
}

void tst_MeasurementPointsHandler::aRangeFurtherOutIsRefused()
{
    const QString id = openedWith(3);
    const Kx::Test::LogCapture log;

    handler().removeRowsFromSECMP(id, 0, 5, true);
    handler().addRowToSECMP(id, p(3), 3, false);
    handler().waitUntilStored();

    QCOMPARE(log.count(1, category, "Wrong index in remove rows from SECMP command. Index=4, array size=3"), 1);
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(m_project->pointCount(m_project->key(id)), 4);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3}));
}

void tst_MeasurementPointsHandler::anEmptyRangeRemovesNothing()
{
    const QString id = openedWith(3);

    handler().removeRowsFromSECMP(id, 1, 1, true);
    handler().addRowToSECMP(id, p(3), 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0, 4:3 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2, 3}));
}

void tst_MeasurementPointsHandler::whatTheDatabaseHoldsIsReadFirst()
{
    openedWith(2);
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "10, 20, 30");
    MeasuredProject::putPoint("m", 2, "11.5, '21.5', 31");

    handler().switchToInspection(id);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, {1, 2, 3}, 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), QString("LINESTRING ZM(10 20 30 160, 11.5 21.5 31 160, 1 2 3 160)"));
    QCOMPARE(m_project->points("m"), QString("1:10 20 30, 2:11.5 21.5 31, 3:1 2 3"));
}

void tst_MeasurementPointsHandler::readingAnUnmeasuredInspectionOpensItsMeasurement()
{
    const QString id = m_project->newInspection();

    handler().readSecMp(id);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->ofMeasurement(id, "MES_Type").toString(), QString("3DGS"));
}

void tst_MeasurementPointsHandler::commandsDuringTheLookupRunAfterIt()
{
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "0, 0, 0");
    const Kx::Test::LogCapture log;

    handler().readSecMp(id);
    handler().addRowToSECMP(id, p(2), 1, false);
    handler().addRowToSECMP(id, {1234.5678F, -0.25F, 1}, 1, true);
    handler().removeRowsFromSECMP(id, 2, 3, true);
    QCOMPARE(log.count(1, category, initialising), 3);
    QCOMPARE(log.lines().size(), 3);
    QCOMPARE(m_project->pointCount("m"), 1);
    handler().waitUntilStored();

    QCOMPARE(log.count(3, category, heldBack), 1);
    QCOMPARE(log.lines().size(), 4);
    QCOMPARE(m_project->points("m"), QString("1:0 0 0, 2:2 0 0"));
    QCOMPARE(m_project->line(id), QString("LINESTRING ZM(0 0 0 160, 1234.57 -0.25 1 160, 2 0 0 160)"));
}

void tst_MeasurementPointsHandler::heldBackCommandsGoToTheirOwnInspections()
{
    const QString first = openedWith(1);
    const QString second = opened();

    handler().readSecMp(second);
    handler().addRowToSECMP(first, p(8), 1, false);
    handler().addRowToSECMP("nowhere", p(7), 0, false);
    handler().addRowToSECMP(second, p(9), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(first)), QString("1:0 0 0, 2:8 0 0"));
    QCOMPARE(m_project->points(m_project->key(second)), QString("1:9 0 0"));
}

void tst_MeasurementPointsHandler::openingDuringTheLookupMakesNoSecondRow()
{
    const QString id = opened();
    const QString unmeasured = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().readSecMp(id);
    handler().createNewSecMes(id);
    handler().createNewSecMes(unmeasured);
    QCOMPARE(log.count(1, category, initialising), 2);
    QCOMPARE(m_project->measurements(unmeasured), 0);
    handler().waitUntilStored();

    QCOMPARE(log.count(3, category, heldBack), 1);
    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->measurements(unmeasured), 1);
}

void tst_MeasurementPointsHandler::severalMeasurementsAreAnsweredByAnother()
{
    opened();
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m1", id);
    MeasuredProject::putMeasurement("m2", id);

    handler().readSecMp(id);
    handler().addRowToSECMP(id, p(0), 0, false);
    handler().addRowToSECMP(id, p(1), 1, false);
    handler().waitUntilStored();
    handler().readSecMp(id);
    handler().addRowToSECMP(id, p(2), 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 3);
    QCOMPARE(m_project->pointCount("m1") + m_project->pointCount("m2"), 0);
    const QString key =
        m_project->stored("(SELECT * FROM SECMES WHERE MES_Date <> '')", "MES_Inspection_FK", id, "MES_PK").toString();
    QCOMPARE(m_project->points(key), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
}

void tst_MeasurementPointsHandler::aColumnOfAnotherNameChangesNothing()
{
    const QString id = m_project->newInspection();
    MeasuredProject::execute("DROP TABLE SECMP");
    MeasuredProject::execute("DROP TABLE SECMES");
    MeasuredProject::execute("CREATE TABLE SECMES (mes_pk, MES_Inspection_FK, MES_Method)");
    MeasuredProject::execute(QString("INSERT INTO SECMES VALUES ('m', '%1', 'forward')").arg(id));
    Kx::Test::LogCapture log;

    handler().readSecMp(id);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, p(0), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QVERIFY2(log.lines().isEmpty(), qPrintable(log.lines().value(0).message));
}

void tst_MeasurementPointsHandler::aLookupBehindOtherStatementsHearsItsOwnAnswer()
{
    const QString busy = opened();
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "5, 0, 0");

    for (int i = 0; i < 50; ++i)
        handler().addRowToSECMP(busy, p(i), i, false);
    handler().switchToInspection(id);
    handler().addRowToSECMP(id, p(6), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->pointCount(m_project->key(busy)), 50);
    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({5, 6}));
}

void tst_MeasurementPointsHandler::onlyTheLatestOfTwoLookupsCounts()
{
    const QString first = m_project->newInspection();
    const QString second = m_project->newInspection();
    MeasuredProject::putMeasurement("m1", first);
    MeasuredProject::putMeasurement("m2", second);
    MeasuredProject::putPoint("m1", 1, "1, 0, 0");
    MeasuredProject::putPoint("m2", 1, "2, 0, 0");

    handler().readSecMp(first);
    handler().switchToInspection(second);
    handler().addRowToSECMP(second, p(3), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points("m1"), QString("1:1 0 0"));
    QCOMPARE(m_project->points("m2"), QString("1:2 0 0, 2:3 0 0"));
    QCOMPARE(m_project->line(second), lineOf({2, 3}));
}

void tst_MeasurementPointsHandler::nobodyWaitsForTheDatabase()
{
    const QString id = opened();
    Torvik::Database::StoreStatus status;
    const auto connection =
        Torvik::Database::SqlConnection::open(Torvik::Database::ProjectStore::databaseFile(m_project->path()),
                                              Torvik::Database::SqlConnection::ReadWrite, status);
    auto lock = std::make_unique<Torvik::Database::SqlTransaction>(*connection);
    QVERIFY(lock->begun());

    for (int i = 0; i < 20; ++i)
        handler().addRowToSECMP(id, p(i), i, false);
    QCOMPARE(m_project->pointCount(m_project->key(id)), 0);
    lock.reset();
    handler().waitUntilStored();

    QCOMPARE(m_project->pointCount(m_project->key(id)), 20);
}

void tst_MeasurementPointsHandler::aFailedPointDoesNotStopTheNext()
{
    const QString id = opened();
    const Kx::Test::LogCapture log;

    handler().addRowToSECMP(id, {std::numeric_limits<float>::quiet_NaN(), 0, 0}, 0, false);
    handler().addRowToSECMP(id, p(1), 1, false);
    handler().waitUntilStored();

    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(int(log.lines().first().level), 1);
    QCOMPARE(m_project->points(m_project->key(id)), QString("2:1 0 0"));
}

void tst_MeasurementPointsHandler::closingTheProjectStoresWhatIsQueued()
{
    const QString id = opened();
    for (int i = 0; i < 300; ++i)
        handler().addRowToSECMP(id, p(i), i, false);

    m_project->close();

    QCOMPARE(m_project->pointCount(m_project->key(id)), 300);
    QCOMPARE(m_project->line(id).count(" 0 0 160"), 300);
}

void tst_MeasurementPointsHandler::closingTheProjectStoresWhatIsHeldBack()
{
    const QString id = m_project->newInspection();
    handler().readSecMp(id);
    for (int i = 0; i < 3; ++i)
        handler().addRowToSECMP(id, p(i), i, false);

    m_project->close();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementPointsHandler::aKnownInspectionStaysKnownWhenTheProjectReturns()
{
    const QString id = openedWith(2);
    {
        const Kx::Test::LogCapture log;
        m_project->reopen();
        m_project->activate();

        handler().addRowToSECMP(id, p(2), 2, false);
        handler().waitUntilStored();
        QVERIFY(log.lines().isEmpty());
    }

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementPointsHandler::theEndOfTheProgramStoresWhatIsQueued_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("main returns") << "return";
    QTest::newRow("main returns while commands are held back") << "return-held-back";
    QTest::newRow("the event loop ends while commands are held back, and then the process at once") << "quit";
}

void tst_MeasurementPointsHandler::theEndOfTheProgramStoresWhatIsQueued()
{
    QFETCH(QString, how);
    const QString id = m_project->newInspection();
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KX_LOG_LEVEL", "0");
    program.setProcessEnvironment(environment);

    program.start(KX_MEASURING_HOST, {m_project->path(), id, "200", how});
    QVERIFY(program.waitForFinished(60000));

    QCOMPARE(QString::fromLocal8Bit(program.readAll()), QString());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(m_project->pointCount(m_project->key(id)), 200);
}

QTEST_GUILESS_MAIN(tst_MeasurementPointsHandler)
#include "tst_MeasurementPointsHandler.moc"
