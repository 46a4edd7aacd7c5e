#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "host/modules/HostModules.h"
#include "host/modules/Screens.h"
#include "interaction/CameraController.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"
#include "view/FakeViewer.h"

#include <QFile>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <Qt3DRender/QCamera>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::FakeViewer;
using Kx::Test::TestProject;

namespace {

QStringList warnings;
QtMessageHandler previousHandler = nullptr;

void noteWarnings(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && (message.contains("qml") || message.contains("QML"))) {
        warnings << message;
    }
    previousHandler(type, context, message);
}

QQuickItem* itemNamed(QQuickItem* root, const QString& name)
{
    if (root->objectName() == name) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = itemNamed(child, name)) {
            return found;
        }
    }
    return nullptr;
}

bool isPipeGreen(const QColor& colour)
{
    return colour.green() > colour.red() + 25 && colour.green() > colour.blue() + 25;
}

} // namespace

/** The pages of the application around the scene, in a rendered window, with delivered events. */
class tst_MainView : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        previousHandler = qInstallMessageHandler(noteWarnings);
        m_engine = std::make_unique<QQmlApplicationEngine>();
        Torvik::Viewer::registerHostModules(*m_engine);
        m_engine->rootContext()->setContextProperty("viewer", &m_viewer);
        m_engine->load(QUrl("qrc:/viewer/MainWindow.qml"));
        QCOMPARE(m_engine->rootObjects().size(), 1);
        m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().first());
        QVERIFY(m_window);
        m_window->resize(1000, 700);
        m_scene = m_window->property("scene").value<QQuickItem*>();
        m_flowBeforeTie = flowStarted();
        GdalGeoProjector::instance()->initFromMap(51.0, 10.0, 0.0);
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        m_camera = m_scene->property("camera").value<Qt3DRender::QCamera*>();
        QVERIFY(m_camera);
        waitFrames(10);
    }

    void init()
    {
        chooseMode("moveButton");
        m_viewer.calls.clear();
    }

    void cleanupTestCase()
    {
        m_engine.reset();
        qInstallMessageHandler(previousHandler);
    }

    void loadsWithoutAWarning() { QCOMPARE(warnings, QStringList()); }

    void theFlowOfDataWaitsForTheTieToTheEarth()
    {
        QVERIFY(!m_flowBeforeTie);
        QVERIFY(flowStarted());
    }

    void theFlowOfDataStartsOnce()
    {
        TestProject project;
        project.addNode("A", "POINT ZM(400000 5600000 100 16)");
        project.activate();
        QTRY_VERIFY(SceneRoot::instance()->sceneHasNodesWithPosition());
        QSignalSpy loads(&SceneRoot::instance()->entitiesManager(), &EntitiesManager::loadingStarted);

        emit GdalGeoProjector::instance()->initializedFromMap();

        QCOMPARE(loads.count(), 0);
        project.close();
    }

    void anInspectionTakesTheCameraToItsStartNode()
    {
        TestProject project;
        const auto a = project.addNode("A", "POINT ZM(400000 5600000 100 16)");
        const auto b = project.addNode("B", "POINT ZM(400040 5600000 100 16)");
        const auto upstream = project.addInspection(project.addSection("A-B", a, b), {}, 2);
        project.activate();
        QTRY_VERIFY(SceneRoot::instance()->sceneHasNodesWithPosition());
        settle();
        start();
        QVERIFY(!m_scene->property("crawlerVisible").toBool());

        Torvik::AppState::instance().setActiveInspection(upstream);

        QVERIFY(m_camera->property("animationsRunning").toBool());
        settle();
        const QVector3D node = GdalGeoProjector::instance()->worldPosForWktString("POINT ZM(400040 5600000 100 16)");
        const QVector3D aboveNode(node.x(), 0, node.z());
        QVERIFY2((m_camera->viewCenter() - aboveNode).length() < 0.01F,
                 qPrintable(describe(m_camera->viewCenter(), aboveNode)));
        QVERIFY((m_camera->position() - aboveNode - QVector3D(0, 350, 0)).length() < 0.01F);
        QVERIFY(m_scene->property("crawlerVisible").toBool());
        auto* pages = qvariant_cast<Torvik::Viewer::PageStack*>(m_engine->rootContext()->contextProperty("pageStack"));
        pages->setCurrentKey("Screens::ProjectScreen");
        QVERIFY(!m_scene->property("crawlerVisible").toBool());
        pages->setCurrentKey("Screens::InspectionScreen");

        Torvik::AppState::instance().setActiveInspection({});
        QVERIFY(!m_camera->property("animationsRunning").toBool());
        QVERIFY((m_camera->viewCenter() - aboveNode).length() < 0.01F);
        project.close();
    }

    void aPipeIsPaintedWhereItLies()
    {
        TestProject project;
        const auto a = project.addNode("A", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
        const auto b = project.addNode("B", "POINT ZM(400040 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
        const auto s = project.addSection("A-B", a, b, {{"OBJ_Size1", 1000}});
        // Walked with the flow, a stored shape runs against it.
        project.addInspection(s, "LINESTRING ZM(400040 5600000 98 320,400000 5600000 98 0)");
        project.activate();
        QTRY_VERIFY(SceneRoot::instance()->sceneHasNodesWithPosition());
        settle();
        GdalGeoProjector* projector = GdalGeoProjector::instance();
        const QVector3D start = projector->worldPosForWktString("POINT ZM(400000 5600000 100 16)");
        const QVector3D end = projector->worldPosForWktString("POINT ZM(400040 5600000 100 16)");
        const QVector3D middle = (start + end) / 2.0F;
        pose({middle.x(), 1500, middle.z()}, middle, {0, 0, 1}, CameraController::View2dTop);

        // Beside the grid's lines, which cross above the pipe's middle.
        const QPoint pixel = pixelOf(middle + QVector3D(3, -2, 0.3F));
        waitFrames(10);
        keep("pipe");
        QTRY_VERIFY_WITH_TIMEOUT(isPipeGreen(QColor(grab().pixel(pixel))), 2000);
        // The street beside it is empty.
        QVERIFY(!isPipeGreen(QColor(grab().pixel(pixelOf(middle + QVector3D(0, -2, 10))))));
        keep("pipe");
        project.close();
    }

    void aDragMovesTheGroundWithTheFinger()
    {
        start();
        const QPoint from(120, 90);
        const QPoint to(220, 190);
        const QVector3D grabbed = groundAt(from);

        drag(from, to);

        const QVector3D under = groundAt(to);
        QVERIFY2((under - grabbed).length() < 0.05F, qPrintable(describe(under, grabbed)));
    }

    void zoomingBringsTheCameraNearer()
    {
        start();
        chooseMode("zoomButton");

        drag({100, 100}, {100, 120});

        // In whole steps of at most 20 pixels the distance falls by 2 % of what is left each pixel.
        const float distance = m_camera->viewVector().length();
        QVERIFY2(distance < 300.0F && distance > 150.0F, qPrintable(QString::number(static_cast<double>(distance))));
    }

    void rotatingInTopViewKeepsTheHeight()
    {
        start();
        chooseMode("rotateButton");

        drag({100, 100}, {200, 150});

        QVERIFY(std::abs(m_camera->position().y() - 350.0F) < 0.1F);
        QVERIFY(std::abs(m_camera->upVector().x()) > 0.2F);
    }

    void aShortTapReachesTheNavigation()
    {
        start();
        QSignalSpy taps(GlobalNav::instance(), &GlobalNav::shortTap);

        QTest::mouseClick(m_window, Qt::LeftButton, {}, inWindow({150, 150}));

        QTRY_COMPARE(taps.count(), 1);
    }

    void viewButtonsTurnTheCamera()
    {
        start();

        click("3dButton");
        QTRY_COMPARE(GlobalNav::instance()->viewType(), CameraController::View3d);
        settle();
        QVERIFY(m_camera->viewVector().z() > 10.0F);
        QVERIFY(itemNamed(m_window->contentItem(), "3dButton")->property("on").toBool());

        click("frontButton");
        QTRY_COMPARE(GlobalNav::instance()->viewType(), CameraController::View2dFront);
        settle();
        QVERIFY(std::abs(m_camera->viewVector().y()) < 0.5F);
        keep("front");

        click("topButton");
        QTRY_COMPARE(GlobalNav::instance()->viewType(), CameraController::View2dTop);
        settle();
        QVERIFY(std::abs(m_camera->viewVector().normalized().y() + 1.0F) < 0.001F);
    }

    void gesturesRestDuringAnAnimation()
    {
        start();
        click("3dButton");
        auto* controller = m_scene->property("cameraController").value<CameraController*>();
        QVERIFY(!controller->isEnabled());
        settle();
        QVERIFY(controller->isEnabled());
        click("topButton");
        settle();
    }

    void aRequestedPoseIsTakenAtOnceOrAnimated()
    {
        emit m_viewer.requestPose({10, 500, 20}, {10, 0, 20}, {0, 0, 1}, CameraController::View2dTop, false);
        QCOMPARE(m_camera->position(), QVector3D(10, 500, 20));

        emit m_viewer.requestPose({10, 300, -280}, {10, 0, 20}, {0, 1, 0}, CameraController::View3d, true);
        QCOMPARE(m_camera->position(), QVector3D(10, 500, 20));
        settle();
        QVERIFY((m_camera->position() - QVector3D(10, 300, -280)).length() < 0.01F);
        QCOMPARE(GlobalNav::instance()->viewType(), CameraController::View3d);
    }

    void whereTheApplicationWentIsNotTooFar()
    {
        start();
        const QQuickItem* const warning = itemNamed(m_window->contentItem(), "cameraDistanceInfoPanel");
        QVERIFY(warning);

        pose({0, 20000, 0}, {0, 0, 0}, {0, 0, 1}, CameraController::View2dTop);
        QVERIFY(!warning->isVisible());
        start();
        emit m_viewer.requestPose({0, 20000, 0}, {0, 0, 0}, {0, 0, 1}, CameraController::View2dTop, true);
        settle();
        QVERIFY(!warning->isVisible());

        // Of the user's own way there it warns.
        start();
        m_camera->setPosition({0, 12000, 0});
        QTRY_VERIFY(warning->isVisible());
        start();
        QVERIFY(!warning->isVisible());
    }

    void aTapOnALineGoesToTheObject()
    {
        QQuickItem* list = itemNamed(m_window->contentItem(), "objects");
        QVERIFY(list);
        const QPointF firstLine = list->mapToScene({40, 10});

        QTest::mouseClick(m_window, Qt::LeftButton, {}, firstLine.toPoint());
        QTRY_COMPARE(m_viewer.calls, QStringList({"goTo id-N1"}));

        click("tab1");
        QTest::mouseClick(m_window, Qt::LeftButton, {}, firstLine.toPoint());
        QTRY_COMPARE(m_viewer.calls, QStringList({"goTo id-N1", "goTo id-P1"}));
        click("tab0");
    }

    void searchingFiltersTheLists()
    {
        QQuickItem* search = itemNamed(m_window->contentItem(), "search");
        search->setProperty("text", "N4");
        QTRY_COMPARE(m_viewer.calls, QStringList({"setFilter N4"}));
        search->setProperty("text", "");
    }

    void fitAsksTheApplication()
    {
        click("fitButton");
        QCOMPARE(m_viewer.calls, QStringList({"fit"}));
    }

    void buttonsAreAsHighAsAFingerNeeds()
    {
        for (const char* name : {"topButton", "openButton", "fitButton", "tab0", "search", "listsButton"}) {
            const QQuickItem* item = itemNamed(m_window->contentItem(), name);
            QVERIFY(item);
            const double heightMm = item->height() / (m_window->screen()->physicalDotsPerInch() / 25.4);
            QVERIFY2(heightMm >= 9.0, qPrintable(QString("%1: %2 mm").arg(name).arg(heightMm)));
        }
    }

    void errorsAndProgressAreShownAndGo()
    {
        m_viewer.errorText = "The project cannot be opened.\n/data/mill/project.db is newer than this program.\n"
                             "Update the program, or ask for an older copy.";
        m_viewer.busy = true;
        m_viewer.progress = 0.4;
        m_viewer.progressText = "Building the scene: 400 of 1000";
        m_viewer.currentId = "id-N2";
        emit m_viewer.changed();
        QTRY_VERIFY(itemNamed(m_window->contentItem(), "errorBanner")->isVisible());
        QVERIFY(itemNamed(m_window->contentItem(), "progress")->isVisible());
        waitFrames(5);
        keep("busy");

        click("dismissButton");
        QCOMPARE(m_viewer.calls, QStringList({"dismissError"}));
        m_viewer.errorText.clear();
        m_viewer.busy = false;
        emit m_viewer.changed();
        QTRY_VERIFY(!itemNamed(m_window->contentItem(), "errorBanner")->isVisible());
        QVERIFY(!itemNamed(m_window->contentItem(), "progress")->isVisible());
    }

    void aScreenshotHasAWhiteGround()
    {
        start();
        QObject* window3d = m_window->property("window3d").value<QObject*>();
        const QPoint corner = inWindow({m_scene->width() - 3, m_scene->height() - 3});
        QTRY_COMPARE(QColor(grab().pixel(corner)), QColor(194, 194, 194));

        window3d->setProperty("screenshotPending", true);
        QTRY_COMPARE(QColor(grab().pixel(corner)), QColor(Qt::white));
        window3d->setProperty("screenshotPending", false);
        QTRY_COMPARE(QColor(grab().pixel(corner)), QColor(194, 194, 194));
    }

    void theGridCanBeTakenOutOfTheView()
    {
        start();
        SceneRoot* root = SceneRoot::instance();
        pose({0, 400, 0}, {0, 0, 0}, {0, 0, 1}, CameraController::View2dTop);
        QTRY_VERIFY(root->gridVisible());

        click("viewMenuButton");
        click("gridButton");
        QTRY_VERIFY(!root->gridVisible());
        QVERIFY(!itemNamed(m_window->contentItem(), "gridButton")->property("on").toBool());

        click("gridButton");
        QTRY_VERIFY(root->gridVisible());
        click("viewMenuButton");
    }

    void namesOfManholesGetAndLoseTheirInformation()
    {
        start();
        auto* const nav = GlobalNav::instance();
        nav->setManholeFullInfoVisible(false);

        nav->setLabelsVisible(true);
        click("viewMenuButton");
        click("manholeInfoButton");
        QTRY_VERIFY(nav->manholeFullInfoVisible());
        click("manholeInfoButton");
        QTRY_VERIFY(!nav->manholeFullInfoVisible());
        click("viewMenuButton");
    }

    void aButtonPutsAllLabelsBack()
    {
        TestProject project;
        const QString path = project.path() + "/labelPosition.json";
        {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(R"({"a": {"x": 0.004, "y": -0.006, "z": 0}})");
        }
        start();
        GlobalNav::instance()->setLabelsVisible(true);
        project.activate();

        click("viewMenuButton");
        click("labelsBackButton");

        QTRY_VERIFY(!QFile::exists(path));
    }

    void closingTheProjectResetsTheCamera()
    {
        TestProject project;
        project.activate();
        pose({5, 400, -60}, {5, 0, 6}, {0, 1, 1}, CameraController::View3d);

        project.close();

        QTRY_VERIFY((m_camera->position() - QVector3D(0, 247.487F, 0)).length() < 0.01F);
        QCOMPARE(GlobalNav::instance()->viewType(), CameraController::View2dTop);
    }

    void anotherProjectKeepsTheCamera()
    {
        TestProject first;
        first.activate();
        pose({5, 400, -60}, {5, 0, 6}, {0, 1, 1}, CameraController::View3d);

        TestProject second;
        second.activate();

        QVERIFY(!m_camera->property("animationsRunning").toBool());
        QCOMPARE(m_camera->position(), QVector3D(5, 400, -60));
        QCOMPARE(GlobalNav::instance()->viewType(), CameraController::View3d);
        second.close();
        first.close();
    }

    void closingDuringAMoveResetsTheCamera()
    {
        TestProject project;
        project.activate();
        start();
        click("3dButton");
        QVERIFY(m_camera->property("animationsRunning").toBool());

        project.close();

        QTRY_VERIFY(!m_camera->property("animationsRunning").toBool());
        QVERIFY((m_camera->position() - QVector3D(0, 247.487F, 0)).length() < 0.01F);
        QCOMPARE(GlobalNav::instance()->viewType(), CameraController::View2dTop);
    }

    void theLoneSceneHidesListsAndTools()
    {
        m_viewer.sceneOnly = true;
        emit m_viewer.changed();
        QTRY_VERIFY(!itemNamed(m_window->contentItem(), "lists")->isVisible());
        QTRY_COMPARE(m_scene->width(), m_window->contentItem()->width());
        m_viewer.sceneOnly = false;
        emit m_viewer.changed();
        QTRY_VERIFY(itemNamed(m_window->contentItem(), "lists")->isVisible());
    }

    void nothingWarnedOnTheWay() { QCOMPARE(warnings, QStringList()); }

private:
    bool flowStarted() const
    {
        return m_scene->property("sceneRoot").value<QObject*>()->property("qmlOnCompletedSignalSent").toBool();
    }

    void waitFrames(int count)
    {
        // Told by the render thread: counted here, where the counter lives.
        const QObject here;
        int frames = 0;
        QObject::connect(
            m_window, &QQuickWindow::frameSwapped, &here, [&frames] { ++frames; }, Qt::QueuedConnection);
        QTRY_VERIFY_WITH_TIMEOUT(frames >= count, 10000);
    }

    QImage grab()
    {
        waitFrames(3);
        return m_window->grabWindow();
    }

    /** Leaves the picture in the folder that KX_KEEP_PICTURES names. */
    void keep(const QString& name)
    {
        const QString folder = qEnvironmentVariable("KX_KEEP_PICTURES");
        if (!folder.isEmpty()) {
            QVERIFY(grab().save(folder + "/" + name + ".png"));
        }
    }

    void pose(QVector3D position, QVector3D center, QVector3D up, CameraController::ViewTypes view)
    {
        settle();
        emit m_viewer.requestPose(position, center, up, view, false);
        QVERIFY((m_camera->position() - position).length() < 0.01F);
        waitFrames(4);
    }

    void start() { pose({0, 350, 0}, {0, 0, 0}, {0, 0, 1}, CameraController::View2dTop); }

    void settle() { QTRY_VERIFY(!m_camera->property("animationsRunning").toBool()); }

    void click(const QString& name)
    {
        QQuickItem* item = itemNamed(m_window->contentItem(), name);
        QVERIFY2(item, qPrintable(name));
        const QPointF center = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(m_window, Qt::LeftButton, {}, center.toPoint());
        QCoreApplication::processEvents();
    }

    /** What one finger does. Where the bar is short the modes stand in a menu. */
    void chooseMode(const QString& name)
    {
        if (!itemNamed(m_window->contentItem(), name)) {
            click("modeMenuButton");
        }
        click(name);
    }

    QPoint inWindow(QPointF inScene) const { return m_scene->mapToScene(inScene).toPoint(); }

    void drag(QPoint from, QPoint to)
    {
        QTest::mousePress(m_window, Qt::LeftButton, {}, inWindow(from));
        waitFrames(3);
        for (int step = 1; step <= 5; ++step) {
            QTest::mouseMove(m_window, inWindow(from + (to - from) * step / 5));
            waitFrames(2);
        }
        waitFrames(3);
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, inWindow(to));
        waitFrames(3);
    }

    QVector3D groundAt(QPoint pixel) const
    {
        return Utils3d::pointScreenToWorldGround(static_cast<float>(pixel.x()), static_cast<float>(pixel.y()), m_camera,
                                                 m_scene->width(), m_scene->height());
    }

    QPoint pixelOf(QVector3D point) const
    {
        return inWindow(Utils3d::pointWorldToScreen(m_camera, point, static_cast<float>(m_scene->width()),
                                                    static_cast<float>(m_scene->height())));
    }

    static QString describe(QVector3D a, QVector3D b)
    {
        QString text;
        QDebug(&text) << a << b;
        return text;
    }

    FakeViewer m_viewer;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
    QQuickItem* m_scene = nullptr;
    bool m_flowBeforeTie = true;
    Qt3DRender::QCamera* m_camera = nullptr;
};

KX_SCENE_TEST_MAIN(tst_MainView)
#include "tst_MainView.moc"
