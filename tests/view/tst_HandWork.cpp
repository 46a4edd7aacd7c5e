#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "domain/SectionAdapterBase.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "host/app/ViewerController.h"
#include "interaction/TouchControl.h"
#include "network/Node.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "view/ViewerScreen.h"

#include <QScreen>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::Viewer::ViewerController;

/** Working on the network by hand: the bar beside the scene, in the application's window, on a real project. */
class tst_HandWork : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void fitLeavesNothingUnderTheControls_data();
    void fitLeavesNothingUnderTheControls();
    void withoutASelectionNothingCanBeDone();
    void aTapOnAManholeTellsItAndMarksItsLine();
    void aTapOnAPipeMarksPipeAndInspection();
    void aLineOfTheListsSelectsInTheScene();
    void whatCannotBeStoredIsSaidUntilItIs();
    void withoutLeaveAFingerMovesNothing();
    void withMoveTheManholeFollowsTheFingerAndTheCameraStays();
    void aTapOnTheGroundTakesTheLeaveBack();
    void turnPutsTheRingAround();
    void arrowsFitTheView();
    void aPipeThatMayBeMovedHasArrows();
    void heightIsFreedAndLocked();
    void aConnectionIsShownAndTakenBack();
    void whatEndsAConnectionEndsItEverywhere_data();
    void whatEndsAConnectionEndsItEverywhere();
    void anAppliedConnectionStays();
    void aConnectionBeginsWithAPipe();
    void buttonsAreAsHighAsAFingerNeeds();
    void aTapOnAButtonThatIsOnLeavesItSo();
    void aNarrowWindowHasRoomForAllButtons();
    void closingTheProjectEndsAllOfIt();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    Node* node(const char* key) const;
    Section* pipe(const char* key) const;
    QPointF pixelOf(const char* key) const { return m_screen->pixelOf(node(key)->position()); }
    QPointF middleOf(const char* key) const;
    void select(const char* key);
    /** The pipe's course in the database. */
    QString storedCourse() const
    {
        return m_project->stored("SECINSP", "INS_PK", pipe("A-B")->guid(), "INS_Shape_WKT").toString();
    }
    void startConnecting();

    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<ViewerController> m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

void tst_HandWork::initTestCase()
{
    m_warnings = std::make_unique<QmlWarnings>();
    m_project = std::make_unique<TestProject>();
    const QVariantMap manhole {{"OBJ_DepthToInvert", 2.0}, {"OBJ_Type", "MH"}};
    const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", manhole);
    const auto b = m_project->addNode("B", "POINT ZM(400030 5600000 100 16)", manhole);
    m_project->addNode("C", "POINT ZM(400015 5600020 100 16)", manhole);
    const auto s = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 1000}});
    m_project->addInspection(s, "LINESTRING ZM(400030 5600000 98 320,400000 5600000 98 0)");
    m_project->close();
    m_viewer = std::make_unique<ViewerController>();
    m_screen = std::make_unique<ViewerScreen>(*m_viewer, QSize(1000, 700));
    QSignalSpy opened(m_viewer.get(), &ViewerController::opened);
    m_viewer->openFolder(m_project->path());
    QTRY_COMPARE(opened.count(), 1);
    m_screen->settle();
    m_screen->waitFrames(10);
}

void tst_HandWork::init()
{
    if (m_screen->visible("cancelConnectButton")) {
        m_screen->click("cancelConnectButton");
    }
    SceneRoot::instance()->deselectAll();
    // The next tap is none that belongs to a selection.
    QTest::qWait(400);
    m_viewer->fit();
    m_screen->settle();
}

void tst_HandWork::cleanupTestCase()
{
    m_screen.reset();
    m_viewer.reset();
    m_warnings.reset();
}

Node* tst_HandWork::node(const char* key) const
{
    for (Node* node : SceneEntities::instance().getNodes()) {
        if (node && node->name() == key) {
            return node;
        }
    }
    qFatal("There is no node %s", key);
}

Section* tst_HandWork::pipe(const char* key) const
{
    for (Section* section : SceneEntities::instance().getPipeEntities().getPipeEntities()) {
        if (section->name() == key) {
            return section;
        }
    }
    qFatal("There is no pipe %s", key);
}

QPointF tst_HandWork::middleOf(const char* key) const
{
    const QVector<QVector3D> course = pipe(key)->pipe()->getShapePoints();
    return m_screen->pixelOf((course.first() + course.last()) / 2);
}

void tst_HandWork::select(const char* key)
{
    m_screen->tap(pixelOf(key));
    QTRY_COMPARE(m_screen->text("selectedName"), QString(key));
}

void tst_HandWork::fitLeavesNothingUnderTheControls_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("view");
    for (const QSize& size : {QSize(1000, 700), QSize(1280, 800), QSize(800, 600), QSize(480, 800)}) {
        for (const char* view : {"Top", "3d", "Front"})
            QTest::addRow("%d x %d %s", size.width(), size.height(), view) << size << QString(view);
    }
}

void tst_HandWork::fitLeavesNothingUnderTheControls()
{
    QFETCH(QSize, size);
    QFETCH(QString, view);
    m_screen->window()->resize(size);
    QTRY_COMPARE(m_screen->window()->contentItem()->size(), QSizeF(size));
    m_screen->waitFrames(3);
    QMetaObject::invokeMethod(m_screen->scene(), qPrintable(view == "3d" ? "switchTo3d" : "switchTo2d" + view));
    m_screen->settle();

    m_viewer->fit();
    m_screen->settle();
    m_screen->waitFrames(3);
    m_screen->keep(QString("fit-%1-%2").arg(size.width()).arg(view));

    const QRectF scene(0, 0, m_screen->scene()->width(), m_screen->scene()->height());
    for (const char* key : {"A", "B", "C"}) {
        const QPointF pixel = pixelOf(key);
        // With its name above it.
        const QRectF place(pixel - QPointF(10, 51), QSizeF(20, 54));
        QVERIFY2(scene.contains(place), key);
        for (const char* name : {"compassButton", "floorsInputScreenButton", "floorButton0", "floorButton1",
                                 "floorButton2", "floorButton3", "zoomInButton", "zoomOutButton", "view3dMenu"}) {
            const QQuickItem* const control = m_screen->item(name);
            const QRectF covered =
                control->mapRectToItem(m_screen->scene(), {0, 0, control->width(), control->height()});
            QVERIFY2(!control->isVisible() || !covered.intersects(place), qPrintable(QString(key) + " " + name));
        }
    }
    if (size == QSize(480, 800)) {
        m_screen->window()->resize(1000, 700);
        QMetaObject::invokeMethod(m_screen->scene(), "switchTo2dTop");
        m_screen->settle();
        QTRY_COMPARE(m_screen->window()->contentItem()->width(), 1000.0);
        m_screen->waitFrames(3);
    }
}

void tst_HandWork::withoutASelectionNothingCanBeDone()
{
    QTRY_COMPARE(m_screen->text("selectedName"), QString("Nothing selected"));
    for (const char* name : {"moveObjectButton", "turnObjectButton", "arrowsButton", "heightButton"}) {
        QVERIFY2(!m_screen->enabled(name), name);
    }
    QVERIFY(m_screen->enabled("connectButton"));
    QVERIFY(!m_screen->visible("applyConnectButton"));
    m_screen->keep("nothing-selected");
}

void tst_HandWork::aTapOnAManholeTellsItAndMarksItsLine()
{
    m_screen->tap(pixelOf("C"));

    QTRY_COMPARE(m_screen->text("selectedName"), QString("C"));
    QCOMPARE(m_screen->text("selectedKind"), QString("Manhole"));
    QCOMPARE(m_viewer->currentIds(), QStringList({node("C")->guid()}));
    QCOMPARE(m_viewer->currentId(), node("C")->guid());
    QVERIFY(m_screen->enabled("moveObjectButton"));
    QVERIFY(!m_screen->enabled("heightButton"));
    m_screen->keep("manhole-selected");
}

void tst_HandWork::aTapOnAPipeMarksPipeAndInspection()
{
    m_screen->tap(middleOf("A-B"));

    QTRY_COMPARE(m_screen->text("selectedName"), QString("A-B"));
    QCOMPARE(m_screen->text("selectedKind"), QString("Pipe"));
    Section* const section = pipe("A-B");
    QCOMPARE(m_viewer->currentIds(), QStringList({section->guid(), section->getProps()->sectionId()}));
}

void tst_HandWork::aLineOfTheListsSelectsInTheScene()
{
    const QString pipeId = pipe("A-B")->getProps()->sectionId();

    m_viewer->goTo(pipeId);

    QCOMPARE(SceneRoot::instance()->selectedRenderable(), pipe("A-B"));
    QVERIFY(m_viewer->currentIds().contains(pipeId));
    QTRY_COMPARE(m_screen->text("selectedName"), QString("A-B"));
    m_viewer->goTo(node("B")->guid());
    QCOMPARE(SceneRoot::instance()->selectedRenderable(), node("B"));
    QCOMPARE(m_viewer->currentIds(), QStringList({node("B")->guid()}));
    m_screen->settle();
}

void tst_HandWork::whatCannotBeStoredIsSaidUntilItIs()
{
    constexpr int longEnoughMs = 15000;
    Torvik::Database::StoreStatus status;
    const auto other =
        Torvik::Database::SqlConnection::open(Torvik::Database::ProjectStore::databaseFile(m_project->path()),
                                              Torvik::Database::SqlConnection::ReadWrite, status);
    auto lock = std::make_unique<Torvik::Database::SqlTransaction>(*other);
    QVERIFY(lock->begun());
    const auto project = Torvik::AppState::instance().getActiveProject();

    project->updateValue("PRJ_Name", "Renamed");
    Torvik::Database::CDatabaseLibrary::dbAccessManager()->updateObject(project, 5000);
    QTRY_VERIFY_WITH_TIMEOUT(m_screen->visible("errorBanner"), longEnoughMs);
    QVERIFY2(m_viewer->errorText().contains("locked by another program"), qPrintable(m_viewer->errorText()));
    lock.reset();

    QTRY_VERIFY_WITH_TIMEOUT(!m_screen->visible("errorBanner"), longEnoughMs);
    QCOMPARE(m_viewer->errorText(), QString());
}

void tst_HandWork::withoutLeaveAFingerMovesNothing()
{
    const QVector3D before = node("C")->position();

    m_screen->drag(pixelOf("C"), pixelOf("C") + QPointF(60, 40));

    QCOMPARE(node("C")->position(), before);
}

void tst_HandWork::withMoveTheManholeFollowsTheFingerAndTheCameraStays()
{
    select("C");
    m_screen->click("moveObjectButton");
    QVERIFY(m_screen->checked("moveObjectButton"));
    QVERIFY(!GlobalNav::instance()->objectsMovingDisabled());
    const QVector3D camera = m_screen->camera()->position();
    const QPointF from = pixelOf("C");

    m_screen->drag(from, from + QPointF(60, 40));

    QVERIFY((pixelOf("C") - from - QPointF(60, 40)).manhattanLength() < 4);
    QCOMPARE(m_screen->camera()->position(), camera);
    m_screen->keep("manhole-moved");
    m_screen->click("moveObjectButton");
    QVERIFY(!m_screen->checked("moveObjectButton"));
    QVERIFY(!node("C")->isTouchControlAllowed());
}

void tst_HandWork::aTapOnTheGroundTakesTheLeaveBack()
{
    select("C");
    m_screen->click("arrowsButton");
    QVERIFY(node("C")->isTouchControlAllowed());
    QTest::qWait(400);

    m_screen->tap({20, 120});

    QTRY_COMPARE(m_screen->text("selectedName"), QString("Nothing selected"));
    QVERIFY(!node("C")->isTouchControlAllowed());
    QVERIFY(!node("C")->touchControl()->axisArrowVisible());
    QVERIFY(GlobalNav::instance()->objectsMovingDisabled());
    QVERIFY(!m_screen->enabled("moveObjectButton"));
    QCOMPARE(m_viewer->currentIds(), QStringList());
}

void tst_HandWork::turnPutsTheRingAround()
{
    m_viewer->goTo(node("C")->guid());
    m_screen->settle();
    auto* const control = qobject_cast<TouchControl*>(node("C")->touchControl());

    m_screen->click("turnObjectButton");
    QVERIFY(m_screen->checked("turnObjectButton"));
    QVERIFY(!m_screen->checked("moveObjectButton"));
    QCOMPARE(control->mode(), TouchControlBase::Rotation);
    m_screen->keep("ring");

    m_screen->click("moveObjectButton");
    QVERIFY(m_screen->checked("moveObjectButton"));
    QCOMPARE(control->mode(), TouchControlBase::Translation);
}

void tst_HandWork::arrowsFitTheView()
{
    select("C");
    auto* const control = qobject_cast<TouchControl*>(node("C")->touchControl());

    m_screen->click("arrowsButton");
    QVERIFY(m_screen->checked("arrowsButton"));
    QCOMPARE(control->axisArrows().size(), 2);
    m_screen->keep("arrows");

    m_screen->click("frontButton");
    QTRY_COMPARE(control->axisArrowMode(), QString("front"));
    QCOMPARE(control->axisArrows().size(), 1);
    m_screen->settle();
    m_screen->click("topButton");
    QTRY_COMPARE(control->axisArrows().size(), 2);
    m_screen->settle();

    m_screen->click("arrowsButton");
    QVERIFY(control->axisArrows().isEmpty());
}

void tst_HandWork::aPipeThatMayBeMovedHasArrows()
{
    m_viewer->goTo(pipe("A-B")->guid());
    m_screen->settle();

    m_screen->click("moveObjectButton");

    QVERIFY(m_screen->checked("arrowsButton"));
    QVERIFY(qobject_cast<TouchControl*>(pipe("A-B")->touchControl())->objectDragAllowed());
}

void tst_HandWork::heightIsFreedAndLocked()
{
    select("C");
    m_screen->click("moveObjectButton");
    QVERIFY(m_screen->enabled("heightButton"));
    GlobalNav::instance()->setAxisY(false);
    QTRY_COMPARE(m_screen->text("heightButton"), QString("Height locked"));

    m_screen->click("heightButton");
    QCOMPARE(GlobalNav::instance()->axisLock(), QVector3D(1, 1, 1));
    QCOMPARE(m_screen->text("heightButton"), QString("Height free"));

    m_screen->click("heightButton");
    QCOMPARE(GlobalNav::instance()->axisLock(), QVector3D(1, 0, 1));
}

void tst_HandWork::startConnecting()
{
    m_screen->click("connectButton");
    QVERIFY(GlobalNav::instance()->connectionMode());
    QCOMPARE(SceneRoot::instance()->maxSelection(), 2);
    m_screen->tap(middleOf("A-B"));
    QTRY_COMPARE(SceneRoot::instance()->selectionsCount(), 1);
    m_screen->tap(pixelOf("C"));
    QTRY_COMPARE(SceneRoot::instance()->selectionsCount(), 2);
    QCOMPARE(m_screen->text("selectedName"), QString("A-B \u2192 C"));
    m_screen->keep("connecting");
}

void tst_HandWork::aConnectionIsShownAndTakenBack()
{
    const QVector<QVector3D> before = pipe("A-B")->pipe()->getShapePoints();
    startConnecting();

    m_screen->click("connectButton");
    QVERIFY(m_screen->visible("applyConnectButton"));
    QVERIFY(!m_screen->visible("connectButton"));
    QVERIFY(!m_screen->visible("moveObjectButton"));
    QVERIFY(!GlobalNav::instance()->connectionMode());
    QVERIFY((pipe("A-B")->pipe()->getShapePoints().last() - before.last()).length() > 1);
    m_screen->keep("connection-shown");

    m_screen->click("cancelConnectButton");
    QVERIFY(m_screen->visible("connectButton"));
    const QVector<QVector3D> after = pipe("A-B")->pipe()->getShapePoints();
    QVERIFY((after.last() - before.last()).length() < 0.02F);
}

void tst_HandWork::anAppliedConnectionStays()
{
    const QVector3D before = pipe("A-B")->pipe()->getShapePoints().last();
    const QString course = storedCourse();
    startConnecting();
    m_screen->click("connectButton");

    m_screen->click("applyConnectButton");

    const QVector3D after = pipe("A-B")->pipe()->getShapePoints().last();
    QVERIFY((after - before).length() > 1);
    QVERIFY(!m_screen->visible("applyConnectButton"));
    QTRY_COMPARE(m_screen->text("selectedName"), QString("Nothing selected"));
    QTRY_VERIFY_WITH_TIMEOUT(storedCourse() != course, 5000);
}

void tst_HandWork::whatEndsAConnectionEndsItEverywhere_data()
{
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("end");
    for (const char* begin : {"connectButton", "pipeConnectButton"}) {
        for (const char* end : {"Escape", "split view", "cancelConnectButton", "pipeConnectCancel"})
            QTest::addRow("%s, %s", begin, end) << QString(begin) << QString(end);
    }
}

void tst_HandWork::whatEndsAConnectionEndsItEverywhere()
{
    QFETCH(QString, begin);
    QFETCH(QString, end);
    const QVector<QVector3D> before = pipe("A-B")->pipe()->getShapePoints();
    startConnecting();
    m_screen->click(begin);
    QTRY_VERIFY(m_screen->visible("applyConnectButton"));
    QVERIFY(m_screen->visible("pipeConnectApply"));
    QCOMPARE(m_screen->text("selectedName"), QString("Connect it like this?"));
    QVERIFY((pipe("A-B")->pipe()->getShapePoints().last() - before.last()).length() > 1);

    auto* const view = m_screen->window()->property("window3d").value<QQuickItem*>();
    const auto toggleSplitView = [&] {
        QMetaObject::invokeMethod(view, "beforeSplitViewModeChanged");
        view->setProperty("splitViewMode", !view->property("splitViewMode").toBool());
        m_screen->waitFrames(3);
    };
    if (end == "Escape") {
        m_screen->window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_screen->window()));
        QTest::keyClick(m_screen->window(), Qt::Key_Escape);
    } else if (end == "split view") {
        toggleSplitView();
    } else {
        m_screen->click(end);
    }

    QVERIFY(!m_screen->visible("applyConnectButton"));
    QVERIFY(!m_screen->visible("pipeConnectApply"));
    QTRY_COMPARE(m_screen->text("selectedName"), QString("Nothing selected"));
    QVERIFY((pipe("A-B")->pipe()->getShapePoints().last() - before.last()).length() < 0.02F);
    if (end == "split view") {
        toggleSplitView();
        m_screen->settle();
    }
}

void tst_HandWork::aConnectionBeginsWithAPipe()
{
    m_screen->click("connectButton");
    m_screen->tap(pixelOf("C"));
    QTRY_COMPARE(SceneRoot::instance()->selectionsCount(), 1);
    m_screen->tap(middleOf("A-B"));
    QTRY_COMPARE(SceneRoot::instance()->selectionsCount(), 2);

    QVERIFY(!m_screen->enabled("connectButton"));
    QVERIFY(m_screen->text("selectedKind").contains("pipe must come first"));
    m_screen->click("cancelConnectButton");
    QVERIFY(!GlobalNav::instance()->connectionMode());
    QCOMPARE(SceneRoot::instance()->maxSelection(), 1);
    QVERIFY(m_screen->visible("moveObjectButton"));
    QVERIFY(!m_screen->checked("connectButton"));
}

void tst_HandWork::aTapOnAButtonThatIsOnLeavesItSo()
{
    QVERIFY(m_screen->checked("topButton"));

    m_screen->click("topButton");

    QVERIFY(m_screen->checked("topButton"));
}

void tst_HandWork::buttonsAreAsHighAsAFingerNeeds()
{
    for (const char* name : {"moveObjectButton", "turnObjectButton", "arrowsButton", "heightButton", "connectButton"}) {
        const double heightMm =
            m_screen->item(name)->height() / (m_screen->window()->screen()->physicalDotsPerInch() / 25.4);
        QVERIFY2(heightMm >= 9.0, qPrintable(QString("%1: %2 mm").arg(name).arg(heightMm)));
    }
}

void tst_HandWork::aNarrowWindowHasRoomForAllButtons()
{
    m_screen->window()->resize(480, 700);
    QTRY_COMPARE(m_screen->window()->contentItem()->width(), 480.0);
    m_screen->waitFrames(5);
    select("C");
    QTRY_COMPARE(m_screen->item("moveObjectButton")->y(), m_screen->item("connectButton")->y());
    m_screen->keep("narrow");

    for (const char* name : {"moveObjectButton", "turnObjectButton", "arrowsButton", "heightButton", "connectButton"}) {
        const QQuickItem* const button = m_screen->item(name);
        const QRectF place = button->mapRectToScene({0, 0, button->width(), button->height()});
        QVERIFY2(QRectF(0, 0, 480, 700).contains(place), name);
    }
    m_screen->window()->resize(1000, 700);
    QTRY_COMPARE(m_screen->window()->contentItem()->width(), 1000.0);
    m_screen->waitFrames(5);
}

void tst_HandWork::closingTheProjectEndsAllOfIt()
{
    startConnecting();
    m_screen->click("connectButton");
    QVERIFY(m_screen->visible("applyConnectButton"));

    m_viewer->closeProject();

    QTRY_COMPARE(m_screen->text("selectedName"), QString("Nothing selected"));
    QVERIFY(!m_screen->visible("applyConnectButton"));
    QVERIFY(!m_screen->enabled("connectButton"));
}

KX_SCENE_TEST_MAIN(tst_HandWork)
#include "tst_HandWork.moc"
