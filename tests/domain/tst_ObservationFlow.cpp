#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/EntitiesManager.h"
#include "domain/PipeEntityBuilder.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "geo/GdalGeoProjector.h"
#include "measurement/SystemControlProxy.h"
#include "network/Node.h"
#include "network/ObservationBend.h"
#include "network/ObservationConnection.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::LogCapture;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::Database::CDatabaseLibrary;
using Torvik::Database::ProjectStore;

namespace {

void write(const CDomainObjectPointer& object, const QVariantMap& values)
{
    for (auto value = values.begin(); value != values.end(); ++value)
        object->updateValue(value.key(), *value);
    CDatabaseLibrary::dbAccessManager()->updateObject(object, 1);
}

Observation* findingOf(const CDomainObjectPointer& record)
{
    return SceneEntities::instance().getObservations().value(record->id());
}

Section* sectionOf(const CDomainObjectPointer& inspection)
{
    return SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id());
}

QVector3D endOf(const Section* section)
{
    return section->pipeTransMatrixAtDistance(float(section->length())).column(3).toVector3D();
}

bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < 0.03F;
}

QVariantMap bend(int clock, double angle)
{
    return {{"OBS_BendClkH", clock}, {"OBS_JointAngle", angle}};
}

} // namespace

/** Findings of a project in the scene: read with it, made, changed and deleted while it is open. */
class tst_ObservationFlow : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = new SceneRoot;
        m_root->qmlOnCompleted();
        m_project = std::make_unique<TestProject>(QStringLiteral("LOCAL_CS[\"site\"]"));
        const auto a = m_project->addNode("A", "POINT ZM(0 0 0 16)");
        const auto b = m_project->addNode("B");
        m_pipe = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 300}, {"OBJ_FromNodeDepth", 0.0001}});
        m_inspection = m_project->addInspection(m_pipe, "LINESTRING ZM(0 20 0 260,0 0 0 0)");
        m_lateral = m_project->addLateral("L", m_pipe);
        m_lateralInspection = m_project->addInspection(m_lateral, {}, 2);
    }

    void cleanup()
    {
        AppState::instance().setActiveInspection({});
        m_project.reset();
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_root;
        GdalGeoProjector::instance()->deinit();
        SystemControlProxy::instance().setSectionDistanceCounter(0.0F);
    }

    void aProjectsFindingsAreReadWithIt()
    {
        const auto plain = m_project->addObservation(m_inspection, "BAB", 5.0);
        const auto turned = m_project->addObservation(m_inspection, "BCC", 8.0, bend(3, 90.0));
        const auto joint = m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        m_project->activate();
        QCOMPARE(SceneEntities::instance().getObservations().size(), 3);
        QVERIFY(near(findingOf(plain)->position(), {0, 0, 5}));
        QVERIFY(qobject_cast<ObservationBend*>(findingOf(turned)));
        // The stored course has the bend already.
        QVERIFY(near(endOf(sectionOf(m_inspection)), {0, 0, 20}));
        // The lateral comes last and finds its joint.
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(m_lateral->id()), findingOf(joint));
        QVERIFY(near(sectionOf(m_lateralInspection)->position(), {0, 0, 12}));
    }

    void readingFindingsTwiceAddsNothing()
    {
        const auto plain = m_project->addObservation(m_inspection, "BAB", 5.0);
        m_project->activate();
        Observation* const first = findingOf(plain);
        PipeEntityBuilder builder(nullptr);
        builder.loadObservations(m_inspection);
        builder.loadObservations({});
        QCOMPARE(findingOf(plain), first);
    }

    void aNewBendTurnsThePipe()
    {
        m_project->activate();
        const auto record = m_project->addObservation(m_inspection, "BCC", 8.0, bend(3, 90.0));
        QTRY_VERIFY(findingOf(record));
        QVERIFY(near(endOf(sectionOf(m_inspection)), {-12, 0, 8}));
        QTRY_VERIFY_WITH_TIMEOUT(
            m_project->stored("SECINSP", "INS_PK", m_inspection->id(), "INS_Shape_WKT").toString().contains("12 8"),
            3000);
    }

    void anInspectionThatComesWithItsFindingsHasEachOnce()
    {
        m_project->activate();
        const auto inspection = m_project->addInspection(m_pipe, "LINESTRING ZM(0 20 0 260,0 0 0 0)");
        const auto plain = m_project->addObservation(inspection, "BAB", 5.0);
        const auto turned = m_project->addObservation(inspection, "BCC", 8.0, bend(3, 90.0));
        QTRY_VERIFY(findingOf(plain) && findingOf(turned));
        QTest::qWait(50);
        QCOMPARE(m_root->findChildren<Observation*>().size(), 2);
        // As with a project that is opened: the stored course has the bend already.
        QVERIFY(near(endOf(sectionOf(inspection)), {0, 0, 20}));
    }

    void aChangedBendTurnsItAnew()
    {
        m_project->activate();
        const auto record = m_project->addObservation(m_inspection, "BCC", 8.0, bend(3, 90.0));
        QTRY_VERIFY(findingOf(record));
        write(record, bend(9, 90.0));
        QTRY_VERIFY(near(endOf(sectionOf(m_inspection)), {12, 0, 8}));
        write(record, {{"OBS_Distance", 5.0}});
        QTRY_VERIFY(near(endOf(sectionOf(m_inspection)), {15, 0, 5}));
    }

    void aDeletedBendStraightensIt()
    {
        m_project->activate();
        const auto record = m_project->addObservation(m_inspection, "BCC", 8.0, bend(3, 90.0));
        QTRY_VERIFY(findingOf(record));
        const QString id = record->id();
        QVERIFY(ProjectStore::instance().deleteObject(record));
        QTRY_VERIFY(!SceneEntities::instance().getObservations().contains(id));
        QVERIFY(near(endOf(sectionOf(m_inspection)), {0, 0, 20}));
    }

    void anotherCodeMakesAnotherObject()
    {
        m_project->activate();
        const auto record = m_project->addObservation(m_inspection, "BCC", 8.0, bend(3, 90.0));
        QTRY_VERIFY(findingOf(record));
        QPointer<Observation> before = findingOf(record);
        QSignalSpy geometry(sectionOf(m_inspection), &Section::sectionGeometryChanged);
        write(record, {{"OBS_Code", "BAB"}});
        QTRY_VERIFY(findingOf(record) && findingOf(record) != before.data());
        QVERIFY(near(endOf(sectionOf(m_inspection)), {0, 0, 20}));
        // Taken out once.
        QCOMPARE(geometry.count(), 1);
        QTRY_VERIFY(!before);
        QVERIFY(findingOf(record));
    }

    void aDeletedConnectionLetsItsLateralGo()
    {
        m_project->activate();
        const auto record = m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        QTRY_VERIFY(near(sectionOf(m_lateralInspection)->position(), {0, 0, 12}));
        QVERIFY(ProjectStore::instance().deleteObject(record));
        QTRY_VERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
    }

    void aFindingWithoutASectionChangesNothing()
    {
        const auto placeless = m_project->addSection("no inspection", nullptr, nullptr);
        m_project->activate();
        const auto inspection = m_project->addInspection(placeless, {}, 0);
        QTRY_VERIFY(sectionOf(inspection));
        delete sectionOf(inspection);
        m_project->addObservation(inspection, "BCC", 3.0, bend(3, 90.0));
        QCoreApplication::processEvents();
        QVERIFY(SceneEntities::instance().getObservations().isEmpty());
        m_root->entitiesManager().onObservationInserted({}, false);
    }

    void changesOfWhatIsNotThereAreLogged()
    {
        m_project->activate();
        const auto record = m_project->addObservation(m_inspection, "BAB", 8.0);
        QTRY_VERIFY(findingOf(record));
        LogCapture log;
        auto& observations = SceneEntities::instance().getObservations();
        Observation* const kept = observations.take(record->id());
        m_root->entitiesManager().onObservationModified(record);
        QCOMPARE(log.count(1, "View3d", "onObservationModified object not found"), 1);
        observations.insert(record->id(), nullptr);
        m_root->entitiesManager().onObservationModified(record);
        QCOMPARE(log.count(1, "View3d", "onObservationModified object is not Observation"), 1);
        observations.insert(record->id(), kept);
    }

    void aRemovedInspectionTakesItsFindingsAlong()
    {
        m_project->addObservation(m_inspection, "BAB", 5.0);
        m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        m_project->activate();
        QVERIFY(ProjectStore::instance().deleteObject(m_inspection));
        QTRY_VERIFY(SceneEntities::instance().getObservations().isEmpty());
        QTRY_VERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
    }

    void aClosedProjectLeavesNoFindings()
    {
        m_project->addObservation(m_inspection, "BAB", 5.0);
        const auto joint = m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        m_project->activate();
        QPointer<Observation> found = findingOf(joint);
        m_project->close();
        QVERIFY(SceneEntities::instance().getObservations().isEmpty());
        QVERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
        QTRY_VERIFY(!found);
    }

    void aLateralAtTheCrawlerIsAnnounced()
    {
        m_project->activate();
        AppState::instance().setActiveInspection(m_inspection);
        m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        QTRY_VERIFY(!SceneEntities::instance().getLateralConnections().isEmpty());
        QSignalSpy near(m_root, &SceneRoot::lateralInProximity);
        SystemControlProxy::instance().setSectionDistanceCounter(12.2F);
        QCOMPARE(near.count(), 1);
        QCOMPARE(near.at(0).at(0).toString(), m_lateralInspection->id());
        QSignalSpy far(GlobalNav::instance(), &GlobalNav::lateralNotInProximity);
        SystemControlProxy::instance().setSectionDistanceCounter(15.0F);
        QVERIFY(far.count() > 0);
    }

    void anInspectionThatBeginsAtALateralAnnouncesIt()
    {
        m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        m_project->activate();
        SystemControlProxy::instance().setSectionDistanceCounter(12.2F);
        QStringList heard;
        const QObject here;
        connect(m_root, &SceneRoot::lateralInProximity, &here, [&](const QString& id) { heard << id; });
        connect(sectionOf(m_inspection), &Section::lateralNotInProximity, &here, [&] { heard << "none"; });
        AppState::instance().setActiveInspection(m_inspection);
        // What held in the inspection before is taken back first.
        QCOMPARE(heard, (QStringList {"none", m_lateralInspection->id()}));
    }

    void aLateralThatAppearsAtTheCrawlerIsAnnouncedAtOnce()
    {
        const auto late = m_project->addLateral("late", m_pipe);
        m_project->addObservation(m_inspection, "BCA", 12.0, {{"OBS_LateralSection_REF", late->id()}});
        const auto far = m_project->addLateral("far", m_pipe);
        m_project->addObservation(m_inspection, "BCA", 16.0, {{"OBS_LateralSection_REF", far->id()}});
        m_project->activate();
        AppState::instance().setActiveInspection(m_inspection);
        SystemControlProxy::instance().setSectionDistanceCounter(12.2F);
        QSignalSpy near(m_root, &SceneRoot::lateralInProximity);
        const auto distant = m_project->addInspection(far, {}, 2);
        QTRY_VERIFY(sectionOf(distant));
        QCOMPARE(near.count(), 0);
        const auto inspection = m_project->addInspection(late, {}, 2);
        QTRY_VERIFY(sectionOf(inspection));
        QCOMPARE(near.count(), 1);
        QCOMPARE(near.at(0).at(0).toString(), inspection->id());
    }

    void aLateralThatComesLaterBeginsAtItsJoint_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QVector3D>("below");
        QTest::newRow("a connection") << "CON" << QVector3D();
        // The node comes to the joint, and the lateral to the node's outlet.
        QTest::newRow("a manhole") << "MAN" << QVector3D(0.0F, -1.5F, 0.0F);
    }

    void aLateralThatComesLaterBeginsAtItsJoint()
    {
        QFETCH(QString, type);
        QFETCH(QVector3D, below);
        const auto node = m_project->addNode("C", {}, {{"OBJ_Type", type}});
        const auto late =
            m_project->addLateral("late", m_pipe, {{"OBJ_ToNode_REF", node->id()}, {"OBJ_ToNodeDepth", 1.5}});
        const auto record = m_project->addObservation(
            m_inspection, "BCA", 12.0,
            {{"OBS_LateralSection_REF", late->id()}, {"OBS_ClockPos1", 3}, {"OBS_JointAngle", 90.0}});
        m_project->activate();
        const auto inspection = m_project->addInspection(late, {}, 2);
        QTRY_VERIFY(sectionOf(inspection));
        Section* const lateral = sectionOf(inspection);
        QCOMPARE(lateral->startNode()->guid(), node->id());
        QVERIFY(near(lateral->position(), QVector3D(0, 0, 12) + below));
        QVERIFY(near(-lateral->direction(), {-1, 0, 0}));
        write(record, {{"OBS_Distance", 14.0}});
        QTRY_VERIFY(near(lateral->position(), QVector3D(0, 0, 14) + below));
        QVERIFY(near(lateral->startNode()->position(), {0, 0, 14}));
    }

    void aSectionThatIsReplacedHasItsFindingsAnew()
    {
        const auto plain = m_project->addObservation(m_inspection, "BAB", 5.0);
        const auto joint = m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        m_project->activate();
        PipeEntityBuilder builder(nullptr);
        QPointer<Section> old = sectionOf(m_inspection);
        Section* const fresh = builder.createOrReplace(old, nullptr, m_inspection);
        QVERIFY(fresh && fresh != old);
        QTRY_VERIFY(!old);
        QVERIFY(findingOf(plain) && findingOf(joint));
        QCOMPARE(findingOf(plain)->section(), fresh);
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(m_lateral->id()), findingOf(joint));
        QCOMPARE(m_root->findChildren<Observation*>().size(), 2);
        delete fresh; // its signals reach the builder
    }

    void aFindingThatComesWithItsInspectionIsMadeOnce()
    {
        m_project->activate();
        const auto inspection = m_project->addInspection(m_pipe, "LINESTRING ZM(0 20 0 260,0 0 0 0)");
        const auto record = m_project->addObservation(inspection, "BCA", 12.0, leadsToLateral());
        QTRY_VERIFY(findingOf(record));
        QCoreApplication::processEvents();
        QCOMPARE(m_root->findChildren<Observation*>().size(), 1);
        QVERIFY(ProjectStore::instance().deleteObject(record));
        QTRY_VERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
        QTRY_VERIFY(m_root->findChildren<Observation*>().isEmpty());
    }

    void theCounterReachesTheActiveSection()
    {
        m_project->activate();
        AppState::instance().setActiveInspection(m_inspection);
        QSignalSpy told(m_root, &SceneRoot::distanceValueChanged);
        SystemControlProxy::instance().setSectionDistanceCounter(25.0F);
        SystemControlProxy::instance().setSectionDistanceCounter(25.0F);
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toDouble(), 25.0);
        QVERIFY(std::abs(sectionOf(m_inspection)->length() - 25.0) < 0.01);
    }

    void refreshingALateralThatIsNotThereIsLogged()
    {
        LogCapture log;
        PipeEntityBuilder builder(nullptr);
        builder.onLateralRefreshRequest("unknown");
        QCOMPARE(log.count(1, "PipeEntityBuilder", "onLateralRefreshRequest object not found"), 1);
    }

    void aRefreshRequestTakesTheLateralToItsJoint()
    {
        m_project->addObservation(m_inspection, "BCA", 12.0, leadsToLateral());
        m_project->activate();
        Section* const lateral = sectionOf(m_lateralInspection);
        lateral->setPosition({50, 0, 50}, 0);
        emit sectionOf(m_inspection)->lateralRefreshRequest(m_lateral->id());
        QVERIFY(near(lateral->position(), {0, 0, 12}));
    }

private:
    QVariantMap leadsToLateral() const
    {
        return {{"OBS_LateralSection_REF", m_lateral->id()}, {"OBS_ClockPos1", 3}, {"OBS_JointAngle", 90.0}};
    }

    SceneRoot* m_root = nullptr;
    std::unique_ptr<TestProject> m_project;
    QSharedPointer<Torvik::Database::CSectionObject> m_pipe;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_inspection;
    QSharedPointer<Torvik::Database::CGenericPipeObject> m_lateral;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_lateralInspection;
};

QTEST_MAIN(tst_ObservationFlow)
#include "tst_ObservationFlow.moc"
