#include "ObservationScene.h"

#include "common/LogCapture.h"
#include "network/EntitySegment.h"

#include <Qt3DRender/QRayCaster>
#include <QtTest>

using namespace Torvik::View3d;
using Qt3DRender::QAbstractRayCaster;
using Qt3DRender::QRayCaster;

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
        const auto record = m_scene->lookup(pipe->guid());
        const QString before = record->readValue("INS_Shape_WKT").toString();
        pipe->connectTo(m_target);
        QVERIFY(record->readValue("INS_Shape_WKT").toString() == before);
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

private:
    std::unique_ptr<ObservationScene> m_scene;
    Node* m_target = nullptr;
};

QTEST_MAIN(tst_SectionConnecting)
#include "tst_SectionConnecting.moc"
