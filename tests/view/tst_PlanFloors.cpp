#include "host/app/SceneReader.h"
#include "view/PlanTest.h"

#include <QPageSize>
#include <QPdfWriter>
#include <QStandardPaths>

using namespace Torvik::View3d;
using Kx::Test::PlanTest;
using Kx::Test::QmlWarnings;

/** Plans of a building's floors, in the application's window. The tests follow one another. */
class tst_PlanFloors : public PlanTest {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        begin();
        openBar();
        lay(picture("site a.png"), false);
    }
    void cleanup() { nothingIsOpen(); }
    void cleanupTestCase() { end(); }

    void aDrawingComesToItsFloor();
    void floorsLieAtTheirHeights();
    void theFloorThatTheViewShowsIsTheOneThatIsWorkedOn();
    void aSecondPlanIsAskedFor();
    void aPdfThatIsTooLargeEnds();
    void ofAPdfTheFirstPageIsLaid();
    void aDrawingInMillimetresIsAsLargeAsItsHouse();
    void unitsThatCannotBeAreNotBelieved();
    void theNextProjectHasHeightsOfItsOwn();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }
};

void tst_PlanFloors::aDrawingComesToItsFloor()
{
    m_screen->click("planPlace2");
    QCOMPARE(plans().floor(), 1);
    QCOMPARE(m_screen->text("planName"), QString("No plan here"));
    const QString source = drawing("upper floor.dxf");

    choose(source);
    QTRY_VERIFY(FloorNav::instance().hasFloorPlan(1));
    QTRY_VERIFY(!m_screen->visible("backButton"));

    QCOMPARE(m_screen->text("planName"), QString("upper floor.dxf"));
    QCOMPARE(FloorNav::instance().getCurrentFloorIndex(), 1);
    QVERIFY(plan());
    QVERIFY(QFile::exists(source));
    QCOMPARE(FloorNav::instance().getFloorPlan(1)->transform()->translation().y(), 3.0F);
    m_screen->click("planLockButton");
    QVERIFY(m_screen->checked("planLockButton"));
    const auto scene = Torvik::Viewer::SceneReader::snapshot();
    QCOMPARE(scene.plans.size(), 2);
    QCOMPARE(scene.plans.at(0).floor, -1);
    QCOMPARE(scene.plans.at(1).floor, 1);
    QVERIFY(scene.plans.at(1).locked);
    QCOMPARE(scene.plans.at(1).elevation, 3.0F);
    QCOMPARE(scene.floors.shown, 1);
    QCOMPARE(scene.floors.heights, (QVector<double> {0.0, 3.0, 3.0, 3.0}));
    m_screen->click("planLockButton");
    m_screen->keep("plan-on-floor");
}

void tst_PlanFloors::floorsLieAtTheirHeights()
{
    m_screen->click("planHeightsButton");
    m_screen->waitFrames(2);
    QVERIFY(m_screen->visible("inputScreen"));
    m_screen->item("inputField1Input")->setProperty("text", "4.5");
    m_screen->click("acceptButton");
    m_screen->waitFrames(2);

    IBackgroundPlan* const upper = FloorNav::instance().getFloorPlan(1);
    QCOMPARE(upper->transform()->translation().y(), 4.5F);
    QVERIFY(upper->isEnabled());
    m_screen->click("planPlace1");
    QVERIFY(!upper->isEnabled());
    m_screen->click("planPlace2");
    QVERIFY(upper->isEnabled());
    m_screen->click("planRemoveButton");
    QVERIFY(answer().contains("upper floor.dxf"));
    QVERIFY(!FloorNav::instance().hasFloorPlan(1));
    m_screen->click("planPlace0");
    QCOMPARE(m_screen->text("planName"), QString("site a.png"));
}

void tst_PlanFloors::theFloorThatTheViewShowsIsTheOneThatIsWorkedOn()
{
    m_screen->click("floorButton1");
    QCOMPARE(plans().floor(), 1);
    QVERIFY(m_screen->checked("planPlace2"));
    QVERIFY(!plans().hasPlan());

    m_screen->click("floorButton1");
    QCOMPARE(plans().floor(), PlanWork::underNetwork);
    QVERIFY(plans().hasPlan());
    m_screen->click("planPlace4");
    QCOMPARE(FloorNav::instance().getCurrentFloorIndex(), 3);
    m_screen->click("planPlace0");
    QCOMPARE(FloorNav::instance().getCurrentFloorIndex(), -1);
}

void tst_PlanFloors::aSecondPlanIsAskedFor()
{
    m_screen->click("planPlace3");
    choose(picture("first.png"));
    QTRY_VERIFY(plans().hasPlan() && !plans().loading());
    const QPointer<IBackgroundPlan> first = FloorNav::instance().getFloorPlan(2);

    choose(picture("second.png"));
    QVERIFY(answer().contains("first.png lies on this floor"));
    QTRY_COMPARE(m_screen->text("planName"), QString("second.png"));

    QTRY_VERIFY(!first);
    QTRY_VERIFY(!m_screen->visible("backButton"));
}

void tst_PlanFloors::aPdfThatIsTooLargeEnds()
{
    const QString large = m_files.filePath("large.pdf");
    {
        QPdfWriter writer(large);
        writer.setPageSize(QPageSize(QSizeF(1300, 300), QPageSize::Millimeter));
        QPainter(&writer).drawRect(9, 9, 900, 900);
    }
    const QStringList files = filesOfProject();
    m_screen->click("planPlace1");

    choose(large);
    const QString text = answer();
    QTRY_VERIFY(!plans().loading());

    QVERIFY2(text.contains(large) && text.contains("130 x 30 cm"), qPrintable(text));
    QTRY_VERIFY(!m_screen->visible("backButton"));
    QVERIFY(!plans().hasPlan());
    // The user has the PDF still.
    QTRY_COMPARE(filesOfProject(), files);
    choose(picture("after.png"));
    QTRY_VERIFY(plans().hasPlan());
    QTRY_VERIFY(!m_screen->visible("backButton"));
}

void tst_PlanFloors::ofAPdfTheFirstPageIsLaid()
{
    if (QStandardPaths::findExecutable("pdfinfo").isEmpty())
        QSKIP("there is no pdfinfo here");
    const QString book = m_files.filePath("book.pdf");
    {
        QPdfWriter writer(book);
        QPainter painter(&writer);
        for (int page = 0; page < 3; ++page) {
            if (page > 0)
                writer.newPage();
            painter.drawRect(9, 9, 900, 900);
        }
    }

    m_screen->click("planPlace4");
    choose(book);
    const QString text = answer();

    QVERIFY2(text.contains(book) && text.contains("3 pages"), qPrintable(text));
    QTRY_VERIFY(!m_screen->visible("backButton"));
    QVERIFY(plans().hasPlan());
}

void tst_PlanFloors::aDrawingInMillimetresIsAsLargeAsItsHouse()
{
    using Kx::Test::Dxf::pair;
    const QString source = drawing("house.dxf", 1000.0, pair(9, "$INSUNITS") + pair(70, "4"));
    m_screen->click("planPlace2");

    choose(source);
    const QString text = answer();
    QTRY_VERIFY(!m_screen->visible("backButton"));

    const IBackgroundPlan* const house = FloorNav::instance().getFloorPlan(1);
    QVERIFY(house);
    QVERIFY(qAbs(house->transform()->scale3D().x() - 0.001F) < 1e-6F);
    QVERIFY(qAbs(house->transform()->scale3D().z() - 0.001F) < 1e-6F);
    QCOMPARE(house->transform()->translation().y(), 4.5F);
    QVERIFY2(text.contains("millimetres") && text.contains("12 m wide"), qPrintable(text));
    m_screen->keep("plan-in-millimetres");
    plans().remove();
}

void tst_PlanFloors::unitsThatCannotBeAreNotBelieved()
{
    using Kx::Test::Dxf::pair;
    const QString source = drawing("metres.dxf", 1.0, pair(9, "$INSUNITS") + pair(70, "4"));

    choose(source);
    const QString text = answer();
    QTRY_VERIFY(!m_screen->visible("backButton"));

    const IBackgroundPlan* const house = FloorNav::instance().getFloorPlan(1);
    QVERIFY(house);
    QCOMPARE(house->transform()->scale3D().x(), 1.0F);
    QVERIFY2(text.contains("does not fit") && text.contains("12 m wide"), qPrintable(text));
}

void tst_PlanFloors::theNextProjectHasHeightsOfItsOwn()
{
    const auto lines = [this] {
        return m_screen->window()->property("window3d").value<QQuickItem*>()->property("floorModel").toList();
    };
    QCOMPARE(lines().size(), 4);
    QVERIFY(!FloorNav::instance().floorValues().isEmpty());

    m_viewer->closeProject();

    QCOMPARE(lines(), QVariantList());
    QCOMPARE(FloorNav::instance().floorValues(), QVariantList());
    for (int floor = 0; floor < PlanWork::floorCount; ++floor)
        QVERIFY(!FloorNav::instance().hasFloorPlan(floor));
    QCOMPARE(plans().heights(), (QVariantList {0.0, 3.0, 3.0, 3.0}));
}

KX_SCENE_TEST_MAIN(tst_PlanFloors)
#include "tst_PlanFloors.moc"
