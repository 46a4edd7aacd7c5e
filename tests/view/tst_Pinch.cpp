#include "interaction/CameraController.h"
#include "interaction/TouchControl.h"
#include "network/Node.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "view/FakeViewer.h"
#include "view/ViewerScreen.h"

#include "common/SceneTest.h"
#include "common/TestProject.h"

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::FakeViewer;
using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;

/** Two fingers on the scene, and the buttons that zoom, in the application's window. */
class tst_Pinch : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void spreadingFingersKeepWhatLiesUnderThem();
    void turningFingersKeepWhatLiesUnderThem();
    void movingFingersTakeTheGroundAlong();
    void fromTheFrontNothingTurns();
    void theDistanceStaysWithinItsLimits();
    void aDragOfTheCameraEndsWithTheSecondFinger();
    void aDragOfAnObjectEndsWithTheSecondFinger();
    void theZoomButtonZoomsByBeingDragged();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    void look(QVector3D position, QVector3D up, CameraController::ViewTypes view);
    void press(QPointF first, QPointF second);
    void move(QPointF first, QPointF second);
    void release(QPointF first, QPointF second);
    /** From two places to two others, in steps that a hand makes. */
    void pinch(QPointF a, QPointF b, QPointF toA, QPointF toB);
    float distance() const { return m_screen->camera()->viewVector().length(); }

    FakeViewer m_viewer;
    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<ViewerScreen> m_screen;
    QTouchDevice* m_device = nullptr;
};

void tst_Pinch::initTestCase()
{
    m_warnings = std::make_unique<QmlWarnings>();
    m_device = QTest::createTouchDevice();
    m_screen = std::make_unique<ViewerScreen>(m_viewer);
}

void tst_Pinch::init()
{
    look({0, 350, 0}, {0, 0, 1}, CameraController::View2dTop);
}

void tst_Pinch::cleanupTestCase()
{
    m_screen.reset();
    m_warnings.reset();
}

void tst_Pinch::look(QVector3D position, QVector3D up, CameraController::ViewTypes view)
{
    emit m_viewer.requestPose(position, {0, 0, 0}, up, view, false);
    m_screen->waitFrames(4);
}

void tst_Pinch::press(QPointF first, QPointF second)
{
    QTest::touchEvent(m_screen->window(), m_device).press(0, m_screen->inWindow(first));
    m_screen->waitFrames(3);
    // A stationary point of a sequence of its own would lie at the window's corner.
    QTest::touchEvent(m_screen->window(), m_device)
        .move(0, m_screen->inWindow(first))
        .press(1, m_screen->inWindow(second));
    m_screen->waitFrames(2);
}

void tst_Pinch::move(QPointF first, QPointF second)
{
    QTest::touchEvent(m_screen->window(), m_device)
        .move(0, m_screen->inWindow(first))
        .move(1, m_screen->inWindow(second));
    m_screen->waitFrames(1);
}

void tst_Pinch::release(QPointF first, QPointF second)
{
    QTest::touchEvent(m_screen->window(), m_device)
        .release(0, m_screen->inWindow(first))
        .release(1, m_screen->inWindow(second));
    m_screen->waitFrames(3);
}

void tst_Pinch::pinch(QPointF a, QPointF b, QPointF toA, QPointF toB)
{
    press(a, b);
    constexpr int steps = 12;
    for (int step = 1; step <= steps; ++step) {
        move(a + (toA - a) * step / steps, b + (toB - b) * step / steps);
    }
    release(toA, toB);
}

void tst_Pinch::spreadingFingersKeepWhatLiesUnderThem()
{
    const QPointF a(250, 250);
    const QPointF b(350, 250);
    // The first steps go before the fingers count as two.
    press(a, b);
    move({230, 250}, {370, 250});
    move({220, 250}, {380, 250});
    const QVector3D middle = m_screen->groundAt((a + b) / 2);

    for (int step = 1; step <= 7; ++step) {
        move({220.0 - step * 10, 250}, {380.0 + step * 10, 250});
    }
    release({150, 250}, {450, 250});

    QVERIFY2(distance() < 200.0F && distance() > 100.0F, qPrintable(QString::number(double(distance()))));
    QVERIFY((m_screen->groundAt((a + b) / 2) - middle).length() < 0.05F);
    QCOMPARE(m_screen->camera()->upVector(), QVector3D(0, 0, 1));
}

void tst_Pinch::turningFingersKeepWhatLiesUnderThem()
{
    const QPointF middle(300, 250);
    const auto around = [&](double degrees) {
        const double radians = qDegreesToRadians(degrees);
        return QPointF(std::cos(radians), std::sin(radians)) * 100;
    };
    press(middle - around(0), middle + around(0));
    for (int degrees = 5; degrees <= 20; degrees += 5) {
        move(middle - around(degrees), middle + around(degrees));
    }
    const QPointF finger = middle + around(20);
    const QVector3D under = m_screen->groundAt(finger);

    for (int degrees = 25; degrees <= 90; degrees += 5) {
        move(middle - around(degrees), middle + around(degrees));
    }
    const QPointF nowAt = middle + around(90);
    release(middle - around(90), nowAt);

    QVERIFY2((m_screen->groundAt(nowAt) - under).length() < 0.2F,
             qPrintable(QString::number(double((m_screen->groundAt(nowAt) - under).length()))));
    QVERIFY(std::abs(distance() - 350.0F) < 10.0F);
}

void tst_Pinch::movingFingersTakeTheGroundAlong()
{
    const QPointF a(250, 250);
    const QPointF b(350, 250);
    press(a, b);
    move(a - QPointF(30, 0), b + QPointF(30, 0));
    move(a - QPointF(40, 0), b + QPointF(40, 0));
    const QVector3D under = m_screen->groundAt((a + b) / 2);
    const QPointF way(60, 45);

    move(a - QPointF(40, 0) + way, b + QPointF(40, 0) + way);

    QVERIFY((m_screen->groundAt((a + b) / 2 + way) - under).length() < 0.05F);
    release(a - QPointF(40, 0) + way, b + QPointF(40, 0) + way);
}

void tst_Pinch::fromTheFrontNothingTurns()
{
    look({0, 0, -350}, {0, 1, 0}, CameraController::View2dFront);

    pinch({250, 250}, {350, 250}, {300, 150}, {300, 350});

    const QVector3D direction = m_screen->camera()->viewVector().normalized();
    QVERIFY((direction - QVector3D(0, 0, 1)).length() < 0.001F);
    QVERIFY(distance() < 345.0F);
}

void tst_Pinch::theDistanceStaysWithinItsLimits()
{
    look({0, 6, 0}, {0, 0, 1}, CameraController::View2dTop);

    pinch({280, 250}, {320, 250}, {30, 250}, {570, 250});

    QVERIFY2(std::abs(distance() - 5.0F) < 0.01F, qPrintable(QString::number(double(distance()))));
}

void tst_Pinch::aDragOfTheCameraEndsWithTheSecondFinger()
{
    pinch({250, 250}, {350, 250}, {150, 250}, {450, 250});
    const QVector3D after = m_screen->camera()->position();

    // Without a finger on it the scene rests, wherever the mouse goes.
    QTest::mouseMove(m_screen->window(), m_screen->inWindow({100, 100}));
    m_screen->waitFrames(4);
    QTest::mouseMove(m_screen->window(), m_screen->inWindow({400, 300}));
    m_screen->waitFrames(4);

    QCOMPARE(m_screen->camera()->position(), after);
}

void tst_Pinch::aDragOfAnObjectEndsWithTheSecondFinger()
{
    TestProject project;
    project.addNode("A", "POINT ZM(400000 5600000 0 16)", {{"OBJ_DepthToInvert", 2.0}});
    project.activate();
    QTRY_VERIFY(SceneRoot::instance()->sceneHasNodesWithPosition());
    m_screen->settle();
    look({0, 200, 0}, {0, 0, 1}, CameraController::View2dTop);
    Node* const node = SceneEntities::instance().getNodes().values().first();
    SceneRoot::instance()->selectOneByDomainGuid(node->guid());
    node->allowTouchControl(true);
    auto* const controller = m_screen->scene()->property("cameraController").value<CameraController*>();
    const QPointF at = m_screen->pixelOf(node->position());

    press(at, at + QPointF(100, 0));
    QVERIFY(!controller->isEnabled());
    for (int step = 1; step <= 8; ++step) {
        move(at - QPointF(step * 8, 0), at + QPointF(100 + step * 8, 0));
    }
    QVERIFY(controller->isEnabled());
    const QVector3D place = node->position();
    move(at - QPointF(80, 0), at + QPointF(180, 0));
    m_screen->waitFrames(3);

    QCOMPARE(node->position(), place);
    release(at - QPointF(80, 0), at + QPointF(180, 0));
    QTest::mouseMove(m_screen->window(), m_screen->inWindow({100, 100}));
    m_screen->waitFrames(4);
    QCOMPARE(node->position(), place);
    QVERIFY(distance() < 190.0F);
    project.close();
}

void tst_Pinch::theZoomButtonZoomsByBeingDragged()
{
    const QQuickItem* const button = m_screen->item("zoomInButton");
    const QPoint at = button->mapToScene({32, 32}).toPoint();
    QVERIFY(button->mapToItem(m_screen->scene(), {64, 0}).x() > m_screen->scene()->width() - 20);

    QTest::mousePress(m_screen->window(), Qt::LeftButton, {}, at);
    QTest::mouseMove(m_screen->window(), at - QPoint(20, 0));
    QTest::mouseMove(m_screen->window(), at - QPoint(35, 0));
    m_screen->keep("zoom-button");
    QTest::mouseRelease(m_screen->window(), Qt::LeftButton, {}, at - QPoint(35, 0));

    QVERIFY(std::abs(distance() - 350.0F * std::pow(0.98F, 35.0F)) < 0.1F);
    QCOMPARE(m_screen->camera()->viewCenter(), QVector3D(0, 0, 0));
}

KX_SCENE_TEST_MAIN(tst_Pinch)
#include "tst_Pinch.moc"
