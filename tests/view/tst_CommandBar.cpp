#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "host/modules/Language.h"
#include "scene/GlobalNav.h"
#include "view/FakeViewer.h"
#include "view/ViewerScreen.h"

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::FakeViewer;
using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::Viewer::Language;

namespace {

/** What the bar offers, but for what needs a project's plans or a map. */
const QStringList offered {"listsButton",
                           "openButton",
                           "topButton",
                           "3dButton",
                           "frontButton",
                           "moveButton",
                           "rotateButton",
                           "tiltButton",
                           "zoomButton",
                           "fitButton",
                           "labelsButton",
                           "manholeInfoButton",
                           "labelsBackButton",
                           "gridButton",
                           "feetButton",
                           "goToCameraButton",
                           "goToSectionButton",
                           "goToUpstreamButton",
                           "goToGpsButton",
                           "editGpsButton",
                           "goToDownstreamButton",
                           "goToAddressButton",
                           "editAddressButton",
                           "observationLabelsButton",
                           "pictureButton",
                           "printButton",
                           "settingsButton",
                           "inspectButton",
                           "leaveInspectionButton",
                           "recordingButton",
                           "measureCommandButton"};

void collectButtons(QQuickItem* root, QVector<QQuickItem*>& buttons)
{
    for (QQuickItem* child : root->childItems()) {
        if (!child->isVisible()) {
            continue;
        }
        if (child->inherits("QQuickAbstractButton")) {
            buttons << child;
        }
        collectButtons(child, buttons);
    }
}

QVector<QQuickItem*> buttonsIn(QQuickItem* root)
{
    QVector<QQuickItem*> buttons;
    collectButtons(root, buttons);
    return buttons;
}

QRectF placeOf(const QQuickItem* item)
{
    return item->mapRectToScene({0, 0, item->width(), item->height()});
}

} // namespace

/** The bar over the window, in a rendered window, with delivered events. */
class tst_CommandBar : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_warnings = std::make_unique<QmlWarnings>();
        m_screen = std::make_unique<ViewerScreen>(m_viewer);
        Language::instance().choose("en");
    }
    void cleanup()
    {
        Language::instance().choose("en");
        GlobalNav::instance()->setLabelsVisible(true);
        setWidth(1000);
    }
    void cleanupTestCase()
    {
        m_screen.reset();
        m_warnings.reset();
    }

    void itIsOneRowAtAnyWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QString>("code");
        for (const char* code : {"en", "de"}) {
            for (const int width : {360, 390, 480, 640, 700, 800, 1000, 1280, 1920}) {
                QTest::addRow("%d %s", width, code) << width << QString(code);
            }
        }
    }

    void itIsOneRowAtAnyWidth()
    {
        QFETCH(int, width);
        QFETCH(QString, code);
        Language::instance().choose(code);
        setWidth(width);

        QStringList found;
        const QRectF bar = placeOf(m_screen->item("commandBar"));
        QVector<QRectF> places;
        QStringList menus;
        for (const QQuickItem* button : buttonsIn(m_screen->item("commandBar"))) {
            const QRectF place = placeOf(button);
            const QString name = button->objectName();
            QVERIFY2(bar.contains(place), qPrintable(name));
            QVERIFY2(place.height() >= 42 && place.width() >= 48, qPrintable(name));
            for (const QRectF& other : places) {
                QVERIFY2(!other.intersects(place), qPrintable(name));
            }
            places << place;
            (name.endsWith("MenuButton") || name == "moreButton" ? menus : found) << name;
        }
        for (const QString& menu : menus) {
            found << linesOf(menu);
        }
        found.sort();
        QStringList expected = offered;
        expected.sort();
        QCOMPARE(found, expected);
        if (code == "en") {
            m_screen->keep(QString("bar-%1").arg(width));
        }
    }

    void aWideWindowHasTheMainCommandsInSight()
    {
        setWidth(1280);
        for (const char* name : {"topButton", "3dButton", "frontButton", "moveButton", "rotateButton", "fitButton"}) {
            QVERIFY2(m_screen->visible(name), name);
        }
        QVERIFY(!m_screen->visible("moreButton"));
        QVERIFY(!m_screen->visible("gridButton"));
    }

    void aTouchBesideAMenuOnlyClosesIt()
    {
        QSignalSpy taps(GlobalNav::instance(), &GlobalNav::shortTap);
        m_screen->click("viewMenuButton");
        QTRY_VERIFY(m_screen->visible("gridButton"));
        m_screen->keep("menu");

        m_screen->tap({120, 300});

        QVERIFY(!m_screen->visible("gridButton"));
        QCOMPARE(taps.count(), 0);
        m_screen->tap({120, 300});
        QTRY_COMPARE(taps.count(), 1);
    }

    void whatSwitchesLeavesTheMenuOpen()
    {
        m_screen->click("viewMenuButton");
        m_screen->click("labelsButton");
        QVERIFY(!GlobalNav::instance()->labelsVisible());
        QVERIFY(!m_screen->checked("labelsButton"));
        QVERIFY(!m_screen->enabled("manholeInfoButton"));
        m_screen->click("labelsButton");
        QVERIFY(GlobalNav::instance()->labelsVisible());

        m_screen->click("labelsBackButton");
        QVERIFY(!m_screen->visible("labelsBackButton"));
    }

    void escapeClosesTheMenuFirst()
    {
        m_screen->click("shareMenuButton");
        QVERIFY(m_screen->visible("pictureButton"));
        m_screen->window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(m_screen->window()));
        QTest::keyClick(m_screen->window(), Qt::Key_Escape);
        QTRY_VERIFY(!m_screen->visible("pictureButton"));
    }

    void aSecondTouchOfItsButtonClosesTheMenu()
    {
        m_screen->click("goToMenuButton");
        QVERIFY(m_screen->visible("goToSectionButton"));
        m_screen->click("goToMenuButton");
        QVERIFY(!m_screen->visible("goToSectionButton"));
    }

    void whatGoesSomewhereNeedsAnInspectionOrAMap()
    {
        m_screen->click("goToMenuButton");
        for (const char* name : {"goToCameraButton", "goToSectionButton", "goToUpstreamButton", "goToDownstreamButton",
                                 "goToGpsButton", "editGpsButton", "goToAddressButton", "editAddressButton"}) {
            QVERIFY2(!m_screen->enabled(name), name);
        }
        TestProject project;
        const auto a = project.addNode("A", "POINT ZM(400000 5600000 100 16)");
        const auto b = project.addNode("B", "POINT ZM(400040 5600000 100 16)");
        const auto inspection = project.addInspection(project.addSection("A-B", a, b), {}, 2);
        project.activate();
        Torvik::AppState::instance().setActiveInspection(inspection);
        for (const char* name :
             {"goToCameraButton", "goToSectionButton", "goToUpstreamButton", "goToDownstreamButton"}) {
            QVERIFY2(m_screen->enabled(name), name);
        }
        QCOMPARE(m_screen->text("goToUpstreamButton"), QString("Go-To Node Upstream"));

        const bool before = GlobalNav::instance()->cameraFollow();
        m_screen->click("goToCameraButton");
        QCOMPARE(GlobalNav::instance()->cameraFollow(), !before);
        QCOMPARE(m_screen->checked("goToCameraButton"), !before);
        m_screen->click("goToCameraButton");
        m_screen->settle();
        const QVector3D looked = m_screen->camera()->viewCenter();
        m_screen->click("goToUpstreamButton");
        QVERIFY(!m_screen->visible("goToUpstreamButton"));
        QTRY_VERIFY((m_screen->camera()->viewCenter() - looked).length() > 5);
        m_screen->settle();
        project.close();
    }

    void inANarrowWindowListsLieOverTheScene()
    {
        setWidth(390);
        QVERIFY(!m_screen->visible("lists"));
        const double sceneWidth = m_screen->scene()->width();
        QCOMPARE(sceneWidth, 390.0);

        m_screen->click("listsButton");
        QVERIFY(m_screen->visible("lists"));
        QCOMPARE(m_screen->scene()->width(), sceneWidth);

        // Who has found his object wants to see it.
        m_viewer.currentId = "id-N2";
        emit m_viewer.changed();
        QTRY_VERIFY(!m_screen->visible("lists"));
        m_viewer.currentId.clear();
        emit m_viewer.changed();
    }

    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    void setWidth(int width)
    {
        m_screen->window()->resize(width, 700);
        QTRY_COMPARE(m_screen->window()->contentItem()->width(), double(width));
        m_screen->waitFrames(3);
    }

    QStringList linesOf(const QString& menu)
    {
        m_screen->click(menu);
        m_screen->keep(QString("%1-%2").arg(menu).arg(m_screen->window()->width()));
        QStringList names;
        for (const QQuickItem* line : buttonsIn(m_screen->item("barMenu"))) {
            names << line->objectName();
        }
        m_screen->click(menu);
        return names;
    }

    FakeViewer m_viewer;
    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<ViewerScreen> m_screen;
};

KX_SCENE_TEST_MAIN(tst_CommandBar)
#include "tst_CommandBar.moc"
