#include "MeasuredProject.h"

#include "common/LogCapture.h"

#include <QProcess>
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

} // namespace

/** What happens while it is looked up what the database holds, and that nothing is lost when the work ends. */
class tst_MeasurementLookup : public QObject {
    Q_OBJECT

private slots:
    void init() { m_project = std::make_unique<MeasuredProject>(); }
    void cleanup() { m_project.reset(); }

    void whatTheDatabaseHoldsIsReadFirst();
    void pointsAreReadAsTheDatabaseGivesThem_data();
    void pointsAreReadAsTheDatabaseGivesThem();
    void readingAnUnmeasuredInspectionOpensItsMeasurement();
    void theAnswerComesWithTheEventLoop();
    void commandsDuringTheLookupRunAfterIt();
    void heldBackCommandsLeaveTheOtherRowsWhenNotAskedToMoveThem();
    void heldBackCommandsGoToTheirOwnInspections();
    void openingDuringTheLookupMakesNoSecondRow();
    void aKnownInspectionOpenedAgainDoesNotBecomeTheCurrentOne();
    void twoMeasurementsMayBeOpenedAtOnce();
    void severalMeasurementsAreAnsweredByAnother();
    void aFailedLookupIsAnsweredByANewMeasurement();
    void aColumnOfAnotherNameChangesNothing();
    void whatWasHeldBackRunsBehindAColumnOfAnotherName();
    void aLookupBehindOtherStatementsHearsItsOwnAnswer();
    void onlyTheLatestOfTwoLookupsCounts();
    void closingTheProjectStoresWhatIsQueued();
    void closingTheProjectStoresWhatIsHeldBack();
    void aKnownInspectionStaysKnownWhenTheProjectReturns();
    void aKnownInspectionStaysKnownWhileAnotherProjectIsOpen();
    void theEndOfTheProgramStoresWhatIsQueued_data();
    void theEndOfTheProgramStoresWhatIsQueued();

private:
    std::unique_ptr<MeasuredProject> m_project;
};

void tst_MeasurementLookup::whatTheDatabaseHoldsIsReadFirst()
{
    m_project->openedWith(2);
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

void tst_MeasurementLookup::pointsAreReadAsTheDatabaseGivesThem_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QVector<int>>("order");
    QTest::newRow("by their numbers, as they are indexed") << "" << QVector<int> {1, 2, 3, 4};
    QTest::newRow("as they were written, without an index")
        << "DROP INDEX SECMP_MEASUREMENT" << QVector<int> {3, 1, 2, 4};
}

void tst_MeasurementLookup::pointsAreReadAsTheDatabaseGivesThem()
{
    QFETCH(QString, before);
    QFETCH(QVector<int>, order);
    if (!before.isEmpty())
        MeasuredProject::execute(before);
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    for (int number : {3, 1, 2})
        MeasuredProject::putPoint("m", number, QString("%1, 0, 0").arg(number));

    handler().readSecMp(id);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, measured(4), 3, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->line(id), lineOf(order));
}

void tst_MeasurementLookup::readingAnUnmeasuredInspectionOpensItsMeasurement()
{
    const QString id = m_project->newInspection();

    handler().readSecMp(id);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->ofMeasurement(id, "MES_Type").toString(), QString("3DGS"));
}

void tst_MeasurementLookup::theAnswerComesWithTheEventLoop()
{
    const QString id = m_project->newInspection();

    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(0), 0, false);
    // Time for the database, but none for its answer.
    QThread::msleep(100);
    QCOMPARE(m_project->measurements(id), 0);

    QTRY_COMPARE(m_project->line(id), lineOf({0}));
    QCOMPARE(m_project->measurements(id), 1);
}

void tst_MeasurementLookup::commandsDuringTheLookupRunAfterIt()
{
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "0, 0, 0");
    const Kx::Test::LogCapture log;

    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(2), 1, false);
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

void tst_MeasurementLookup::heldBackCommandsLeaveTheOtherRowsWhenNotAskedToMoveThem()
{
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    for (int number : {1, 2, 3})
        MeasuredProject::putPoint("m", number, QString("%1, 0, 0").arg(number));

    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(9), 0, false);
    handler().removeRowsFromSECMP(id, 1, 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points("m"), QString("2:2 0 0, 3:3 0 0"));
}

void tst_MeasurementLookup::heldBackCommandsGoToTheirOwnInspections()
{
    const QString first = m_project->openedWith(1);
    const QString second = m_project->opened();

    handler().readSecMp(second);
    handler().addRowToSECMP(first, measured(8), 1, false);
    handler().addRowToSECMP("nowhere", measured(7), 0, false);
    handler().addRowToSECMP(second, measured(9), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points(m_project->key(first)), QString("1:0 0 0, 2:8 0 0"));
    QCOMPARE(m_project->points(m_project->key(second)), QString("1:9 0 0"));
}

void tst_MeasurementLookup::openingDuringTheLookupMakesNoSecondRow()
{
    const QString id = m_project->opened();
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

void tst_MeasurementLookup::aKnownInspectionOpenedAgainDoesNotBecomeTheCurrentOne()
{
    const QString known = m_project->openedWith(2);
    const QString fresh = m_project->newInspection();

    handler().createNewSecMes(fresh);
    handler().createNewSecMes(known);
    handler().waitUntilStored();
    handler().addRowToSECMP(fresh, measured(7), 0, false);
    handler().waitUntilStored();

    // The points that were read are those of the new one: none.
    QCOMPARE(m_project->line(fresh), lineOf({7}));
}

void tst_MeasurementLookup::twoMeasurementsMayBeOpenedAtOnce()
{
    m_project->openedWith(3);
    const QString first = m_project->newInspection();
    const QString second = m_project->newInspection();
    const Kx::Test::LogCapture log;

    handler().createNewSecMes(first);
    handler().createNewSecMes(second);
    handler().waitUntilStored();
    handler().addRowToSECMP(second, measured(5), 0, false);
    handler().addRowToSECMP(first, measured(6), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(first), 1);
    QCOMPARE(m_project->measurements(second), 1);
    QCOMPARE(m_project->line(second), lineOf({5}));
    QCOMPARE(m_project->points(m_project->key(second)), QString("1:5 0 0"));
    QCOMPARE(m_project->points(m_project->key(first)), QString("2:6 0 0"));
    QVERIFY(log.lines().isEmpty());
}

void tst_MeasurementLookup::severalMeasurementsAreAnsweredByAnother()
{
    m_project->opened();
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m1", id);
    MeasuredProject::putMeasurement("m2", id);

    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(0), 0, false);
    handler().addRowToSECMP(id, measured(1), 1, false);
    handler().waitUntilStored();
    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(2), 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 3);
    QCOMPARE(m_project->pointCount("m1") + m_project->pointCount("m2"), 0);
    const QString key =
        m_project->stored("(SELECT * FROM SECMES WHERE MES_Date <> '')", "MES_Inspection_FK", id, "MES_PK").toString();
    QCOMPARE(m_project->points(key), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
}

void tst_MeasurementLookup::aFailedLookupIsAnsweredByANewMeasurement()
{
    const QString open = m_project->openedWith(1);
    Torvik::AppState::instance().setActiveProject({});
    {
        const Kx::Test::LogCapture log;

        handler().readSecMp("of no project");
        handler().waitUntilStored();

        // It is looked up, made, and looked up again.
        QCOMPARE(log.lines().size(), 3);
        QVERIFY(log.lines()[0].message.contains("SELECT MES_PK"));
        QVERIFY(log.lines()[1].message.contains("INSERT INTO SECMES"));
        QVERIFY(log.lines()[2].message.contains("SELECT MES_PK"));
    }
    m_project->activate();
    const Kx::Test::LogCapture log;

    handler().addRowToSECMP(open, measured(1), 1, false);
    QVERIFY2(log.lines().isEmpty(), "it is held back");
    handler().waitUntilStored();

    QCOMPARE(m_project->line(open), lineOf({0, 1}));
}

void tst_MeasurementLookup::aColumnOfAnotherNameChangesNothing()
{
    const QString id = m_project->newInspection();
    MeasuredProject::execute("DROP TABLE SECMP");
    MeasuredProject::execute("DROP TABLE SECMES");
    MeasuredProject::execute("CREATE TABLE SECMES (mes_pk, MES_Inspection_FK, MES_Method)");
    MeasuredProject::execute(QString("INSERT INTO SECMES VALUES ('m', '%1', 'forward')").arg(id));
    Kx::Test::LogCapture log;

    handler().readSecMp(id);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, measured(0), 0, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QVERIFY2(log.lines().isEmpty(), qPrintable(log.lines().value(0).message));
}

void tst_MeasurementLookup::whatWasHeldBackRunsBehindAColumnOfAnotherName()
{
    const QString id = m_project->newInspection();
    MeasuredProject::execute("DROP TABLE SECMP");
    MeasuredProject::execute("DROP TABLE SECMES");
    MeasuredProject::execute("CREATE TABLE SECMES (mes_pk, MES_Inspection_FK, MES_Method)");
    MeasuredProject::execute(QString("INSERT INTO SECMES VALUES ('m', '%1', 'forward')").arg(id));
    const Kx::Test::LogCapture log;

    handler().readSecMp(id);
    handler().addRowToSECMP(id, measured(0), 0, false);
    QCOMPARE(log.count(1, category, initialising), 1);
    handler().waitUntilStored();
    handler().addRowToSECMP(id, measured(0), 0, false);

    QCOMPARE(log.count(3, category, heldBack), 1);
    QCOMPARE(log.lines().size(), 2);
}

void tst_MeasurementLookup::aLookupBehindOtherStatementsHearsItsOwnAnswer()
{
    const QString busy = m_project->opened();
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasuredProject::putPoint("m", 1, "5, 0, 0");

    for (int i = 0; i < 50; ++i)
        handler().addRowToSECMP(busy, measured(i), i, false);
    handler().switchToInspection(id);
    handler().addRowToSECMP(id, measured(6), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->pointCount(m_project->key(busy)), 50);
    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({5, 6}));
}

void tst_MeasurementLookup::onlyTheLatestOfTwoLookupsCounts()
{
    const QString first = m_project->newInspection();
    const QString second = m_project->newInspection();
    MeasuredProject::putMeasurement("m1", first);
    MeasuredProject::putMeasurement("m2", second);
    MeasuredProject::putPoint("m1", 1, "1, 0, 0");
    MeasuredProject::putPoint("m2", 1, "2, 0, 0");

    handler().readSecMp(first);
    handler().switchToInspection(second);
    handler().addRowToSECMP(second, measured(3), 1, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->points("m1"), QString("1:1 0 0"));
    QCOMPARE(m_project->points("m2"), QString("1:2 0 0, 2:3 0 0"));
    QCOMPARE(m_project->line(second), lineOf({2, 3}));
}

void tst_MeasurementLookup::closingTheProjectStoresWhatIsQueued()
{
    const QString id = m_project->opened();
    for (int i = 0; i < 300; ++i)
        handler().addRowToSECMP(id, measured(i), i, false);

    m_project->close();

    QCOMPARE(m_project->pointCount(m_project->key(id)), 300);
    QCOMPARE(m_project->line(id).count(" 0 0 160"), 300);
}

void tst_MeasurementLookup::closingTheProjectStoresWhatIsHeldBack()
{
    const QString id = m_project->newInspection();
    handler().readSecMp(id);
    for (int i = 0; i < 3; ++i)
        handler().addRowToSECMP(id, measured(i), i, false);

    m_project->close();

    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementLookup::aKnownInspectionStaysKnownWhenTheProjectReturns()
{
    const QString id = m_project->openedWith(2);
    {
        const Kx::Test::LogCapture log;
        m_project->reopen();
        m_project->activate();

        handler().addRowToSECMP(id, measured(2), 2, false);
        handler().waitUntilStored();
        QVERIFY(log.lines().isEmpty());
    }

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), lineOf({0, 1, 2}));
}

void tst_MeasurementLookup::aKnownInspectionStaysKnownWhileAnotherProjectIsOpen()
{
    const QString id = m_project->openedWith(2);
    m_project->close();
    {
        MeasuredProject another;
        another.openedWith(4);
    }
    m_project->reopen();
    m_project->activate();

    handler().createNewSecMes(id);
    handler().addRowToSECMP(id, measured(2), 2, false);
    handler().waitUntilStored();

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:0 0 0, 2:1 0 0, 3:2 0 0"));
}

void tst_MeasurementLookup::theEndOfTheProgramStoresWhatIsQueued_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("main returns") << "return";
    QTest::newRow("main returns while commands are held back") << "return-held-back";
    QTest::newRow("the event loop ends while commands are held back, and then the process at once") << "quit";
}

void tst_MeasurementLookup::theEndOfTheProgramStoresWhatIsQueued()
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

QTEST_GUILESS_MAIN(tst_MeasurementLookup)
#include "tst_MeasurementLookup.moc"
