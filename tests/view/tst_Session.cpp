#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "host/app/InspectionDesk.h"
#include "host/app/ViewerController.h"
#include "host/map/MapEndpoints.h"
#include "network/Node.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "view/ViewerScreen.h"

#include <QImage>
#include <QQmlContext>
#include <QTemporaryDir>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::Viewer::ViewerController;

namespace {

QStringList warnings;
QtMessageHandler previousHandler = nullptr;

/** Whatever the files of QML log as a warning or an error, and nothing that comes from elsewhere. */
void noteWarnings(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const bool ofQml =
        message.contains("qrc:/") || message.contains(".qml") || QString(context.category).startsWith("qml");
    if (type != QtDebugMsg && type != QtInfoMsg && ofQml) {
        warnings << message;
    }
    previousHandler(type, context, message);
}

} // namespace

/** A whole working day in the application's window, in short: nothing that its pages or the view's do is an error. */
class tst_Session : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        previousHandler = qInstallMessageHandler(noteWarnings);
        m_first = project("A", 400000);
        m_second = project("B", 500000);
        QImage tile(256, 256, QImage::Format_RGB32);
        tile.fill(QColor(200, 220, 200));
        QVERIFY(tile.save(m_folder.filePath("plan.png")));
        // Around both projects and the place of an empty scene.
        for (int column = 2130; column <= 2166; ++column) {
            const QString folder = m_folder.filePath(QString("tiles/12/%1").arg(column));
            QVERIFY(QDir().mkpath(folder));
            for (int row = 1366; row <= 1386; ++row) {
                QVERIFY(QFile::link(m_folder.filePath("plan.png"), QString("%1/%2.png").arg(folder).arg(row)));
            }
        }
        QCOMPARE(m_endpoints.setTiles(m_folder.filePath("tiles")), QString());
        Torvik::Base::CApplicationSettings::instance().setCustomSetting("MAPGEOCODING", "http://map.invalid");
        m_viewer = std::make_unique<ViewerController>();
        m_screen = std::make_unique<ViewerScreen>(*m_viewer, QSize(1000, 700), [this](QQmlContext& context) {
            context.setContextProperty("mapEndpoints", &m_endpoints);
        });
        open(*m_first);
    }

    /** Each step leaves nothing said. */
    void cleanup()
    {
        if (!m_screen) {
            return;
        }
        m_screen->waitFrames(5);
        QCOMPARE(warnings, QStringList());
    }

    void theViewIsTurned()
    {
        for (const char* name : {"3dButton", "frontButton", "topButton"}) {
            if (!m_screen->visible(name)) {
                m_screen->click("viewpointMenuButton");
            }
            m_screen->click(name);
            m_screen->settle();
        }
        m_screen->drag({300, 300}, {350, 320});
        m_screen->click("fitButton");
        m_screen->settle();
    }

    void anObjectIsSelectedAndDragged()
    {
        selectFirstManhole();
        m_screen->click("moveObjectButton");
        const QPointF from = firstManhole();
        m_screen->drag(from, from + QPointF(40, 10));
        m_screen->click("turnObjectButton");
        m_screen->click("arrowsButton");
        SceneRoot::instance()->deselectAll();
    }

    void anInspectionIsMeasured()
    {
        m_viewer->goTo(m_viewer->idOfKey("A1-A2"));
        m_screen->settle();
        choose("measureMenuButton", "inspectButton");
        QTRY_VERIFY(m_viewer->inspections()->isActive());
        m_screen->settle();
        const QString recording = m_folder.filePath("run.csv");
        QFile file(recording);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("time,counter\n0,0\n0.2,1\n0.4,2\n0.6,3\n");
        file.close();
        QCOMPARE(m_viewer->inspections()->load(QUrl::fromLocalFile(m_folder.filePath("missing.csv"))).isEmpty(), false);
        QCOMPARE(m_viewer->inspections()->load(QUrl::fromLocalFile(recording)), QString());
        QTRY_VERIFY(m_screen->visible("playButton"));
        m_screen->waitFrames(3);
        m_screen->keep("session-recording");
        m_screen->click("playButton");
        QTRY_COMPARE(m_viewer->vehicle()->counter(), 3.0);
        choose("goToMenuButton", "goToSectionButton");
        m_screen->settle();
        choose("goToMenuButton", "goToUpstreamButton");
        m_screen->settle();
        choose("measureMenuButton", "leaveInspectionButton");
        QVERIFY(!m_viewer->inspections()->isActive());
    }

    void aPictureShowsTheMapUnderTheNetwork()
    {
        // So far that the tiles, which are coarse, have a say.
        const QVector3D centre = m_screen->camera()->viewCenter();
        m_screen->camera()->setPosition(centre + QVector3D(0, 20000, 0));
        m_screen->waitFrames(5);
        auto* const photos = m_viewer->desk()->photos();
        photos->setFolder(m_folder.filePath("pictures"));
        photos->waitWhile([this] { return m_endpoints.busy(); });
        m_screen->window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_screen->window()));
        QSignalSpy written(photos, &Torvik::Viewer::PhotoDesk::written);

        QTest::keyClick(m_screen->window(), Qt::Key_F12);

        QVERIFY(!written.isEmpty() || written.wait(30000));
        m_screen->evaluate("MessageBox.answer(true)");
        const QImage picture(written.first().first().toString());
        QCOMPARE(picture.size(), m_screen->scene()->size().toSize());
        m_screen->keep("session-photo-window");
        const QString ground = QColor(200, 220, 200).name();
        for (const QPoint& corner : {QPoint(3, 3), QPoint(picture.width() - 4, picture.height() - 4)})
            QCOMPARE(picture.pixelColor(corner).name(), ground);
        const QRect around = QRect(firstManhole().toPoint() - QPoint(2, 2), QSize(5, 5));
        bool seen = false;
        for (int i = 0; i < 25; ++i)
            seen = seen || picture.pixelColor(around.topLeft() + QPoint(i % 5, i / 5)).name() != ground;
        QVERIFY(seen);
        photos->waitWhile({});
        m_viewer->fit();
        m_screen->settle();
    }

    void aPlanIsLaid()
    {
        if (!m_screen->visible("planButton")) {
            m_screen->click("moreButton");
        }
        m_screen->click("planButton");
        m_screen->waitFrames(3);
        QVERIFY(m_screen->visible("planBar"));
        m_screen->evaluate("viewer.plans.load('file://" + m_folder.filePath("plan.png") + "')");
        QTRY_VERIFY(SceneEntities::instance().getBackgroundPlan() ||
                    SceneEntities::instance().getBackgroundPlanToConfirm());
    }

    void aFloorIsChosen()
    {
        m_screen->click("floorButton1");
        m_screen->waitFrames(3);
        m_screen->click("floorButton1");
        m_screen->click("floorsInputScreenButton");
        QTRY_VERIFY(m_screen->visible("inputScreen"));
        m_screen->click("acceptButton");
        QTRY_VERIFY(!m_screen->visible("inputScreen"));
    }

    void theMapIsShownAndHidden()
    {
        choose("viewMenuButton", "mapButton");
        m_screen->waitFrames(5);
        m_screen->click("mapButton");
        m_screen->click("gridButton");
        m_screen->click("labelsButton");
        m_screen->waitFrames(5);
        m_screen->click("labelsButton");
        m_screen->click("viewMenuButton");
    }

    void aPlaceIsPutIn()
    {
        choose("goToMenuButton", "editGpsButton");
        QTRY_VERIFY(m_screen->visible("inputScreen"));
        m_screen->click("acceptButton");
        QTRY_VERIFY(!m_screen->visible("inputScreen"));
        choose("goToMenuButton", "editAddressButton");
        QTRY_VERIFY(m_screen->visible("inputScreen"));
        m_screen->click("cancelButton");
        QTRY_VERIFY(!m_screen->visible("inputScreen"));
    }

    void theScreenIsSplitAndWholeAgain()
    {
        m_screen->click("commandButton_toggleSplitView");
        m_screen->waitFrames(10);
        m_screen->click("commandButton_toggleSplitView");
        m_screen->waitFrames(10);
        QTest::qWait(300);
        m_screen->settle();
    }

    void allListsAreLookedAt()
    {
        for (int tab = 0; tab < 6; ++tab) {
            m_screen->click("tab" + QString::number(tab));
            m_screen->waitFrames(2);
        }
        m_screen->click("tab0");
    }

    void itIsClosedAndAnotherOneOpened()
    {
        m_viewer->closeProject();
        QTRY_VERIFY(!m_viewer->projectOpen());
        m_screen->waitFrames(10);
        QTRY_VERIFY(m_screen->visible("emptyStart"));
        open(*m_second);
        selectFirstManhole();
        // While another opens, too.
        open(*m_first);
    }

    void theWindowIsClosed()
    {
        selectFirstManhole();
        m_screen->window()->close();
        m_screen.reset();
        QCOMPARE(warnings, QStringList());
        m_viewer.reset();
        QCOMPARE(warnings, QStringList());
    }

    void cleanupTestCase() { qInstallMessageHandler(previousHandler); }

private:
    std::unique_ptr<TestProject> project(const QString& name, int east)
    {
        auto made = std::make_unique<TestProject>("EPSG:25832");
        const auto place = [east](int metres) { return QString("POINT ZM(%1 5600000 100 16)").arg(east + metres); };
        const QVariantMap manhole {{"OBJ_DepthToInvert", 2.0}, {"OBJ_Type", "MH"}};
        const auto a = made->addNode(name + "1", place(0), manhole);
        const auto b = made->addNode(name + "2", place(30), manhole);
        const auto s = made->addSection(name + "1-" + name + "2", a, b, {{"OBJ_Size1", 1000}});
        made->addInspection(s, QString("LINESTRING ZM(%1 5600000 98 320,%2 5600000 98 0)").arg(east + 30).arg(east));
        made->close();
        return made;
    }

    void open(const TestProject& project)
    {
        QSignalSpy opened(m_viewer.get(), &ViewerController::opened);
        m_viewer->openFolder(project.path());
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, 20000);
        m_screen->settle();
        m_screen->waitFrames(10);
    }

    QPointF firstManhole() const
    {
        for (const Node* node : SceneEntities::instance().getNodes()) {
            return m_screen->pixelOf(node->position());
        }
        qFatal("There is no manhole");
    }

    void selectFirstManhole()
    {
        m_viewer->fit();
        m_screen->settle();
        QTest::qWait(400);
        m_screen->tap(firstManhole());
        QTRY_VERIFY(SceneRoot::instance()->selectionsCount() > 0);
    }

    void choose(const QString& menu, const QString& command)
    {
        m_screen->click(m_screen->visible(menu) ? menu : "moreButton");
        m_screen->waitFrames(2);
        m_screen->click(command);
        m_screen->waitFrames(2);
    }

    QTemporaryDir m_folder;
    Torvik::Map::MapEndpoints m_endpoints;
    std::unique_ptr<TestProject> m_first;
    std::unique_ptr<TestProject> m_second;
    std::unique_ptr<ViewerController> m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

KX_SCENE_TEST_MAIN(tst_Session)
#include "tst_Session.moc"
