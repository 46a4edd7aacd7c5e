#include "ObservationScene.h"

#include "domain/ObservationAdapter.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ObservationCodes.h"
#include "network/ObservationBend.h"
#include "network/ObservationEnd.h"
#include "scene/GlobalNav.h"

#include <QtTest>

#include <limits>

using namespace Torvik::View3d;

namespace {

using Values = QVariantMap;

Values bend(int clock, double angle)
{
    return {{"OBS_BendClkH", clock}, {"OBS_JointAngle", angle}};
}

void change(const CDomainObjectPointer& record, const Values& values)
{
    for (auto value = values.begin(); value != values.end(); ++value)
        record->updateValue(value.key(), *value);
}

} // namespace

/** The findings of an inspection on its pipe. */
class tst_Observation : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Torvik::Database::ObservationCodes::setFlags("XBE", 0x400 | 0x4);
        Torvik::Database::ObservationCodes::setFlags("XCE", 0x2018 | 0x4);
        Torvik::Database::ObservationCodes::setFlags("XC1", 0x2000);
        Torvik::Database::ObservationCodes::setFlags("XC2", 0x10);
    }
    void init() { m_scene = std::make_unique<ObservationScene>(); }
    void cleanup()
    {
        GlobalNav::instance()->setRealTimeEnabled(false);
        m_scene.reset();
    }

    void theCodeMakesTheKind()
    {
        Section* const pipe = m_scene->pipe();
        const auto made = [&](const char* code) { return m_scene->observation(pipe, code, 1.0); };
        QVERIFY(qobject_cast<ObservationBend*>(made("BCC")));
        QVERIFY(qobject_cast<ObservationConnection*>(made("BCA")));
        QVERIFY(qobject_cast<ObservationEnd*>(made("BCE")));
        // A bend goes before all, a connection before an end.
        QVERIFY(qobject_cast<ObservationBend*>(made("XBE")));
        QVERIFY(qobject_cast<ObservationConnection*>(made("XCE")));
        QVERIFY(qobject_cast<ObservationConnection*>(made("XC1")));
        QVERIFY(qobject_cast<ObservationConnection*>(made("XC2")));
        Observation* const plain = made("BAB");
        QCOMPARE(plain->metaObject(), &Observation::staticMetaObject);
        QCOMPARE(plain->renderableType(), QString("observation"));
        QCOMPARE(plain->guid(), m_scene->recordOf(plain)->id());
        QCOMPARE(plain->parentEntity(), pipe->parentEntity());
        QVERIFY(plain->getInspectionObjectId().isEmpty());
    }

    void itStandsOnThePipeAndLooksAlongIt()
    {
        Section* const pipe = m_scene->pipe({{0, 0, 0}, {4, 0, 0}, {4, 0, 6}});
        Observation* const first = m_scene->observation(pipe, "BAB", 3.0);
        QVERIFY(ObservationScene::near(first->position(), {3, 0, 0}));
        QVERIFY(ObservationScene::near(first->orientation().rotatedVector({0, 0, 1}), {1, 0, 0}));
        Observation* const second = m_scene->observation(pipe, "BAB", 6.0);
        QVERIFY(ObservationScene::near(second->position(), {4, 0, 2}));
        QCOMPARE(second->transformFlags(), 0);
    }

    void itsValuesAreThoseOfTheRecord()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const empty = m_scene->observation(pipe, "BAB", 2.0);
        QCOMPARE(empty->getDistance(), 2.0F);
        QCOMPARE(empty->getDiameter(), 0.05F);
        QCOMPARE(empty->getBendClock(), 0);
        QCOMPARE(empty->getClock1(), 0);
        QCOMPARE(empty->getJointAngle(), 90.0F);

        Observation* const full = m_scene->observation(
            pipe, "BAB", 2.0,
            {{"OBS_Q1_Value", 150.0}, {"OBS_BendClkH", 3}, {"OBS_ClockPos1", 9}, {"OBS_JointAngle", -45.0}});
        QCOMPARE(full->getDiameter(), 150.0F);
        QCOMPARE(full->getBendClock(), 3);
        QCOMPARE(full->getClock1(), 9);
        QCOMPARE(full->getJointAngle(), 45.0F);
    }

    void valuesThatCannotBeReadLeaveTheFields()
    {
        const Values words {
            {"OBS_Q1_Value", "thick"}, {"OBS_JointAngle", "acute"}, {"OBS_BendClkH", "up"}, {"OBS_ClockPos1", "down"}};
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 2.0, words);
        QCOMPARE(found->getDiameter(), 0.05F);
        QCOMPARE(found->getJointAngle(), 90.0F);
        QCOMPARE(found->getBendClock(), 0);
        QCOMPARE(found->getClock1(), 0);
        // Also what was read before.
        found->setBendClock(3);
        found->setClock1(4);
        found->setDiameter(150.0F);
        found->init();
        QCOMPARE(found->getBendClock(), 3);
        QCOMPARE(found->getClock1(), 4);
        QCOMPARE(found->getDiameter(), 150.0F);
    }

    void aDistanceThatIsNoNumberLeavesItAtTheStart()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BAB", std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(found->getDistance(), 0.0F);
        QVERIFY(ObservationScene::near(found->position(), {0, 0, 0}));
    }

    void aDistanceInFeetIsTurnedToMetres()
    {
        Torvik::Base::HostSettings::setDistanceUnit(2);
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 10.0);
        Torvik::Base::HostSettings::setDistanceUnit(1);
        QCOMPARE(found->getDistance(), 3.048F);
    }

    void itFollowsItsPipe()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BAB", 5.0);
        pipe->rotateToPointDirection({10, 0, 0});
        QVERIFY(ObservationScene::near(found->position(), {5, 0, 0}));
        // A pipe under the user's finger moves alone.
        pipe->setPosition({0, 0, 2}, TransformFlags::Manual);
        QVERIFY(ObservationScene::near(found->position(), {5, 0, 2}));
    }

    void itsPlaceIsStored()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BAB", 5.0);
        const auto record = m_scene->recordOf(found);
        QTRY_VERIFY_WITH_TIMEOUT(record->readValue("OBS_Shape_WKT").toString().startsWith("POINT ZM(0 5 0"), 3000);
        pipe->rotateToPointDirection({10, 0, 0});
        QTRY_VERIFY_WITH_TIMEOUT(record->readValue("OBS_Shape_WKT").toString().startsWith("POINT ZM(-5 "), 3000);
        QCOMPARE(m_scene->project().stored("SECOBS", "OBS_PK", record->id(), "OBS_Shape_WKT"),
                 record->readValue("OBS_Shape_WKT"));
    }

    void itShowsWhileBothSwitchesAreOn()
    {
        auto* const nav = GlobalNav::instance();
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 5.0);
        QSignalSpy visible(found, &Renderable::visibilityChanged);
        nav->setLabelsVisible(false);
        nav->setObsVisible(false);
        nav->setLabelsVisible(true);
        nav->setObsVisible(true);
        QList<bool> told;
        for (const auto& call : visible)
            told.append(call.first().toBool());
        QCOMPARE(told, QList<bool>({false, false, false, true}));
    }

    void itGoesWithItsSection()
    {
        Section* const pipe = m_scene->pipe();
        QPointer<Observation> plain = m_scene->observation(pipe, "BAB", 5.0);
        QPointer<Observation> joint = m_scene->observation(pipe, "BCA", 6.0);
        delete pipe;
        QTRY_VERIFY(!plain && !joint);
        QVERIFY(SceneEntities::instance().getObservations().isEmpty());
    }

    void aChangeOfAngleOrClockIsToldFromNoise()
    {
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 5.0, {{"OBS_ClockPos1", 3}});
        QVERIFY(!found->paramsChanged());
        found->setClock1(4);
        QVERIFY(found->paramsChanged());
        found->resetPrev();
        QVERIFY(!found->paramsChanged());
        found->setBendClock(1); // from 0
        QVERIFY(found->paramsChanged());
    }

    void aDistanceAloneIsNoChangeOfAngleOrClock()
    {
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 5.0, {{"OBS_ClockPos1", 3}});
        change(m_scene->recordOf(found), {{"OBS_Distance", 7.0}, {"OBS_Q1_Value", 150.0}, {"OBS_JointAngle", 90.0}});
        found->init();
        QCOMPARE(found->getDistance(), 7.0F);
        QVERIFY(!found->paramsChanged());
        change(m_scene->recordOf(found), {{"OBS_JointAngle", 45.0}});
        found->init();
        QVERIFY(found->paramsChanged());
    }

    void itsRecordGoesWithIt()
    {
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 5.0);
        QPointer<ObservationAdapter> adapter = found->adapter();
        QCOMPARE(adapter->parent(), found);
        Observation* const other = found->modify();
        QCOMPARE(other->adapter(), adapter.data());
        QCOMPARE(adapter->parent(), other);
        QVERIFY(found->guid() != other->guid());
        delete found;
        QVERIFY(adapter);
        delete other;
        QVERIFY(!adapter);
    }

    void aPlainOneIsAlwaysMadeAnew()
    {
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 5.0);
        const auto record = m_scene->recordOf(found);
        change(record, {{"OBS_Distance", 7.0}});
        Observation* const other = found->modify();
        QVERIFY(other != found);
        QCOMPARE(other->getDistance(), 7.0F);
        QCOMPARE(other->guid(), record->id());
        delete found;
    }

    void aNewBendTurnsTheRestOfThePipe()
    {
        Section* const pipe = m_scene->pipe();
        m_scene->observation(pipe, "BCC", 4.0, bend(3, 90.0));
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {-6, 0, 4}));
        QCOMPARE(pipe->transformFlags(), int(TransformFlags::Manual));
    }

    void aBendUpwardsIsOneAtTwelve()
    {
        Section* const pipe = m_scene->pipe();
        m_scene->observation(pipe, "BCC", 4.0, bend(12, 90.0));
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 6, 4}));
    }

    void aBendFromTheStoreIsInTheCourseAlready()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BCC", 4.0, bend(3, 90.0), true);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 10}));
        change(m_scene->recordOf(found), bend(9, 90.0));
        QCOMPARE(found->modify(), found);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {6, 0, 4}));
        QCOMPARE(found->getBendClock(), 9);
    }

    void aBendThatMovesIsTakenOutAndPutInAgain()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BCC", 4.0, bend(3, 90.0));
        change(m_scene->recordOf(found), {{"OBS_Distance", 7.0}});
        Observation* const other = found->modify();
        QVERIFY(qobject_cast<ObservationBend*>(other) && other != found);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {-3, 0, 7}));
        delete found;
    }

    void aBendThatBecomesPlainStraightensThePipe()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BCC", 4.0, bend(3, 90.0));
        change(m_scene->recordOf(found), {{"OBS_Code", "BAB"}});
        Observation* const other = found->modify();
        QVERIFY(!qobject_cast<ObservationBend*>(other));
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 10}));
        delete found;
    }

    void aBendKeepsWhatItHasWhenItsValuesCannotBeRead()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BCC", 4.0, bend(3, 90.0));
        const auto record = m_scene->recordOf(found);
        change(record, {{"OBS_JointAngle", QVariant()}, {"OBS_Q1_Value", 80.0}, {"OBS_BendClkH", 9}});
        QCOMPARE(found->modify(), found);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {-6, 0, 4}));
        QCOMPARE(found->getDiameter(), 0.05F);
        change(record, {{"OBS_Distance", std::numeric_limits<double>::quiet_NaN()}});
        QCOMPARE(found->modify(), found);
        change(record, {{"OBS_Distance", 4.0}, {"OBS_JointAngle", 90.0}});
        QCOMPARE(found->modify(), found);
        QCOMPARE(found->getDiameter(), 80.0F);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {6, 0, 4}));
    }

    void aNegativeAngleKeepsItsSignOnlyInAChange()
    {
        Section* const pipe = m_scene->pipe();
        Observation* const found = m_scene->observation(pipe, "BCC", 4.0, bend(3, -30.0), true);
        QCOMPARE(found->getJointAngle(), 30.0F);
        change(m_scene->recordOf(found), bend(3, -60.0));
        found->modify();
        QCOMPARE(found->getJointAngle(), -60.0F);
    }

    void aBendDuringAMeasurementLeavesThePipe()
    {
        Section* const pipe = m_scene->pipe();
        GlobalNav::instance()->setRealTimeEnabled(true);
        QSignalSpy geometry(pipe, &Section::sectionGeometryChanged);
        m_scene->observation(pipe, "BCC", 4.0, bend(3, 90.0));
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 10}));
        QVERIFY(geometry.count() > 0);
    }

    void anEndHoldsTheEndNodeToThePipe()
    {
        Node* const start = m_scene->node("A", "POINT ZM(0 0 0 16)");
        Node* const end = m_scene->node("B");
        Section* const pipe =
            m_scene->registered(m_scene->section(start, end, {{"OBJ_ToNodeDepth", 2.0}}, {{0, 0, 0}, {0, 0, 10}}));
        Observation* const found = m_scene->observation(pipe, "BCE", 8.0);
        QVERIFY(pipe->isLockedAsEnded());
        QCOMPARE(pipe->endDistance(), 8.0F);
        QVERIFY(ObservationScene::near(end->position(), {0, 2, 8}));

        change(m_scene->recordOf(found), {{"OBS_Distance", 6.0}});
        QCoreApplication::processEvents();
        QCOMPARE(found->modify(), found);
        QCOMPARE(found->getDistance(), 6.0F);
        QTRY_VERIFY(ObservationScene::near(end->position(), {0, 2, 6}));
        // Neither noise nor what is no number moves it.
        for (const double unmoved : {6.00005, std::numeric_limits<double>::quiet_NaN()}) {
            change(m_scene->recordOf(found), {{"OBS_Distance", unmoved}});
            QCOMPARE(found->modify(), found);
            QVERIFY(found->getDistance() == 6.0F && pipe->endDistance() == 6.0F);
        }

        found->performCleanup();
        QVERIFY(!pipe->isLockedAsEnded());
        QCOMPARE(end->snappedSection(), nullptr);
    }

    void anEndNodeWithAPlaceOfItsOwnStaysThere()
    {
        Node* const start = m_scene->node("A", "POINT ZM(0 0 0 16)");
        Node* const end = m_scene->node("B", "POINT ZM(0 30 0 16)");
        Section* const pipe = m_scene->registered(m_scene->section(start, end, {}, {{0, 0, 0}, {0, 0, 10}}));
        m_scene->observation(pipe, "BCE", 8.0);
        QVERIFY(!pipe->isLockedAsEnded());
        QCOMPARE(end->position(), QVector3D(0, 0, 30));
    }

    void anEndThatBecomesABendLetsTheNodeGo()
    {
        Node* const start = m_scene->node("A", "POINT ZM(0 0 0 16)");
        Section* const pipe =
            m_scene->registered(m_scene->section(start, m_scene->node("B"), {}, {{0, 0, 0}, {0, 0, 10}}));
        Observation* const found = m_scene->observation(pipe, "BCE", 8.0, bend(3, 90.0));
        QVERIFY(pipe->isLockedAsEnded());
        change(m_scene->recordOf(found), {{"OBS_Code", "BCC"}});
        Observation* const other = found->modify();
        QVERIFY(qobject_cast<ObservationBend*>(other));
        QVERIFY(!pipe->isLockedAsEnded());
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {-2, 0, 8}));
        delete found;
    }

    void aMarkIsReadAndWrittenAsAHour()
    {
        Observation* const found = m_scene->observation(m_scene->pipe(), "BAB", 1.0);
        found->setBendClock(7);
        found->setClock1(11);
        found->setDistance(3.5F);
        found->setDiameter(200.0F);
        QCOMPARE(found->getBendClock(), 7);
        QCOMPARE(found->getClock1(), 11);
        QCOMPARE(found->getDistance(), 3.5F);
        QCOMPARE(found->getDiameter(), 200.0F);
        QCOMPARE(found->inspDir(), int(InspectionDir::Downstream));
    }

private:
    std::unique_ptr<ObservationScene> m_scene;
};

QTEST_MAIN(tst_Observation)
#include "tst_Observation.moc"
