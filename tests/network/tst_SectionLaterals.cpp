#include "ObservationScene.h"

#include "common/LogCapture.h"
#include "network/Connection.h"
#include "network/ConnectionPoint.h"
#include "network/EntitySegment.h"
#include "scene/GlobalNav.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

constexpr int upstream = 2;
constexpr int downstream = 1;
const QString category = QStringLiteral("View3d::Section");
const QString noRefresh =
    QStringLiteral("RefreshLateral: lateral connection observation does not exist among scene entities.");

QVector3D directionOf(const Section* section)
{
    return -section->direction();
}

} // namespace

/** A lateral begins at a connection of another section, and goes with it. */
class tst_SectionLaterals : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_scene = std::make_unique<ObservationScene>();
        m_pipe = m_scene->pipe({{0, 0, 0}, {0, 0, 20}});
    }
    void cleanup()
    {
        GlobalNav::instance()->setRealTimeEnabled(false);
        m_scene.reset();
    }

    void aConnectionCarriesItsLateral()
    {
        Section* const lateral = lateralOf(upstream);
        QStringList added;
        QObject::connect(m_pipe, &Section::lateralConnectionAdded, [&](const QString& ref) { added << ref; });
        auto* const joint = connect(lateral, 10.0);
        QCOMPARE(added, QStringList {id(lateral)});
        QCOMPARE(m_pipe->laterals().value(id(lateral)), 10.0F);
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(id(lateral)), joint);
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 10}));
        QCOMPARE(joint->getLateralRef(), id(lateral));
    }

    void theLateralFollowsItsJoint()
    {
        Section* const lateral = lateralOf(upstream);
        connect(lateral, 10.0);
        m_pipe->rotateToPointDirection({10, 0, 0});
        QVERIFY(ObservationScene::near(lateral->position(), {10, 0, 0}));
    }

    void aNewClockGivesTheLateralTheJointsDirection()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0, 3);
        m_scene->recordOf(joint)->updateValue("OBS_ClockPos1", 9);
        QCOMPARE(joint->modify(), joint);
        QVERIFY(ObservationScene::near(directionOf(lateral), {1, 0, 0}));
        QVERIFY(ObservationScene::near(joint->getConnection()->orientation().rotatedVector({0, 0, 1}), {1, 0, 0}));
    }

    void theUsersTurnStaysWhenTheJointMovesOnly()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0, 3);
        m_scene->recordOf(joint)->updateValue("OBS_ClockPos1", 9);
        joint->modify();
        lateral->rotateToTargetAngleY(60.0F);
        const QVector3D turned = directionOf(lateral);
        m_scene->recordOf(joint)->updateValue("OBS_Distance", 12.0);
        QCOMPARE(joint->modify(), joint);
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 12}));
        QVERIFY(ObservationScene::near(directionOf(lateral), turned));
        // The first distance stays the one at which the crawler meets it.
        QCOMPARE(m_pipe->laterals().value(id(lateral)), 10.0F);
    }

    void aDownstreamLateralKeepsItsStart()
    {
        Node* const house = m_scene->node("H", "POINT ZM(7 30 0 16)");
        Section* const lateral = m_scene->registered(m_scene->lateral(house, nullptr, downstream));
        const QVector3D start = lateral->position();
        connect(lateral, 10.0);
        QVERIFY(ObservationScene::near(lateral->position(), start));
    }

    void theDownstreamNodeComesToTheJoint()
    {
        Section* const lateral = lateralOf(upstream);
        connect(lateral, 10.0);
        QVERIFY(ObservationScene::near(lateral->downstreamNode()->position(), {0, 0, 10}));
        QCOMPARE(lateral->downstreamNode()->transformFlags(), int(TransformFlags::Observations));
    }

    void aDownstreamLateralsEndNodeComesToTheJoint()
    {
        Node* const end = m_scene->node("E");
        Section* const lateral = m_scene->registered(m_scene->lateral(nullptr, end, downstream));
        const QVector3D start = lateral->startNode()->position();
        auto* const joint = connect(lateral, 10.0);
        QVERIFY(ObservationScene::near(end->position(), {0, 0, 10}));
        QCOMPARE(lateral->startNode()->position(), start);
        // In the joint's direction all of it comes, and the node stays.
        m_scene->recordOf(joint)->updateValue("OBS_ClockPos1", 9);
        m_scene->recordOf(joint)->updateValue("OBS_Distance", 12.0);
        joint->modify();
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 12}));
        QVERIFY(ObservationScene::near(directionOf(lateral), {1, 0, 0}));
        QVERIFY(ObservationScene::near(end->position(), {0, 0, 10}));
    }

    void aJointThatChangesIsDrawnAnew()
    {
        auto* const joint = connect(lateralOf(upstream), 10.0, 3);
        const auto record = m_scene->recordOf(joint);
        record->updateValue("OBS_ClockPos1", 9);
        record->updateValue("OBS_Q1_Value", 150.0);
        QCOMPARE(joint->modify(), joint);
        const auto way = [](const JointMark& mark) { return mark.orientation().rotatedVector({0, 0, 1}); };
        QVERIFY(ObservationScene::near(way(*joint->getConnection()), {1, 0, 0}));
        QVERIFY(ObservationScene::near(way(*joint->getConnectionPoint()), {1, 0, 0}));
        QCOMPARE(joint->getConnection()->radius(), 0.065F);
        QCOMPARE(joint->getConnectionPoint()->radius(), 0.0754F);
    }

    void theJointsDirectionReplacesTheUsersTurn()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0, 3);
        lateral->rotateToTargetAngleY(60.0F);
        const auto record = m_scene->recordOf(joint);
        record->updateValue("OBS_ClockPos1", 9);
        joint->modify();
        QVERIFY(ObservationScene::near(directionOf(lateral), {1, 0, 0}));
        // For good: the next move doesn't bring the old turn back.
        record->updateValue("OBS_Distance", 12.0);
        joint->modify();
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 12}));
        QVERIFY(ObservationScene::near(directionOf(lateral), {1, 0, 0}));
    }

    void theLateralsNewCourseIsStored()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0);
        const auto record = m_scene->recordOf(joint);
        // Has a place from now on, and the end of an edit alone stores nothing.
        GlobalNav::instance()->setRealTimeEnabled(true);
        record->updateValue("OBS_Distance", 12.0);
        joint->modify();
        QTRY_VERIFY_WITH_TIMEOUT(m_scene->storedShapeOf(lateral).toString().contains("0 12 0"), 3000);
        record->updateValue("OBS_Distance", 14.0);
        record->updateValue("OBS_ClockPos1", 9);
        joint->modify();
        QTRY_VERIFY_WITH_TIMEOUT(m_scene->storedShapeOf(lateral).toString().contains("0 14 0"), 3000);
    }

    void theStubMakesRoomForAPipe()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0);
        QVERIFY(joint->getConnection()->isVisible());
        lateral->pipe()->lastSegment()->setLength(0.1F);
        lateral->refreshConnectionVisibility();
        QVERIFY(joint->getConnection()->isVisible());
        lateral->pipe()->lastSegment()->setLength(0.11F);
        lateral->refreshConnectionVisibility();
        QVERIFY(!joint->getConnection()->isVisible());
    }

    void theCounterShowsAndHidesTheStub()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0);
        lateral->onDistanceCounterChanged(2.0);
        QVERIFY(!joint->getConnection()->isVisible());
    }

    void aConnectionWithoutALateralRegistersNothing()
    {
        auto* const joint = qobject_cast<ObservationConnection*>(m_scene->observation(m_pipe, "BCA", 5.0));
        QVERIFY(joint->getConnection() && joint->getConnectionPoint());
        QVERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
        QVERIFY(m_pipe->laterals().isEmpty());
        Kx::Test::LogCapture log;
        m_pipe->rotateToPointDirection({10, 0, 0});
        QCOMPARE(log.count(1, category, noRefresh), 0);
    }

    void aSectionIsNotItsOwnLateral()
    {
        connect(m_pipe, 5.0);
        m_scene->observation(m_pipe, "BCA", 6.0, {{"OBS_LateralSection_REF", m_pipe->guid()}});
        QVERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
        m_pipe->rotateToPointDirection({10, 0, 0});
        QVERIFY(ObservationScene::near(ObservationScene::endOf(m_pipe), {20, 0, 0}));
    }

    void theFirstConnectionKeepsItsLateral()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const first = connect(lateral, 10.0);
        auto* const second = connect(lateral, 15.0);
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(id(lateral)), first);
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 10}));
        second->performCleanup();
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(id(lateral)), first);
        m_scene->recordOf(second)->updateValue("OBS_Distance", 16.0);
        second->modify();
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 10}));
    }

    void pipesThatNameEachOtherComeToRest()
    {
        Section* const lateral = lateralOf(upstream);
        connect(lateral, 10.0);
        m_scene->observation(lateral, "BCA", 0.0, {{"OBS_LateralSection_REF", id(m_pipe)}});
        m_pipe->rotateToPointDirection({10, 0, 0});
        QVERIFY(ObservationScene::near(lateral->position(), {10, 0, 0}));
    }

    void aLateralThatDoesNotExistHarmsNothing()
    {
        m_scene->observation(m_pipe, "BCA", 5.0, {{"OBS_LateralSection_REF", "nowhere"}});
        m_pipe->rotateToPointDirection({10, 0, 0});
        QVERIFY(ObservationScene::near(ObservationScene::endOf(m_pipe), {20, 0, 0}));
    }

    void anotherLateralTakesThePlaceOfTheFirst()
    {
        Section* const one = lateralOf(upstream);
        Section* const other = lateralOf(upstream);
        auto* const joint = connect(one, 10.0);
        m_scene->recordOf(joint)->updateValue("OBS_LateralSection_REF", id(other));
        QSignalSpy removed(m_pipe, &Section::lateralConnectionRemoved);
        Observation* const replacement = joint->modify();
        QVERIFY(replacement != joint);
        QCOMPARE(removed.count(), 1);
        QVERIFY(!SceneEntities::instance().getLateralConnections().contains(id(one)));
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(id(other)), replacement);
        delete joint;
        QCOMPARE(SceneEntities::instance().getLateralConnections().value(id(other)), replacement);
    }

    void aConnectionThatBecomesPlainLetsItsLateralGo()
    {
        Section* const lateral = lateralOf(upstream);
        auto* const joint = connect(lateral, 10.0);
        m_scene->recordOf(joint)->updateValue("OBS_Code", "BAB");
        Observation* const plain = joint->modify();
        QVERIFY(!qobject_cast<ObservationConnection*>(plain));
        QVERIFY(SceneEntities::instance().getLateralConnections().isEmpty());
        QVERIFY(m_pipe->laterals().isEmpty());
        delete joint;
    }

    void theCrawlerMeetsALateralWithinHalfAMetre_data()
    {
        QTest::addColumn<double>("counter");
        QTest::addColumn<int>("direction");
        QTest::addColumn<bool>("met");
        QTest::newRow("at it") << 10.0 << upstream << true;
        QTest::newRow("half a metre before") << 9.5 << upstream << true;
        QTest::newRow("half a metre behind") << 10.5 << upstream << true;
        QTest::newRow("a centimetre too early") << 9.49 << upstream << false;
        QTest::newRow("a centimetre too late") << 10.51 << upstream << false;
        QTest::newRow("a downstream one never") << 10.0 << downstream << false;
    }

    void theCrawlerMeetsALateralWithinHalfAMetre()
    {
        QFETCH(double, counter);
        QFETCH(int, direction);
        QFETCH(bool, met);
        Section* const lateral = lateralOf(direction);
        connect(lateral, 10.0);
        QStringList near;
        QObject::connect(m_pipe, &Section::lateralInProximity, [&](const QString& ref) { near << ref; });
        m_pipe->testLateralProximity(counter);
        QCOMPARE(near, met ? QStringList {id(lateral)} : QStringList());
    }

    void theFirstLateralInReachDecides()
    {
        connect(lateralOf(upstream), 10.0);
        connect(lateralOf(downstream), 15.0);
        QSignalSpy near(m_pipe, &Section::lateralInProximity);
        QSignalSpy far(m_pipe, &Section::lateralNotInProximity);
        m_pipe->testLateralProximity(10.0);
        m_pipe->testLateralProximity(15.0);
        QCOMPARE(near.count(), 1);
        QCOMPARE(far.count(), 0);
        // Nor does a joint whose lateral isn't there count as none.
        m_scene->observation(m_pipe, "BCA", 18.0, {{"OBS_LateralSection_REF", "nowhere"}});
        m_pipe->testLateralProximity(18.0);
        QCOMPARE(near.count(), 1);
        QCOMPARE(far.count(), 0);
        m_pipe->testLateralProximity(5.0);
        QCOMPARE(far.count(), 1);
    }

    void leavingItIsToldAtEveryStep()
    {
        connect(lateralOf(upstream), 10.0);
        QSignalSpy far(m_pipe, &Section::lateralNotInProximity);
        m_pipe->testLateralProximity(5.0);
        QCOMPARE(far.count(), 0);
        m_pipe->testLateralProximity(10.0);
        m_pipe->testLateralProximity(12.0);
        m_pipe->testLateralProximity(13.0);
        QCOMPARE(far.count(), 2);
    }

    void theCounterLooksForLaterals()
    {
        connect(lateralOf(upstream), 10.0);
        QSignalSpy near(m_pipe, &Section::lateralInProximity);
        m_pipe->onDistanceCounterChanged(10.2);
        QCOMPARE(near.count(), 1);
    }

    void refreshingAnUnknownLateralIsLogged()
    {
        Kx::Test::LogCapture log;
        m_pipe->refreshLateral("unknown");
        m_pipe->refreshLateralFromObservationConnection("unknown");
        QCOMPARE(log.count(1, category, noRefresh), 2);
        QVERIFY(m_pipe->laterals().isEmpty());
    }

    void aRefreshedLateralIsEnteredAndNamedAnew()
    {
        Section* const lateral = lateralOf(upstream);
        Section* const other = m_scene->pipe({{30, 0, 0}, {30, 0, 20}});
        connect(lateral, 10.0);
        const auto record = m_scene->lookup(id(lateral));
        record->updateValue("OBJ_Key", "L2");
        QCOMPARE(lateral->name(), QString("L"));
        other->refreshLateral(id(lateral));
        QCOMPARE(other->laterals().value(id(lateral)), 10.0F);
        QCOMPARE(lateral->name(), QString("L2"));
    }

    void onlyAKnownLateralIsToldToHaveGone()
    {
        connect(lateralOf(upstream), 10.0);
        QSignalSpy removed(m_pipe, &Section::lateralConnectionRemoved);
        m_pipe->removeLateralConnection("unknown");
        QCOMPARE(removed.count(), 0);
        QCOMPARE(m_pipe->laterals().size(), 1);
    }

    void aLateralWithoutAConnectionStaysAndIsLogged()
    {
        Section* const lateral = lateralOf(upstream);
        QSignalSpy geometry(lateral, &Section::sectionGeometryChanged);
        Kx::Test::LogCapture log;
        lateral->reposition();
        lateral->repositionObservationConnection();
        QCOMPARE(log.count(1, category, "refreshGeometry: lateral connection does not exist"), 2);
        QCOMPARE(geometry.count(), 0);
    }

    void aPipeThatIsNoLateralOnlyStoresAndTells_data()
    {
        QTest::addColumn<bool>("keepsTurn");
        QTest::newRow("with its turn") << true;
        QTest::newRow("in the joint's direction") << false;
    }

    void aPipeThatIsNoLateralOnlyStoresAndTells()
    {
        QFETCH(bool, keepsTurn);
        GlobalNav::instance()->setRealTimeEnabled(true); // the end of an edit alone stores nothing
        QSignalSpy geometry(m_pipe, &Section::sectionGeometryChanged);
        const QVector3D place = m_pipe->position();
        m_pipe->pipe()->lastSegment()->setLength(17.0F);
        if (keepsTurn)
            m_pipe->reposition();
        else
            m_pipe->repositionObservationConnection();
        QCOMPARE(geometry.count(), 1);
        QCOMPARE(m_pipe->position(), place);
        QTRY_VERIFY_WITH_TIMEOUT(m_scene->storedShapeOf(m_pipe).toString().contains("0 17 0"), 3000);
    }

    void snappingAnUpstreamLateralTakesTheJointsPlace()
    {
        Node* const own = m_scene->node("C", {}, {{"OBJ_Type", "CON"}});
        Section* const lateral = m_scene->registered(m_scene->lateral(own, nullptr, upstream));
        connect(lateral, 10.0, 3);
        Kx::Test::LogCapture log;
        lateral->snapToNode(own);
        QVERIFY(ObservationScene::near(lateral->position(), {0, 0, 10}));
        QVERIFY(ObservationScene::near(directionOf(lateral), {-1, 0, 0}));
        QCOMPARE(lateral->transformFlags(), int(TransformFlags::Observations));
        QVERIFY(ObservationScene::near(own->position(), {0, 0, 10}));
        QCOMPARE(own->transformFlags(), int(TransformFlags::Observations));
        QCOMPARE(own->rotation(), lateral->rotation());
        // The name stands in both places.
        QCOMPARE(log.count(3, category, "Lateral L snapped to Node L"), 1);
    }

    void snappingAnUpstreamLateralHidesTheStubOfALongOne()
    {
        Node* const own = m_scene->node("C", {}, {{"OBJ_Type", "CON"}});
        Section* const lateral = m_scene->registered(m_scene->lateral(own, nullptr, upstream));
        auto* const joint = connect(lateral, 10.0);
        lateral->pipe()->lastSegment()->setLength(2.0F);
        QVERIFY(joint->getConnection()->isVisible());
        lateral->snapToNode(own);
        QVERIFY(!joint->getConnection()->isVisible());
    }

    void snappingADownstreamLateralTurnsItToItsEndNode()
    {
        Node* const house = m_scene->nodeAt({7, 0, 30}, {{"OBJ_Type", "CON"}});
        Node* const end = m_scene->nodeAt({10, 0, 34}, {{"OBJ_Type", "CON"}});
        Section* const lateral = m_scene->registered(m_scene->lateral(house, end, downstream));
        lateral->rotateToTargetAngleY(200.0F);
        lateral->snapToNode(house);
        QVERIFY(ObservationScene::near(lateral->position(), {7, 0, 30}));
        QVERIFY(ObservationScene::near(directionOf(lateral), {0.6F, 0, 0.8F}));
    }

    void snappingAnUpstreamLateralWithoutAJointIsLogged()
    {
        Node* const own = m_scene->node("C", "POINT ZM(3 4 0 16)", {{"OBJ_Type", "CON"}});
        Section* const lateral = m_scene->registered(m_scene->lateral(nullptr, nullptr, upstream));
        Kx::Test::LogCapture log;
        lateral->snapToNode(own);
        QCOMPARE(log.count(1, category, "Lateral connection does not exist"), 1);
        QCOMPARE(log.count(3, category, "Lateral L snapped to Node L"), 1);
    }

private:
    static QString id(Section* section) { return section->getProps()->sectionId(); }
    Section* lateralOf(int direction) { return m_scene->registered(m_scene->lateral(nullptr, nullptr, direction)); }

    ObservationConnection* connect(Section* lateral, double distance, int clock = 3)
    {
        return qobject_cast<ObservationConnection*>(m_scene->observation(
            m_pipe, "BCA", distance, {{"OBS_LateralSection_REF", id(lateral)}, {"OBS_ClockPos1", clock}}));
    }

    std::unique_ptr<ObservationScene> m_scene;
    Section* m_pipe = nullptr;
};

QTEST_MAIN(tst_SectionLaterals)
#include "tst_SectionLaterals.moc"
