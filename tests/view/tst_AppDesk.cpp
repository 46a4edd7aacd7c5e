#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "host/app/PictureTaker.h"
#include "host/app/ViewerController.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ShownUnit.h"
#include "scene/GlobalNav.h"
#include "view/ViewerScreen.h"

#include <QImageReader>

#include <memory>

using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::View3d::CameraController;
using Torvik::View3d::GlobalNav;
using Torvik::Viewer::AppDesk;
using Torvik::Viewer::ObjectDetails;
using Torvik::Viewer::PhotoDesk;
using Torvik::Viewer::ViewerController;

/** What the window offers around the view: keys, pictures, pages. */
class tst_AppDesk : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void keysChooseTheView();
    void keysZoomAndFit();
    void escapeLetsGoWhatIsSelected();
    void keysRestWhileACardIsOpen();
    void lettersGoIntoTheSearch();
    void aPictureCarriesItsScale();
    void aPageIsAPdf();
    void aPictureShowsNothingThatLiesOverTheScene();
    void aPictureWaitsForWhatIsMissingUnderIt();
    void aWindowThatPaintsNothingEndsTheWait();
    void theDetailsAreThoseOfTheSelectedObject();
    void theTreeLeadsToAnObject();
    void aRecentProjectOpensFromTheCard();
    void withoutAProjectTheStartOffersThem();
    void deletingAsksAndDeletes();
    void nothingWarned() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(m_screen->window(), key, modifiers);
        QCoreApplication::processEvents();
    }
    double distance() const { return double(m_screen->camera()->viewVector().length()); }
    QString writtenBy(const QString& button);
    /** Value of the field with this label. */
    QString detail(const QString& label) const;

    QTemporaryDir m_folder;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QmlWarnings> m_warnings;
    ViewerController* m_controller = nullptr;
    ViewerScreen* m_screen = nullptr;
};

void tst_AppDesk::initTestCase()
{
    Torvik::Base::HostSettings::setSettingsFile(m_folder.filePath("settings.ini"));
    m_warnings = std::make_unique<QmlWarnings>();
    m_project = std::make_unique<TestProject>();
    const auto a = m_project->addNode("S1", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 3.0}});
    const auto b = m_project->addNode("S2", "POINT ZM(400040 5600000 100 16)", {{"OBJ_DepthToInvert", 3.0}});
    const auto pipe = m_project->addSection("H1", a, b, {{"OBJ_Size1", 1000}});
    const auto inspection = m_project->addInspection(pipe, "LINESTRING ZM(400040 5600000 97 320,400000 5600000 97 0)");
    m_project->addObservation(inspection, "BAF", 10.0);
    const QString folder = m_project->path();
    m_project->close();
    m_controller = new ViewerController(this);
    m_controller->desk()->photos()->setFolder(m_folder.filePath("pictures"));
    m_screen = new ViewerScreen(*m_controller);
    QSignalSpy opened(m_controller, &ViewerController::opened);
    m_controller->openFolder(folder);
    QVERIFY(opened.wait(20000));
    m_screen->settle();
    m_screen->window()->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_screen->window()));
}

void tst_AppDesk::cleanup()
{
    m_screen->evaluate("MessageBox.answer(false)");
    QMetaObject::invokeMethod(m_screen->item("appCards"), "close");
    m_screen->item("search")->setProperty("text", "");
    m_screen->item("search")->setProperty("focus", false);
    m_screen->settle();
}

void tst_AppDesk::cleanupTestCase()
{
    m_controller->closeProject();
    delete m_screen;
}

void tst_AppDesk::keysChooseTheView()
{
    press(Qt::Key_2);
    QTRY_COMPARE(GlobalNav::instance()->viewType(), CameraController::View3d);
    m_screen->settle();
    press(Qt::Key_3);
    QTRY_COMPARE(GlobalNav::instance()->viewType(), CameraController::View2dFront);
    m_screen->settle();
    press(Qt::Key_1);
    QTRY_COMPARE(GlobalNav::instance()->viewType(), CameraController::View2dTop);
}

void tst_AppDesk::keysZoomAndFit()
{
    const double before = distance();
    const QVector3D center = m_screen->camera()->viewCenter();

    press(Qt::Key_Plus);
    QVERIFY(qAbs(distance() / before - 0.8) < 0.001);
    QVERIFY((m_screen->camera()->viewCenter() - center).length() < 0.001F);
    press(Qt::Key_Minus);
    QVERIFY(qAbs(distance() / before - 1.0) < 0.001);
    press(Qt::Key_Minus);
    press(Qt::Key_F);
    m_screen->settle();
    QTRY_VERIFY(qAbs(distance() / before - 1.0) < 0.05);
}

void tst_AppDesk::escapeLetsGoWhatIsSelected()
{
    m_controller->goTo(m_controller->idOfKey("S1"));
    m_screen->settle();
    QCOMPARE(m_screen->text("selectedName"), QStringLiteral("S1"));

    press(Qt::Key_Escape);

    QTRY_COMPARE(m_screen->text("selectedName"), QStringLiteral("Nothing selected"));
}

void tst_AppDesk::keysRestWhileACardIsOpen()
{
    const double before = distance();
    press(Qt::Key_F1);
    m_screen->waitFrames(2);
    QVERIFY(m_screen->visible("closeKeysButton"));
    m_screen->keep("keys");

    press(Qt::Key_Plus);
    QCOMPARE(distance(), before);
    press(Qt::Key_Escape);
    QTRY_VERIFY(!m_screen->visible("closeKeysButton"));
    press(Qt::Key_Plus);
    QVERIFY(distance() < before);
    press(Qt::Key_Minus);
}

void tst_AppDesk::lettersGoIntoTheSearch()
{
    const double before = distance();
    m_screen->click("search");

    press(Qt::Key_1);
    press(Qt::Key_F);

    QCOMPARE(m_screen->text("search").toLower(), QStringLiteral("1f"));
    QCOMPARE(distance(), before);
}

QString tst_AppDesk::writtenBy(const QString& button)
{
    QSignalSpy written(m_controller->desk()->photos(), &PhotoDesk::written);
    m_screen->click("shareMenuButton");
    m_screen->click(button);
    if (written.isEmpty() && !written.wait(30000))
        return {};
    return written.first().first().toString();
}

void tst_AppDesk::aPictureCarriesItsScale()
{
    m_controller->fit();
    m_screen->settle();
    const QString path = writtenBy("pictureButton");

    QVariant proportion;
    QMetaObject::invokeMethod(m_screen->scene(), "getScaleProportion", Q_RETURN_ARG(QVariant, proportion));
    const QString scale = QString::number(proportion.toInt());
    QImageReader reader(path);
    QCOMPARE(reader.text("Scale"), QString("1 : " + scale));
    QVERIFY2(path.endsWith("_1-" + scale + ".png"), qPrintable(path));
    const QImage picture = reader.read();
    QCOMPARE(picture.size(), QSizeF(m_screen->scene()->width(), m_screen->scene()->height()).toSize());
    // White around the network, without grid and buttons.
    QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(picture.width() - 40, 40), QColor(Qt::white));
    const QVector3D middle =
        Torvik::View3d::GdalGeoProjector::instance()->worldPosForWktString("POINT ZM(400020 5600000 97 16)");
    QVERIFY(picture.pixelColor(m_screen->pixelOf(middle).toPoint()) != QColor(Qt::white));
    QCOMPARE(m_screen->window()->property("window3d").value<QObject*>()->property("screenshotPending").toBool(), false);
    QTRY_VERIFY(m_screen->visible("messageBox"));
    QCOMPARE(m_screen->text("messageText"), path);
}

void tst_AppDesk::aPageIsAPdf()
{
    const QString path = writtenBy("printButton");

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(5) == "%PDF-");
    const QString kept = qEnvironmentVariable("KX_KEEP_PICTURES");
    if (!kept.isEmpty())
        QFile::copy(path, kept + "/page.pdf");
}

void tst_AppDesk::aPictureShowsNothingThatLiesOverTheScene()
{
    m_controller->fit();
    m_screen->settle();
    m_screen->window()->resize(480, 700);
    QTRY_COMPARE(m_screen->window()->contentItem()->width(), 480.0);
    m_screen->waitFrames(5);
    const auto photograph = [this] {
        QSignalSpy written(m_controller->desk()->photos(), &PhotoDesk::written);
        press(Qt::Key_F12);
        if (written.isEmpty() && !written.wait(30000))
            return QImage();
        m_screen->evaluate("MessageBox.answer(true)");
        return QImage(written.first().first().toString()).convertToFormat(QImage::Format_RGB32);
    };
    const QImage before = photograph();
    QVERIFY(!before.isNull());

    m_controller->showError("Something is wrong");
    if (!m_screen->visible("lists"))
        m_screen->click("listsButton");
    m_screen->waitFrames(3);
    QVERIFY(m_screen->visible("errorBanner"));
    QVERIFY(m_screen->visible("lists"));
    const QImage picture = photograph();

    QCOMPARE(picture.size(), before.size());
    QCOMPARE(picture, before);
    QVERIFY(m_screen->visible("errorBanner"));
    m_controller->dismissError();
    m_screen->click("listsButton");
    m_screen->window()->resize(1000, 700);
    QTRY_COMPARE(m_screen->window()->contentItem()->width(), 1000.0);
    m_screen->waitFrames(5);
}

void tst_AppDesk::aPictureWaitsForWhatIsMissingUnderIt()
{
    bool missing = true;
    PhotoDesk* const photos = m_controller->desk()->photos();
    photos->waitWhile([&missing] { return missing; });
    QSignalSpy written(photos, &PhotoDesk::written);

    press(Qt::Key_F12);
    m_screen->waitFrames(60);
    QCOMPARE(written.count(), 0);
    missing = false;

    QVERIFY(written.wait(30000));
    photos->waitWhile({});
}

void tst_AppDesk::aWindowThatPaintsNothingEndsTheWait()
{
    QQuickWindow neverShown;
    Torvik::Viewer::PictureTaker taker(&neverShown);
    taker.setPatience(200);
    QSignalSpy gaveUp(&taker, &Torvik::Viewer::PictureTaker::gaveUp);

    taker.start();

    QVERIFY(gaveUp.wait(5000));
}

QString tst_AppDesk::detail(const QString& label) const
{
    const auto* details = m_controller->desk()->details();
    for (int i = 0; i < details->rowCount(); ++i) {
        if (details->index(i).data(ObjectDetails::LabelRole).toString() == label)
            return details->index(i).data(ObjectDetails::ValueRole).toString();
    }
    return QStringLiteral("(no such field)");
}

void tst_AppDesk::theDetailsAreThoseOfTheSelectedObject()
{
    m_screen->click("tab5");
    QVERIFY(m_screen->visible("details"));
    m_controller->goTo(m_controller->idOfKey("S1"));
    m_screen->settle();
    QCOMPARE(detail("Name"), QStringLiteral("S1"));
    QCOMPARE(detail("Depth to invert"), QStringLiteral("3.00 m"));
    Torvik::Base::ShownUnit::instance().setImperial(true);
    QCOMPARE(detail("Depth to invert"), QStringLiteral("9.84 ft"));
    Torvik::Base::ShownUnit::instance().setImperial(false);

    m_controller->goTo(m_controller->idOfKey("H1"));
    m_screen->settle();
    QCOMPARE(detail("From"), QStringLiteral("S1"));
    QCOMPARE(detail("To"), QStringLiteral("S2"));
    QCOMPARE(detail("Observations of all"), QStringLiteral("1"));
    QCOMPARE(m_screen->text("detailsTitle"), QStringLiteral("H1"));
    m_screen->keep("details");

    const auto errors = m_controller->observations()->save({}, {{"code", "BAB"}, {"distance", "5"}});
    QVERIFY(errors.isEmpty());
    QTRY_COMPARE(detail("Observations of all"), QStringLiteral("2"));

    press(Qt::Key_Escape);
    QTRY_COMPARE(m_controller->desk()->details()->rowCount(), 0);
    m_screen->click("tab0");
}

void tst_AppDesk::theTreeLeadsToAnObject()
{
    auto* tree = m_controller->desk()->tree();
    m_screen->click("tab4");
    m_screen->waitFrames(3);
    const auto tapLine = [this](int row, double x) {
        const QQuickItem* list = m_screen->item("tree");
        const double height = list->property("contentHeight").toDouble() / list->property("count").toInt();
        m_screen->tapWindow(list->mapToScene({x, (row + 0.5) * height}).toPoint());
        m_screen->waitFrames(2);
    };
    QCOMPARE(tree->rowCount(), 4);

    tapLine(2, 100);
    QCOMPARE(tree->rowCount(), 5);
    tapLine(3, 40);
    tapLine(4, 60);
    QCOMPARE(tree->rowCount(), 8);
    m_screen->keep("tree");
    tapLine(5, 120);

    m_screen->settle();
    QTRY_COMPARE(m_screen->text("selectedName"), QStringLiteral("H1"));
    m_screen->click("tab0");
    press(Qt::Key_Escape);
}

void tst_AppDesk::aRecentProjectOpensFromTheCard()
{
    auto* recent = m_controller->desk()->recent();
    recent->add("/nowhere/gone");
    recent->add(m_controller->projectFolder());
    press(Qt::Key_O, Qt::ControlModifier);
    m_screen->waitFrames(2);
    QVERIFY(m_screen->visible("chooseFolderButton"));
    QVERIFY(m_screen->visible("removeRecent1"));
    QVERIFY(!m_screen->item("removeRecent0")->isVisible());
    m_screen->keep("open");

    m_screen->click("removeRecent1");
    QCOMPARE(recent->count(), 1);
    QSignalSpy opened(m_controller, &ViewerController::opened);
    m_screen->waitFrames(2);
    m_screen->click("recent0");

    QVERIFY(opened.wait(20000));
    QVERIFY(!m_screen->visible("chooseFolderButton"));
    m_screen->settle();
}

void tst_AppDesk::withoutAProjectTheStartOffersThem()
{
    QVERIFY(!m_screen->item("emptyStart")->isVisible());
    m_screen->click("openButton");
    m_screen->waitFrames(2);
    m_screen->click("closeProjectButton");
    m_screen->waitFrames(2);
    QVERIFY(m_screen->item("emptyStart")->isVisible());
    QCOMPARE(m_controller->desk()->tree()->rowCount(), 0);
    m_screen->keep("start");

    QSignalSpy opened(m_controller, &ViewerController::opened);
    m_screen->click("recent0");

    QVERIFY(opened.wait(20000));
    QVERIFY(!m_screen->item("emptyStart")->isVisible());
    m_screen->settle();
}

void tst_AppDesk::deletingAsksAndDeletes()
{
    const QString id = m_controller->idOfKey("S2");
    m_controller->goTo(id);
    m_screen->settle();
    auto* nodes = m_controller->nodesModel();
    QCOMPARE(nodes->total(), 2);

    press(Qt::Key_Delete);
    m_screen->waitFrames(2);
    QVERIFY(m_screen->text("messageText").contains("S2"));
    m_screen->keep("delete");
    m_screen->click("noButton");
    QCOMPARE(nodes->total(), 2);

    press(Qt::Key_Delete);
    m_screen->waitFrames(2);
    m_screen->click("yesButton");
    QCOMPARE(nodes->total(), 1);
    QVERIFY(m_controller->idOfKey("S2").isEmpty());
    QTRY_COMPARE(m_screen->text("selectedName"), QStringLiteral("Nothing selected"));
}

KX_SCENE_TEST_MAIN(tst_AppDesk)
#include "tst_AppDesk.moc"
