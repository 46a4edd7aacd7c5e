#include "ObservationScene.h"

#include "common/LogCapture.h"
#include "network/Connection.h"
#include "network/EntitySegment.h"

#include <Qt3DRender/QGeometryRenderer>
#include <Qt3DRender/QRayCaster>
#include <QtTest>

using namespace Torvik::View3d;
using Qt3DRender::QAbstractRayCaster;
using Qt3DRender::QRayCaster;

namespace {

/** Tells how many wait for its answer. */
class CountedCaster : public QRayCaster {
public:
    int listeners() const { return receivers(SIGNAL(hitsChanged(Qt3DRender::QAbstractRayCaster::Hits))); }
};

/** What a ray hits of a pipe. */
Qt3DCore::QEntity* wallOf(const Section* section)
{
    const auto children = section->pipe()->lastSegment()->childNodes();
    for (Qt3DCore::QNode* child : children) {
        auto* const entity = qobject_cast<Qt3DCore::QEntity*>(child);
        if (entity && !entity->componentsOfType<Qt3DRender::QGeometryRenderer>().isEmpty())
            return entity;
    }
    return nullptr;
}

} // namespace

/** Drawing a pipe's end to something else. */
class tst_SectionConnecting : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_scene = std::make_unique<ObservationScene>();
        m_target = m_scene->node("T", "POINT ZM(-4 13 2.5 16)"); // its pipes meet it at (4, 2, 13)
    }
    void cleanup() { m_scene.reset(); }

    void aPreviewRunsStraightToTheTarget()
    {
        Section* const pipe = m_scene->pipe({{0, 0, 0}, {0, 0, 6}, {0, 0, 10}});
        pipe->connectTo(m_target);
        const EntitySegment* const last = pipe->pipe()->lastSegment();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {4, 2, 13}));
        QVERIFY(ObservationScene::near(last->beginPoint(), {0, 0, 6}));
        QVERIFY(ObservationScene::near(pipe->pipe()->firstSegment()->endPoint(), {0, 0, 6}));
    }

    void aPreviewReachesItsTargetFromATurnedPipeBehindABend()
    {
        Section* const pipe = m_scene->pipe({{0, 0, 0}, {6, 0, 0}, {9, 0, 3}, {9, 0, 8}});
        pipe->setPosition({1, 0, 1}, TransformFlags::Manual);
        pipe->connectTo(m_target);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {4, 2, 13}, 0.05F));
    }

    void aPreviewReachesItsTargetInSpace()
    {
        // Rising, bent in the height and turned: no two of the turns lie in one plane.
        Section* const pipe = m_scene->pipe({{0, 0, 0}, {6, 2, 1}, {9, 1, 4}, {9, 3, 8}});
        pipe->transform()->setRotationY(pipe->transform()->rotationY() + 40.0F, TransformFlags::Manual);
        pipe->connectTo(m_target);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {4, 2, 13}, 0.05F));
        pipe->connectCancel();
    }

    void aSecondPreviewWaits()
    {
        Section* const pipe = m_scene->pipe();
        Node* const other = m_scene->node("O", "POINT ZM(0 50 0 16)");
        pipe->connectTo(m_target);
        pipe->connectTo(other);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {4, 2, 13}, 0.05F));
        pipe->connectCancel();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 10}));
        pipe->connectTo(nullptr);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 10}));
    }

    void cancellingRestoresAPipeWithABend()
    {
        Section* const pipe = m_scene->pipe({{0, 0, 0}, {6, 0, 0}, {6, 0, 8}});
        pipe->connectTo(m_target);
        pipe->connectCancel();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {6, 0, 8}));
        QCOMPARE(pipe->pipe()->lastSegment()->length(), 8.0F);
    }

    void applyingMakesItFinalAndStoresIt()
    {
        Section* const pipe = m_scene->pipe();
        m_scene->waitForAWrite();
        const auto record = m_scene->lookup(pipe->guid());
        const QString before = record->readValue("INS_Shape_WKT").toString();
        pipe->connectTo(m_target);
        m_scene->waitForAWrite();
        QCOMPARE(record->readValue("INS_Shape_WKT").toString(), before);
        pipe->connectApply();
        pipe->connectCancel();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {4, 2, 13}, 0.05F));
        QTRY_VERIFY_WITH_TIMEOUT(record->readValue("INS_Shape_WKT").toString() != before, 3000);
        QCOMPARE(m_scene->project().stored("SECINSP", "INS_PK", record->id(), "INS_Shape_WKT"),
                 record->readValue("INS_Shape_WKT"));
    }

    void theJointShowsDuringThePreview()
    {
        Section* const pipe = m_scene->pipe();
        const auto balls = [pipe] { return pipe->pipe()->lastSegment()->childNodes().size(); };
        const int before = balls();
        pipe->connectTo(m_target);
        QVERIFY(balls() > before);
        pipe->connectCancel();
        QTRY_COMPARE(balls(), before);
        // It stays where the pipe does.
        pipe->connectTo(m_target);
        pipe->connectApply();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(balls() > before);
    }

    void aSectionMeetsANodeAtItsOwnDepth()
    {
        Node* const manhole = m_scene->node("M", "POINT ZM(0 20 0 16)");
        Section* const pipe = m_scene->registered(
            m_scene->section(nullptr, nullptr, {{"OBJ_ToNodeDepth", 3.0}}, {{0, -3, 0}, {0, -3, 10}}));
        pipe->setEndNode(manhole);
        pipe->connectTo(manhole);
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, -3, 20}));
    }

    void aPipeStretchesAbreastOfItsEndNode()
    {
        Node* const end = m_scene->node("E", "POINT ZM(-3 14 9 16)"); // at (3, 9, 14)
        Section* const pipe = m_scene->registered(m_scene->section(nullptr, end, {}, {{0, 0, 0}, {0, 0, 10}}));
        QSignalSpy geometry(pipe, &Section::sectionGeometryChanged);
        pipe->connectToEnd();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 14}));
        QVERIFY(geometry.count() > 0);
        const auto record = m_scene->lookup(pipe->guid());
        QTRY_VERIFY_WITH_TIMEOUT(record->readValue("INS_Shape_WKT").toString().contains(" 14 "), 3000);
    }

    void aPipeShrinksToItsEndNode()
    {
        Node* const end = m_scene->node("E", "POINT ZM(0 7 0 16)");
        Section* const pipe = m_scene->registered(m_scene->section(nullptr, end, {}, {{0, 0, 0}, {0, 0, 10}}));
        pipe->connectToEnd();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, 7}));
    }

    void anEndNodeBehindTheStartGivesANegativeLength()
    {
        Node* const end = m_scene->node("E", "POINT ZM(0 -7 0 16)");
        Section* const pipe = m_scene->registered(m_scene->section(nullptr, end, {}, {{0, 0, 0}, {0, 0, 10}}));
        pipe->connectToEnd();
        QVERIFY(ObservationScene::near(ObservationScene::endOf(pipe), {0, 0, -7}));
    }

    void aPipeThatPointsNowhereIsNotStretched()
    {
        Node* const end = m_scene->node("E", "POINT ZM(0 7 0 16)");
        Section* const pipe = m_scene->registered(m_scene->section(nullptr, end, {}, {{0, 0, 0}, {0, 0, 10}}));
        m_scene->waitForAWrite();
        const QVariant before = m_scene->storedShapeOf(pipe);
        QVERIFY(!before.toString().isEmpty());
        pipe->pipe()->lastSegment()->setLength(0.0F);
        QSignalSpy geometry(pipe, &Section::sectionGeometryChanged);
        pipe->connectToEnd();
        QCOMPARE(geometry.count(), 0);
        QCOMPARE(pipe->length(), 0.0);
        m_scene->waitForAWrite();
        QCOMPARE(m_scene->storedShapeOf(pipe), before);
    }

    void aPipeWithoutACasterStaysAndIsLogged()
    {
        Section* const pipe = m_scene->pipe();
        Kx::Test::LogCapture log;
        pipe->connectToNearestSectionEntity(nullptr);
        QCOMPARE(log.count(1, "View3d::Section", "Missing raycaster"), 1);
        QCOMPARE(pipe->length(), 10.0);
    }

    void theSearchReachesFiveMetresPastTheEnd()
    {
        Section* const pipe = m_scene->pipe({{0, 0, 0}, {0, 0, 6}, {0, 0, 10}});
        QRayCaster* const caster = m_scene->root->rayCaster();
        pipe->connectToEnd(); // its end node is virtual
        QCOMPARE(caster->runMode(), QAbstractRayCaster::SingleShot);
        QVERIFY(ObservationScene::near(caster->origin(), {0, 0, 6}));
        QVERIFY(ObservationScene::near(caster->direction(), {0, 0, 1}));
        QCOMPARE(caster->length(), 9.0F);
    }

    void anAnswerIsHeardOnce()
    {
        CountedCaster caster;
        Section* const pipe = m_scene->pipe();
        pipe->connectToNearestSectionEntity(&caster);
        QCOMPARE(caster.listeners(), 1);
        emit caster.hitsChanged({});
        QCOMPARE(caster.listeners(), 0);
        emit caster.hitsChanged({});
        QCOMPARE(pipe->length(), 10.0);
        // Nobody is left to hear it when the pipe has gone meanwhile.
        pipe->connectToNearestSectionEntity(&caster);
        delete pipe;
        QCOMPARE(caster.listeners(), 0);
        emit caster.hitsChanged({});
    }

    void aPipeEndsInsideTheOneItMeets()
    {
        Section* const pipe = m_scene->pipe();
        Section* const ahead = m_scene->pipe({{-5, 0, 13}, {5, 0, 13}});
        ahead->setDiameter(800.0);
        QSignalSpy geometry(pipe, &Section::sectionGeometryChanged);
        pipe->stretchInto({{wallOf(ahead), 12.6F}});
        // Half its radius behind the wall.
        QVERIFY(std::abs(pipe->length() - (12.6 + double(ahead->pipe()->radius()) / 2.0)) < 0.011);
        QVERIFY(ahead->pipe()->radius() > 0.3F);
        QCOMPARE(geometry.count(), 1);
        const QString end = QString::number(pipe->length());
        QTRY_VERIFY_WITH_TIMEOUT(m_scene->storedShapeOf(pipe).toString().contains("(0 " + end), 3000);
        // Of what is no segment's wall the surface itself is the end.
        pipe->stretchInto({{ahead->pipe(), 11.0F}});
        QCOMPARE(pipe->length(), 11.0);
    }

    void theLastOtherPipeDecides()
    {
        Section* const pipe = m_scene->pipe();
        Section* const near = m_scene->pipe({{-5, 0, 11}, {5, 0, 11}});
        Section* const far = m_scene->pipe({{-5, 0, 13}, {5, 0, 13}});
        pipe->stretchInto({{near->pipe(), 11.0F}, {far->pipe(), 13.0F}});
        QCOMPARE(pipe->length(), 13.0);
        pipe->stretchInto({{far->pipe(), 13.0F}, {near->pipe(), 11.0F}, {wallOf(pipe), 5.0F}, {nullptr, 6.0F}});
        QCOMPARE(pipe->length(), 11.0);
    }

    void nothingButAnotherPipeStopsIt()
    {
        Section* const pipe = m_scene->pipe();
        Section* const other = m_scene->pipe({{20, 0, 0}, {20, 0, 10}});
        auto* const joint = qobject_cast<ObservationConnection*>(m_scene->observation(other, "BCA", 5.0));
        m_scene->waitForAWrite();
        const QVariant before = m_scene->storedShapeOf(pipe);
        QSignalSpy geometry(pipe, &Section::sectionGeometryChanged);
        pipe->stretchInto({{wallOf(pipe), 12.0F},
                           {m_target, 12.0F},
                           {joint->getConnection()->entity(), 12.0F},
                           {m_scene->root.get(), 12.0F},
                           {nullptr, 12.0F}});
        pipe->stretchInto({});
        QCOMPARE(geometry.count(), 0);
        QCOMPARE(pipe->length(), 10.0);
        m_scene->waitForAWrite();
        QCOMPARE(m_scene->storedShapeOf(pipe), before);
    }

private:
    std::unique_ptr<ObservationScene> m_scene;
    Node* m_target = nullptr;
};

QTEST_MAIN(tst_SectionConnecting)
#include "tst_SectionConnecting.moc"
