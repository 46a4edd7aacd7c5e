#include "common/TestProject.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "host/app/ObservationPage.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::Viewer;
using Kx::Test::TestProject;

/** The page's list and its writing, on a real project. */
class tst_ObservationPage : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutAnInspectionItIsEmpty();
    void observationsStandAlongThePipe();
    void aLineTellsWhatIsKnown();
    void anAddedObservationIsStoredAndListed();
    void aWrongOneLeavesNothing();
    void aChangeIsStoredAndToldWithAnOriginOfItsOwn();
    void aChangeWritesOnlyWhatDiffers();
    void aWrongChangeLeavesTheRecordAsItWas();
    void aChangeThatCannotBeStoredIsTakenBack();
    void aDeletedObservationIsGone();
    void aLateralIsTakenOnce();
    void ofTheLateralsThePipeItselfIsNone();
    void whatOthersChangeShows();
    void withTheInspectionThePageEmpties();

private:
    QString role(int row, ObservationPage::Role role) const
    {
        return m_page->data(m_page->index(row), role).toString();
    }
    QVariant stored(const QString& id, const QString& column) const
    {
        return m_project->stored("SECOBS", "OBS_PK", id, column);
    }

    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<ObservationPage> m_page;
    QSharedPointer<Torvik::Database::CSectionObject> m_pipe;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_inspection;
    CDomainObjectPointer m_lateral;
};

namespace {

QVariantMap crack(const QString& distance = "12.5")
{
    return {{"code", "BABBA"}, {"distance", distance}, {"clock", "3"},
            {"angle", ""},     {"quantity", "2"},      {"lateral", ""}};
}

QVariantMap joint(const QString& distance, const QString& lateral)
{
    return {{"code", "BCAAA"}, {"distance", distance}, {"clock", "3"},
            {"angle", "45"},   {"quantity", ""},       {"lateral", lateral}};
}

} // namespace

void tst_ObservationPage::init()
{
    m_project = std::make_unique<TestProject>();
    m_pipe = m_project->addSection("S1", {}, {});
    m_inspection = m_project->addInspection(m_pipe, {}, 0);
    m_lateral = m_project->addLateral("L1", m_pipe);
    m_project->activate();
    m_page = std::make_unique<ObservationPage>();
    m_page->setInspection(m_inspection);
    QCoreApplication::processEvents();
}

void tst_ObservationPage::cleanup()
{
    m_page.reset();
    m_inspection.reset();
    m_pipe.reset();
    m_lateral.reset();
    m_project.reset();
}

void tst_ObservationPage::withoutAnInspectionItIsEmpty()
{
    ObservationPage page;

    QVERIFY(!page.hasInspection());
    QCOMPARE(page.rowCount(), 0);
    QCOMPARE(page.laterals().size(), 1);
    QVERIFY(page.save({}, crack()).contains("form"));
    QVERIFY(!page.remove("nobody").isEmpty());
    page.setInspection(m_pipe);
    QVERIFY(!page.hasInspection());
}

void tst_ObservationPage::observationsStandAlongThePipe()
{
    m_project->addObservation(m_inspection, "BCE", 40);
    m_project->addObservation(m_inspection, "BCD", 0);
    m_project->addObservation(m_inspection, "BAB", 7.25);

    QTRY_COMPARE(m_page->count(), 3);

    QCOMPARE(m_page->pipeName(), QString("S1"));
    QCOMPARE(m_page->distanceUnit(), QString("m"));
    QCOMPARE(role(0, ObservationPage::CodeRole), QString("BCD"));
    QCOMPARE(role(1, ObservationPage::PlaceRole), QLocale().toString(7.25, 'f', 2) + " m");
    QCOMPARE(role(2, ObservationPage::DetailRole), QString("end of inspection"));
}

void tst_ObservationPage::aLineTellsWhatIsKnown()
{
    QCOMPARE(m_page->save({}, joint("4", m_lateral->id())), QVariantMap());

    QTRY_COMPARE(m_page->count(), 1);
    QCOMPARE(role(0, ObservationPage::DetailRole), QString("connection, 3 o'clock, 45\u00b0, lateral L1"));
}

void tst_ObservationPage::anAddedObservationIsStoredAndListed()
{
    QSignalSpy number(m_page.get(), &ObservationPage::numberChanged);

    QCOMPARE(m_page->save({}, crack()), QVariantMap());

    QTRY_COMPARE(m_page->count(), 1);
    QCOMPARE(number.count(), 1);
    const QString id = role(0, ObservationPage::ObjectIdRole);
    QCOMPARE(stored(id, "OBS_Code").toString(), QString("BABBA"));
    QCOMPARE(stored(id, "OBS_Distance").toDouble(), 12.5);
    QCOMPARE(stored(id, "OBS_ClockPos1").toInt(), 3);
    QVERIFY(stored(id, "OBS_JointAngle").isNull());
    QCOMPARE(m_page->textsOf(id), crack());
}

void tst_ObservationPage::aWrongOneLeavesNothing()
{
    const QVariantMap errors = m_page->save({}, crack("-1"));

    QCOMPARE(errors.keys(), QStringList("distance"));
    QCoreApplication::processEvents();
    QCOMPARE(m_inspection->observationCount(), 0);
    QCOMPARE(m_page->count(), 0);
}

void tst_ObservationPage::aChangeIsStoredAndToldWithAnOriginOfItsOwn()
{
    const auto observation = m_project->addObservation(m_inspection, "BABBA", 12.5, {{"OBS_ClockPos1", 3}});
    QTRY_COMPARE(m_page->count(), 1);
    Torvik::Database::CAsyncNotificationMapper mapper(Torvik::Database::CDatabaseLibrary::notificationManager());
    Torvik::Database::CDomainObjectProxy proxy(mapper, observation, nullptr);
    QSignalSpy changes(&proxy, &Torvik::Database::CDomainObjectProxy::objectValueChanged);

    QCOMPARE(m_page->save(observation->id(), crack("8")), QVariantMap());

    QTRY_COMPARE(changes.count(), 2);
    for (const auto& change : changes)
        QVERIFY(change.at(2).toInt() != 5000);
    QCOMPARE(stored(observation->id(), "OBS_Distance").toDouble(), 8.0);
    QCOMPARE(stored(observation->id(), "OBS_Q1_Value").toDouble(), 2.0);
    QTRY_COMPARE(role(0, ObservationPage::PlaceRole), QLocale().toString(8.0, 'f', 2) + " m");
}

void tst_ObservationPage::aChangeWritesOnlyWhatDiffers()
{
    const auto observation = m_project->addObservation(m_inspection, "BABBA", 12.5);
    Torvik::Database::CAsyncNotificationMapper mapper(Torvik::Database::CDatabaseLibrary::notificationManager());
    Torvik::Database::CDomainObjectProxy proxy(mapper, observation, nullptr);
    QSignalSpy changes(&proxy, &Torvik::Database::CDomainObjectProxy::objectValueChanged);

    QCOMPARE(m_page->save(observation->id(), m_page->textsOf(observation->id())), QVariantMap());

    QCoreApplication::processEvents();
    QCOMPARE(changes.count(), 0);
}

void tst_ObservationPage::aWrongChangeLeavesTheRecordAsItWas()
{
    const auto observation = m_project->addObservation(m_inspection, "BABBA", 12.5, {{"OBS_ClockPos1", 3}});
    QVariantMap texts = crack("8");
    texts["clock"] = "13";

    QCOMPARE(m_page->save(observation->id(), texts).keys(), QStringList("clock"));

    QCOMPARE(observation->readValue("OBS_Distance").toDouble(), 12.5);
    QCOMPARE(stored(observation->id(), "OBS_Distance").toDouble(), 12.5);
}

void tst_ObservationPage::aChangeThatCannotBeStoredIsTakenBack()
{
    const auto observation = m_project->addObservation(m_inspection, "BABBA", 12.5, {{"OBS_ClockPos1", 3}});
    Torvik::Database::StoreStatus status;
    const QString file = Torvik::Database::ProjectStore::databaseFile(m_project->path());
    const auto other = Torvik::Database::SqlConnection::open(file, Torvik::Database::SqlConnection::ReadWrite, status);
    QVERIFY(other->execute("CREATE TRIGGER refuse BEFORE UPDATE ON SECOBS BEGIN SELECT RAISE(ABORT, 'no room'); END"));

    const QVariantMap errors = m_page->save(observation->id(), crack("8"));

    QCOMPARE(errors.keys(), QStringList("form"));
    QVERIFY(errors.value("form").toString().contains("no room"));
    QCOMPARE(observation->readValue("OBS_Distance").toDouble(), 12.5);
    QCOMPARE(observation->readValue("OBS_ClockPos1").toInt(), 3);
    QVERIFY(observation->readValue("OBS_Q1_Value").toString().isEmpty());
}

void tst_ObservationPage::aDeletedObservationIsGone()
{
    const auto observation = m_project->addObservation(m_inspection, "BABBA", 12.5);
    QTRY_COMPARE(m_page->count(), 1);

    QCOMPARE(m_page->remove(observation->id()), QString());

    QTRY_COMPARE(m_page->count(), 0);
    QVERIFY(!stored(observation->id(), "OBS_Code").isValid());
    QVERIFY(!m_page->remove(observation->id()).isEmpty());
    QVERIFY(m_page->save(observation->id(), crack()).contains("form"));
}

void tst_ObservationPage::aLateralIsTakenOnce()
{
    QCOMPARE(m_page->save({}, joint("4", m_lateral->id())), QVariantMap());
    const QString first = m_inspection->observation(0)->id();

    const QVariantMap errors = m_page->save({}, joint("6", m_lateral->id()));

    QCOMPARE(errors.keys(), QStringList("lateral"));
    QVERIFY2(errors.value("lateral").toString().contains("BCAAA at"), qPrintable(errors.value("lateral").toString()));
    QCOMPARE(m_inspection->observationCount(), 1);
    QCOMPARE(m_page->save(first, joint("5", m_lateral->id())), QVariantMap());
}

void tst_ObservationPage::ofTheLateralsThePipeItselfIsNone()
{
    const auto other = m_project->addLateral("A9", m_pipe);
    const auto own = m_lateral.staticCast<Torvik::Database::CGenericPipeObject>();

    m_page->setInspection(m_project->addInspection(own, {}, 0));

    const QVariantList laterals = m_page->laterals();
    QCOMPARE(laterals.size(), 2);
    QCOMPARE(laterals.at(0).toMap().value("id").toString(), QString());
    QCOMPARE(laterals.at(1).toMap().value("id").toString(), other->id());
    QCOMPARE(m_page->save({}, joint("1", own->id())).keys(), QStringList("lateral"));
}

void tst_ObservationPage::whatOthersChangeShows()
{
    const auto observation = m_project->addObservation(m_inspection, "BABBA", 12.5);
    QTRY_COMPARE(m_page->count(), 1);

    observation->updateValue("OBS_Code", "BAC");
    QVERIFY(Torvik::Database::ProjectStore::instance().writeObject(observation, 1));

    QTRY_COMPARE(role(0, ObservationPage::CodeRole), QString("BAC"));
}

void tst_ObservationPage::withTheInspectionThePageEmpties()
{
    m_project->addObservation(m_inspection, "BABBA", 12.5);
    QTRY_COMPARE(m_page->count(), 1);
    QSignalSpy changed(m_page.get(), &ObservationPage::inspectionChanged);

    QVERIFY(Torvik::Database::ProjectStore::instance().deleteObject(m_inspection));

    QTRY_COMPARE(m_page->count(), 0);
    QTRY_COMPARE(changed.count(), 1);
    QVERIFY(!m_page->hasInspection());
}

QTEST_GUILESS_MAIN(tst_ObservationPage)
#include "tst_ObservationPage.moc"
