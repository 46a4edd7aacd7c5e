#include "common/SceneTest.h"
#include "view/SceneWindow.h"

#include "network/ConnectionPoint.h"
#include "network/Node.h"
#include "network/ObservationConnection.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

/** A finger on the objects of a rendered scene: what they and the database hold afterwards. */
class tst_Touch : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_view = std::make_unique<SceneWindow>(); }
    void cleanupTestCase() { m_view.reset(); }
    void init();
    void cleanup();

    void aTapSelectsTheManholeUnderIt();
    void aTapOnTheGroundDeselects();
    void aTapOnAPipeSelectsItsSection();
    void aTapBesideAManholeSelectsItFromFarAway();
    void aSlowTapOnAnObjectKeepsItSelected();
    void aTapWithinOneFrameSelects();
    void aManholeIsDraggedWithItsPipeAndStored();
    void aPipeWithoutAPlaceOfItsOwnFollowsItsManhole();
    void anObjectThatIsNotAllowedStays();
    void theCameraStaysDuringADrag();
    void aSectionWithoutArrowsLeavesTheCameraOn();
    void aFingerDragsAsAMouseDoes();
    void aSecondPressSoonIsADoubleTap();
    void anArrowLimitsTheDragToItsAxis();
    void aFreeHeightMovesInThePlaneOfTheView();
    void theRingTurnsAPipeAboutItsStart();
    void inTurnModeTheObjectItselfCannotBePicked();
    void theRingCatchesPresses();
    void anObjectThatDiesUnderTheFingerGivesTheCameraBack();
    void arrowsThatGoDuringADragLeaveNoAxisBehind();
    void twoTapsAndAConnectionAreAPreview();
    void aSphereIsPickedInConnectionModeOnly();
    void aRayStretchesAPipeToTheOneAhead();

private:
    Section* section() const
    {
        return SceneEntities::instance().getPipeEntities().getByInspectionId(m_inspection->id());
    }
    Node* node(const CDomainObjectPointer& record) const
    {
        return SceneEntities::instance().getNodes().value(record->id());
    }
    QPoint pixel(const Node* at) const { return m_view->pixelOf(at->position()); }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_a;
    CDomainObjectPointer m_b;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_inspection;
};

void tst_Touch::init()
{
    m_project = std::make_unique<TestProject>();
    m_a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    m_b = m_project->addNode("B", "POINT ZM(400030 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto pipe = m_project->addSection("A-B", m_a, m_b, {{"OBJ_Size1", 1000}});
    m_inspection = m_project->addInspection(pipe, "LINESTRING ZM(400030 5600000 98 320,400000 5600000 98 0)");
    m_project->activate();
    QTRY_COMPARE(SceneEntities::instance().getNodes().size(), 2);
    const QVector3D middle = (node(m_a)->position() + node(m_b)->position()) / 2.0F;
    m_view->lookDown({middle.x(), 0, middle.z()}, 900);
    QTest::qWait(400); // past the guard of an earlier selection
}

void tst_Touch::cleanup()
{
    m_view->root()->deselectAll();
    m_project->close();
    m_project.reset();
    m_view->frames(3);
}

void tst_Touch::aTapSelectsTheManholeUnderIt()
{
    m_view->tap(pixel(node(m_a)));
    m_view->keep("selected");
    QTRY_COMPARE(m_view->root()->selectionsCount(), 1);
    QVERIFY(m_view->root()->isSelected(m_a->id()));
}

void tst_Touch::aTapOnTheGroundDeselects()
{
    m_view->root()->selectOneByDomainGuid(m_a->id());
    QTest::qWait(400);
    m_view->tap(pixel(node(m_a)) + QPoint(0, 120));
    QTRY_VERIFY(m_view->root()->nothingSelected());
}

void tst_Touch::aTapOnAPipeSelectsItsSection()
{
    m_view->tap((pixel(node(m_a)) + pixel(node(m_b))) / 2);
    QTRY_VERIFY(m_view->root()->isSelected(m_inspection->id()));
}

void tst_Touch::aTapBesideAManholeSelectsItFromFarAway()
{
    m_view->lookDown(node(m_a)->position(), 9000);
    m_view->tap(pixel(node(m_a)) - QPoint(8, 0));
    QTRY_VERIFY(m_view->root()->isSelected(m_a->id()));
    QTest::qWait(400);
    m_view->tap(pixel(node(m_a)) - QPoint(20, 0));
    QTRY_VERIFY(m_view->root()->nothingSelected());
}

void tst_Touch::aSlowTapOnAnObjectKeepsItSelected()
{
    m_view->press(pixel(node(m_a)));
    QTest::qWait(370); // longer than the guard, still a tap
    QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(pixel(node(m_a))));
    m_view->frames(4);
    QVERIFY(m_view->root()->isSelected(m_a->id()));
}

void tst_Touch::aTapWithinOneFrameSelects()
{
    node(m_a)->allowTouchControl(true);
    m_view->root()->setMaxSelection(2);
    m_view->root()->selectNextByDomainGuid(m_b->id());
    QTest::qWait(400);
    QSignalSpy exceeded(m_view->root(), &SceneRoot::maxSelectionExceeded);
    const QPoint at = m_view->inWindow(pixel(node(m_a)));
    QTest::mousePress(m_view->window(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, at);
    m_view->frames(6);
    QCOMPARE(m_view->root()->selectionsCount(), 2);
    QVERIFY(m_view->root()->isSelected(m_a->id()));
    QCOMPARE(exceeded.count(), 0);
    // No drag is left over.
    QVERIFY(m_view->controller()->isEnabled());
    const QVector3D place = node(m_a)->position();
    m_view->moveTo(pixel(node(m_a)) + QPoint(60, 60));
    QCOMPARE(node(m_a)->position(), place);
}

void tst_Touch::aManholeIsDraggedWithItsPipeAndStored()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    const QVector3D before = manhole->position();
    const QPoint from = pixel(manhole);

    m_view->drag(from, from + QPoint(0, -60));

    const QVector3D moved = manhole->position() - before;
    QVERIFY2(moved.z() > 1.0F, qPrintable(QString::number(double(moved.z()))));
    QVERIFY(qAbs(moved.y()) < 0.001F);
    const QPoint now = pixel(manhole);
    QVERIFY((now - (from + QPoint(0, -60))).manhattanLength() <= 3);
    QCOMPARE(manhole->transformFlags(), int(TransformFlags::Manual));
    // 750 ms until the drag has ended for sure, 700 ms until it is written.
    const QString shape = m_a->readValue("OBJ_Shape_WKT").toString();
    QTRY_VERIFY_WITH_TIMEOUT(m_a->readValue("OBJ_Shape_WKT").toString() != shape, 4000);
    QTRY_COMPARE(m_project->stored("NODE", "OBJ_PK", m_a->id(), "OBJ_Shape_WKT").toString(),
                 m_a->readValue("OBJ_Shape_WKT").toString());
}

void tst_Touch::aPipeWithoutAPlaceOfItsOwnFollowsItsManhole()
{
    const auto c = m_project->addNode("C", "POINT ZM(400000 5600015 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto pipe = m_project->addSection("C-B", c, m_b, {{"OBJ_Size1", 600}});
    // Its course comes from what was observed, not from a survey.
    const auto inspection = m_project->addInspection(pipe, "LINESTRING ZM(400025 5600015 98 257,400000 5600015 98 0)");
    m_project->addObservation(inspection, "BCA", 6.0, {{"OBS_ClockPos1", 3}, {"OBS_Q1_Value", 400.0}});
    QTRY_VERIFY(SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id()));
    Section* const follower = SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id());
    Node* const manhole = node(c);
    m_view->root()->selectOneByDomainGuid(c->id());
    manhole->allowTouchControl(true);
    m_view->frames(4);
    const QVector3D apart = follower->position() - manhole->position();
    const QVector3D before = manhole->position();

    const QPoint from = pixel(manhole);
    m_view->press(from);
    for (int step = 0; step <= 4; ++step) {
        m_view->moveTo(from + QPoint(20, -25) * step);
        m_view->keep(QStringLiteral("drag-%1").arg(step));
        QVERIFY((follower->position() - manhole->position() - apart).length() < 0.01F);
    }
    m_view->release(from + QPoint(80, -100));
    QVERIFY((manhole->position() - before).length() > 3.0F);
    const auto joint = SceneEntities::instance().getObservations().values().value(0);
    QVERIFY(joint && (joint->position() - follower->position()).length() < 7.0F);
}

void tst_Touch::anObjectThatIsNotAllowedStays()
{
    const QVector3D before = node(m_a)->position();
    const QPoint from = pixel(node(m_a));
    m_view->drag(from, from + QPoint(0, -60));
    QCOMPARE(node(m_a)->position(), before);
}

void tst_Touch::theCameraStaysDuringADrag()
{
    node(m_a)->allowTouchControl(true);
    const QPoint from = pixel(node(m_a));
    m_view->press(from);
    const QVector3D camera = m_view->camera()->position();
    m_view->moveTo(from + QPoint(10, -30));
    m_view->moveTo(from + QPoint(20, -60));
    QCOMPARE(m_view->camera()->position(), camera);
    QVERIFY(!m_view->controller()->isEnabled());
    m_view->release(from + QPoint(20, -60));
    QVERIFY(m_view->controller()->isEnabled());
    // The finger is up: the camera must not take up what it has missed.
    m_view->moveTo(from + QPoint(80, 60));
    QCOMPARE(m_view->camera()->position(), camera);
}

void tst_Touch::aSectionWithoutArrowsLeavesTheCameraOn()
{
    section()->allowTouchControl(true);
    const QPoint from = (pixel(node(m_a)) + pixel(node(m_b))) / 2;
    m_view->press(from);
    QVERIFY(m_view->controller()->isEnabled());
    m_view->release(from);
}

void tst_Touch::aFingerDragsAsAMouseDoes()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    const float before = manhole->position().z();
    const QPoint from = pixel(manhole);
    auto* const screen = QTest::createTouchDevice();
    QTest::touchEvent(m_view->window(), screen).press(0, m_view->inWindow(from));
    m_view->frames(4);
    for (int step = 1; step <= 3; ++step) {
        QTest::touchEvent(m_view->window(), screen).move(0, m_view->inWindow(from - QPoint(0, 20 * step)));
        m_view->frames(3);
    }
    QTest::touchEvent(m_view->window(), screen).release(0, m_view->inWindow(from - QPoint(0, 60)));
    m_view->frames(4);
    QVERIFY(manhole->position().z() - before > 1.0F);
    QVERIFY(m_view->controller()->isEnabled());
    QVERIFY((pixel(manhole) - (from - QPoint(0, 60))).manhattanLength() <= 3);
}

void tst_Touch::aSecondPressSoonIsADoubleTap()
{
    class TappedNode : public Node {
    public:
        using Node::Node;
        void doubleTapped() override { ++taps; }
        int taps = 0;
    };
    auto* const tapped = new TappedNode(m_view->root(), nullptr, true, true, QStringLiteral("T"));
    tapped->setPosition(node(m_a)->position() + QVector3D(0, 0, 6), TransformFlags::Manual);
    SceneEntities::instance().getNodes().insert(tapped->guid(), tapped);
    m_view->frames(4);
    m_view->tap(pixel(tapped));
    m_view->tap(pixel(tapped));
    QCOMPARE(tapped->taps, 0); // not allowed
    QTest::qWait(450);
    tapped->allowTouchControl(true);
    m_view->tap(pixel(tapped));
    QCOMPARE(tapped->taps, 0);
    m_view->tap(pixel(tapped));
    QCOMPARE(tapped->taps, 1);
    QTest::qWait(450);
    m_view->tap(pixel(tapped));
    QCOMPARE(tapped->taps, 1);
    m_view->root()->deselectAll();
    delete tapped;
}

void tst_Touch::anArrowLimitsTheDragToItsAxis()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    manhole->touchControl()->setAxisArrowVisible(true);
    m_view->frames(10);
    const QVector3D before = manhole->position();
    // The arrow along x points to +x and -x; it begins outside the manhole.
    const QPoint from = m_view->pixelOf(before + QVector3D(0.8F, 0, 0));
    m_view->keep("arrows");
    m_view->drag(from, from + QPoint(-50, -50));
    const QVector3D moved = manhole->position() - before;
    QVERIFY2(qAbs(moved.x()) > 0.5F, qPrintable(QString::number(double(moved.x()))));
    QVERIFY(qAbs(moved.z()) < 0.001F && qAbs(moved.y()) < 0.001F);
    // Released, the axis is free again.
    const QPoint place = pixel(manhole);
    m_view->drag(place, place + QPoint(0, -50));
    QVERIFY(manhole->position().z() - before.z() > 0.5F);
    manhole->touchControl()->setAxisArrowVisible(false);
}

void tst_Touch::aFreeHeightMovesInThePlaneOfTheView()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    const QVector3D at = manhole->position();
    m_view->look(at + QVector3D(0, 0, -900), at, {0, 1, 0}, CameraController::View2dFront);
    auto* const nav = GlobalNav::instance();
    nav->setAxisX(false);
    nav->setAxisY(true);
    nav->setAxisZ(false);
    const QPoint from = pixel(manhole);
    m_view->drag(from, from + QPoint(40, -60));
    nav->setAxisX(true);
    nav->setAxisY(false);
    nav->setAxisZ(true);
    const QVector3D moved = manhole->position() - at;
    QVERIFY2(moved.y() > 1.0F, qPrintable(QString::number(double(moved.y()))));
    QVERIFY(qAbs(moved.x()) < 0.001F && qAbs(moved.z()) < 0.001F);
}

void tst_Touch::theRingTurnsAPipeAboutItsStart()
{
    Section* const pipe = section();
    GlobalNav::instance()->setTranslateMode(false);
    m_view->root()->selectOneByDomainGuid(pipe->guid());
    pipe->allowTouchControl(true);
    pipe->touchControl()->setMode(TouchControlBase::Rotation);
    // With arrows the camera stays.
    pipe->touchControl()->setAxisArrowVisible(true);
    m_view->frames(10);
    m_view->keep("ring");
    const QVector3D start = pipe->position();
    const float before = pipe->transform()->rotationY();
    // A quarter round the start, near the ring's edge.
    const float radius = 12.0F;
    m_view->drag(m_view->pixelOf(start + QVector3D(0, 0, radius)), m_view->pixelOf(start + QVector3D(radius, 0, 0)), 8);
    GlobalNav::instance()->setTranslateMode(true);
    const float turned = pipe->transform()->rotationY() - before;
    QVERIFY2(qAbs(std::fmod(turned + 720.0F, 360.0F) - 90.0F) < 2.0F, qPrintable(QString::number(double(turned))));
    QCOMPARE(pipe->position(), start);
    QCOMPARE(pipe->transformFlags(), int(TransformFlags::Manual));
    QVERIFY(m_view->controller()->isEnabled());
}

void tst_Touch::inTurnModeTheObjectItselfCannotBePicked()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    GlobalNav::instance()->setTranslateMode(false);
    m_view->root()->selectOneByDomainGuid(manhole->guid());
    manhole->touchControl()->setMode(TouchControlBase::Rotation);
    m_view->frames(4);
    const QVector3D place = manhole->position();
    const QPoint from = pixel(manhole);
    m_view->drag(from, from + QPoint(0, -60));
    GlobalNav::instance()->setTranslateMode(true);
    QCOMPARE(manhole->position(), place);
}

void tst_Touch::theRingCatchesPresses()
{
    // The pipe lies below the ring's place.
    const QVector3D way = (node(m_b)->position() - node(m_a)->position()).normalized();
    const QPoint from = m_view->pixelOf(section()->position() + way * 5.0F);
    // At the press; at the release a tap takes what is nearest.
    const auto pressSelectsThePipe = [&] {
        m_view->press(from);
        const bool selected = m_view->root()->isSelected(m_inspection->id());
        m_view->release(from);
        return selected;
    };
    QVERIFY(pressSelectsThePipe());
    m_view->root()->selectOneByDomainGuid(m_a->id());
    node(m_a)->touchControl()->setMode(TouchControlBase::Rotation);
    m_view->frames(12);
    QVERIFY(!pressSelectsThePipe());
}

void tst_Touch::anObjectThatDiesUnderTheFingerGivesTheCameraBack()
{
    node(m_a)->allowTouchControl(true);
    const QPoint from = pixel(node(m_a));
    m_view->press(from);
    m_view->moveTo(from + QPoint(10, -20));
    QVERIFY(!m_view->controller()->isEnabled());
    m_project->close();
    QTRY_VERIFY(m_view->controller()->isEnabled());
    m_view->release(from);
    QVERIFY(m_view->controller()->isEnabled());
    m_project = std::make_unique<TestProject>(); // for cleanup
}

void tst_Touch::arrowsThatGoDuringADragLeaveNoAxisBehind()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    manhole->touchControl()->setAxisArrowVisible(true);
    m_view->frames(10);
    QVector3D place = manhole->position();
    QPoint from = m_view->pixelOf(place + QVector3D(0.8F, 0, 0));
    m_view->press(from);
    m_view->moveTo(from + QPoint(-20, -20));
    m_view->moveTo(from + QPoint(-40, -40));
    QVERIFY(qAbs(manhole->position().x() - place.x()) > 0.5F);
    QVERIFY(qAbs(manhole->position().z() - place.z()) < 0.001F);
    manhole->touchControl()->setAxisArrowVisible(false);
    m_view->frames(4); // deleted by now
    m_view->release(from + QPoint(-40, -40));
    QVERIFY(m_view->controller()->isEnabled());
    place = manhole->position();
    from = pixel(manhole);
    m_view->drag(from, from + QPoint(-40, -40));
    QVERIFY(qAbs(manhole->position().x() - place.x()) > 0.5F);
    QVERIFY(qAbs(manhole->position().z() - place.z()) > 0.5F);
}

void tst_Touch::twoTapsAndAConnectionAreAPreview()
{
    const auto c = m_project->addNode("C", "POINT ZM(400040 5600020 100 16)");
    QTRY_VERIFY(node(c));
    m_view->frames(4);
    m_view->root()->setMaxSelection(2);
    m_view->tap((pixel(node(m_a)) + pixel(node(m_b))) / 2);
    QTRY_COMPARE(m_view->root()->selectionsCount(), 1);
    QTest::qWait(400);
    const double before = section()->length();
    m_view->tap(pixel(node(c)));
    QTRY_COMPARE(m_view->root()->selectionsCount(), 2);
    m_view->root()->connectSelectedObjects();
    m_view->keep("preview");
    QVERIFY(section()->length() > before + 5.0);
    m_view->root()->connectCancel();
    QVERIFY(qAbs(section()->length() - before) < 0.02);
}

void tst_Touch::aSphereIsPickedInConnectionModeOnly()
{
    const auto lateral = m_project->addLateral("L", m_inspection->parentObject().toStrongRef());
    m_project->addInspection(lateral, {}, 2);
    const auto joint = m_project->addObservation(
        m_inspection, "BCA", 15.0,
        {{"OBS_LateralSection_REF", lateral->id()}, {"OBS_Q1_Value", 3000.0}, {"OBS_ClockPos1", 12}});
    QTRY_COMPARE(SceneEntities::instance().getLateralConnections().size(), 1);
    m_view->frames(6);
    const auto sphere = SceneEntities::instance().getLateralConnections().value(lateral->id())->getConnectionPoint();
    const QPoint at = m_view->pixelOf(sphere->connectionPoint(nullptr)) + QPoint(0, 12);
    m_view->keep("sphere");
    m_view->root()->setMaxSelection(2);
    m_view->tap(at);
    QVERIFY(!m_view->root()->isSelected(sphere->guid()));
    QTest::qWait(400);
    m_view->root()->setMaxSelection(2);
    GlobalNav::instance()->setConnectionMode(true);
    QTest::qWait(1100);
    m_view->tap(at);
    QTRY_VERIFY(m_view->root()->isSelected(sphere->guid()));
    QVERIFY(joint);
}

void tst_Touch::aRayStretchesAPipeToTheOneAhead()
{
    // Two pipes cross the way three and four metres behind the end.
    const auto cross = [this](double x) {
        const auto pipe = m_project->addSection("cross", nullptr, nullptr, {{"OBJ_Size1", 400}});
        return m_project->addInspection(pipe, QString("LINESTRING ZM(%1 5600010 98 132,%1 5599990 98 0)").arg(x), 2);
    };
    const auto pipe = m_project->addSection("short", nullptr, nullptr, {{"OBJ_Size1", 300}});
    const auto inspection =
        m_project->addInspection(pipe, "LINESTRING ZM(400010 5600005 98 132,400020 5600005 98 0)", 2);
    cross(400023.0);
    cross(400024.0);
    QTRY_VERIFY(SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id()));
    auto* const stretched = SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id());
    m_view->frames(6);
    const double before = stretched->length();
    const double scale = before / 10.0; // of the scene to the stored metres
    stretched->connectToEnd();
    QTRY_VERIFY_WITH_TIMEOUT(stretched->length() > before, 3000);
    m_view->keep("stretched");
    // To the surface of one of them, and half a radius into it.
    const double length = stretched->length();
    const bool first = qAbs(length - (13.0 * scale - 0.2 + 0.1)) < 0.05;
    const bool last = qAbs(length - (14.0 * scale + 0.2 + 0.1)) < 0.45;
    QVERIFY2(first || last, qPrintable(QString::number(length)));
    qInfo("stretched to %g", length);
}

KX_SCENE_TEST_MAIN(tst_Touch)
#include "tst_Touch.moc"
