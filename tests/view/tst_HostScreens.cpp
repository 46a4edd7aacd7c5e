#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "host/app/ViewerController.h"
#include "host/domain/ShownUnit.h"
#include "host/modules/Language.h"
#include "view/ViewerScreen.h"

#include <memory>

using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::Viewer::ViewerController;

/** Screens and boxes that the view asks the application for, in its window. */
class tst_HostScreens : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_warnings = std::make_unique<QmlWarnings>();
        m_viewer = std::make_unique<ViewerController>();
        m_screen = std::make_unique<ViewerScreen>(*m_viewer);
    }
    void cleanupTestCase()
    {
        m_screen.reset();
        m_viewer.reset();
        m_warnings.reset();
    }
    void cleanup()
    {
        while (m_screen->visible("inputScreen")) {
            m_screen->click("cancelButton");
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!m_screen->visible("messageBox"));
    }

    void aValueIsPutIn();
    void whatIsNoNumberStaysThere();
    void escapeCancels();
    void aPositionIsFilledInByTheGps();
    void aPositionMustLieOnEarth();
    void anAddressNeedsSomething();
    void floorsGiveTheirHeights();
    void screensLieOverEachOther();
    void whatWasTypedStaysBelowAnotherScreen();
    void theScreenThatTheUserWorksOnIsNamed();
    void floorsAreToldInTheUnitAndTheLanguage();
    void aQuestionIsAnsweredOnce();
    void boxesComeOneAfterTheOther();
    void behindABoxNothingCanBeTouched();
    void theOverviewGoesToTheObject();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    void show(const QString& name, const QString& arguments)
    {
        m_screen->evaluate(
            QStringLiteral("screenManager.show('%1', Object.assign({screenCallback: function(r) { "
                           "viewer.objectName = r === undefined ? 'cancelled' : JSON.stringify(r) }}, %2))")
                .arg(name, arguments));
        m_viewer->setObjectName("asked");
        m_screen->waitFrames(2);
        QVERIFY(m_screen->visible("inputScreen"));
    }
    QString answer() const { return m_viewer->objectName(); }
    void type(const QString& field, const QString& text)
    {
        m_screen->click(field + "Input");
        m_screen->item(field + "Input")->setProperty("text", QString());
        for (const QChar c : text) {
            QTest::keyClick(m_screen->window(), c.toLatin1());
        }
    }
    QString error(const QString& field) const { return m_screen->text(field + "Error"); }

    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<ViewerController> m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

void tst_HostScreens::aValueIsPutIn()
{
    show("Input::ValueInputScreen", "{caption: 'Length', labelText: 'Length [m]', defaultValue: 0}");
    QCOMPARE(m_screen->text("modalCaption"), QString("Length"));
    QCOMPARE(m_screen->text("inputField0Input"), QString("0"));

    // The field is ready to be typed over.
    for (const char c : std::string("12,5")) {
        QTest::keyClick(m_screen->window(), c);
    }
    m_screen->keep("value-input");
    QTest::keyClick(m_screen->window(), Qt::Key_Return);

    QCOMPARE(answer(), QString("\"12.5\""));
    QVERIFY(!m_screen->visible("inputScreen"));
}

void tst_HostScreens::whatIsNoNumberStaysThere()
{
    show("Input::ValueInputScreen",
         "{caption: 'Length', labelText: 'Length [m]', defaultValue: 0, validator: {bottom: 0}}");
    type("inputField0", "1x");
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("asked"));
    QCOMPARE(error("inputField0"), QString("This is not a number."));
    type("inputField0", "-1");
    m_screen->click("acceptButton");
    QCOMPARE(error("inputField0"), QString("At least 0."));
    QVERIFY(m_screen->visible("inputScreen"));
}

void tst_HostScreens::escapeCancels()
{
    show("Input::ValueInputScreen", "{caption: 'Length', labelText: 'Length [m]', defaultValue: 0}");
    QTest::keyClick(m_screen->window(), Qt::Key_Escape);
    QCOMPARE(answer(), QString("cancelled"));
    QVERIFY(!m_screen->visible("inputScreen"));
}

void tst_HostScreens::aPositionIsFilledInByTheGps()
{
    const QString arguments = "{caption: 'GPS', initLatitude: '47.5', initLongitude: undefined, "
                              "requiredPositionPrecision: 7, isGpsWorkingFun: function() { return %1 }}";
    show("Input::GpsPositionInputScreen", arguments.arg("false"));
    QCOMPARE(m_screen->text("inputField0Input"), QString("47.5000000"));
    QCOMPARE(m_screen->text("inputField1Input"), QString());
    QVERIFY(!m_screen->visible("fillButton"));
    m_screen->click("cancelButton");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    show("Input::GpsPositionInputScreen", arguments.arg("true"));
    m_screen->click("fillButton");
    QCOMPARE(m_screen->text("inputField1Input"), QString("0.0000000"));
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("[\"0\",\"0\"]"));
}

void tst_HostScreens::aPositionMustLieOnEarth()
{
    show("Input::GpsPositionInputScreen", "{caption: 'GPS', requiredPositionPrecision: 7}");
    type("inputField0", "90.5");
    type("inputField1", "-181");
    m_screen->click("acceptButton");
    QCOMPARE(error("inputField0"), QString("Between -90 and 90."));
    QCOMPARE(error("inputField1"), QString("Between -180 and 180."));
    type("inputField0", "-89.5");
    type("inputField1", "180");
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("[\"-89.5\",\"180\"]"));
}

void tst_HostScreens::anAddressNeedsSomething()
{
    show("Input::GpsAddressInputScreen",
         "{caption: 'Address', model: [{rowId: 0, labelText: 'Street', inputText: ''}, "
         "{rowId: 1, labelText: 'City', inputText: ''}, {rowId: 2, labelText: 'Country', inputText: ''}]}");
    m_screen->click("acceptButton");
    QCOMPARE(error("inputField0"), QString("A street, a city or a country is needed."));
    type("inputField1", "Celle");
    m_screen->keep("address-input");
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("[\"\",\"Celle\",\"\"]"));
}

void tst_HostScreens::floorsGiveTheirHeights()
{
    show("View3d::FloorsInputScreen", "{model: [{rowId: 0, labelText: 'Floor 1', inputText: 0}, "
                                      "{rowId: 1, labelText: 'Floor 2', inputText: 3}]}");
    type("inputField1", "2.75");
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("{\"floorsModel\":[0,2.75]}"));
}

void tst_HostScreens::screensLieOverEachOther()
{
    show("Input::ValueInputScreen", "{caption: 'first', labelText: '', defaultValue: 1}");
    show("Input::ValueInputScreen", "{caption: 'second', labelText: '', defaultValue: 2}");
    QCOMPARE(m_screen->text("modalCaption"), QString("second"));
    m_screen->evaluate("screenManager.close()");
    m_screen->waitFrames(2);
    QCOMPARE(answer(), QString("cancelled"));
    QCOMPARE(m_screen->text("modalCaption"), QString("first"));
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("\"1\""));
}

void tst_HostScreens::whatWasTypedStaysBelowAnotherScreen()
{
    show("Input::ValueInputScreen", "{caption: 'first', labelText: '', defaultValue: 1}");
    type("inputField0", "17");
    show("Input::ValueInputScreen", "{caption: 'second', labelText: '', defaultValue: 2}");
    type("inputField0", "3");
    m_screen->click("cancelButton");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_screen->waitFrames(2);

    QCOMPARE(m_screen->text("modalCaption"), QString("first"));
    QCOMPARE(m_screen->text("inputField0Input"), QString("17"));
    m_screen->click("acceptButton");
    QCOMPARE(answer(), QString("\"17\""));
}

void tst_HostScreens::theScreenThatTheUserWorksOnIsNamed()
{
    const auto key = [this] { return m_screen->evaluate("screenManager.ongoingScreenKey").toString(); };
    QCOMPARE(key(), QString("Screens::InspectionScreen"));

    show("Input::ValueInputScreen", "{caption: 'Length', labelText: '', defaultValue: 0}");
    QCOMPARE(key(), QString("Input::ValueInputScreen"));

    m_screen->click("cancelButton");
    QCOMPARE(key(), QString("Screens::InspectionScreen"));
}

void tst_HostScreens::floorsAreToldInTheUnitAndTheLanguage()
{
    const QString arguments = "{model: [{rowId: 0, labelText: 'Floor 1', inputText: 0}, "
                              "{rowId: 1, labelText: 'Floor 2', inputText: 3}]}";
    Torvik::Base::ShownUnit::instance().setImperial(true);
    Torvik::Viewer::Language::instance().choose("de");
    show("View3d::FloorsInputScreen", arguments);
    const QString label = m_screen->item("inputField1")->property("label").toString();
    QVERIFY2(label.startsWith("Stockwerk 2") && label.endsWith("ft"), qPrintable(label));
    QCOMPARE(m_screen->text("inputField1Input"), QString("9.84"));
    type("inputField0", "10");

    m_screen->click("acceptButton");

    // What was not touched stays what it was.
    QCOMPARE(answer(), QString("{\"floorsModel\":[3.048,3]}"));
    Torvik::Viewer::Language::instance().choose("en");
    Torvik::Base::ShownUnit::instance().setImperial(false);
}

void tst_HostScreens::aQuestionIsAnsweredOnce()
{
    const auto ask = [this](const QString& kind) {
        m_screen->evaluate(
            QStringLiteral("MessageBox.%1('Caption', 'Text', function(yes) { viewer.objectName = 'said ' + yes })")
                .arg(kind));
        m_screen->waitFrames(2);
    };
    ask("question");
    QVERIFY(m_screen->visible("messageBox"));
    QVERIFY(m_screen->visible("noButton"));
    QCOMPARE(m_screen->text("messageText"), QString("Text"));
    m_screen->keep("question");
    m_screen->click("noButton");
    QCOMPARE(answer(), QString("said false"));
    QVERIFY(!m_screen->visible("messageBox"));

    ask("question");
    m_screen->click("yesButton");
    QCOMPARE(answer(), QString("said true"));

    ask("error");
    QVERIFY(!m_screen->visible("noButton"));
    m_screen->click("yesButton");
    QVERIFY(!m_screen->visible("messageBox"));
}

void tst_HostScreens::boxesComeOneAfterTheOther()
{
    m_screen->evaluate("MessageBox.info('', 'One')");
    m_screen->evaluate("MessageBox.info('', 'Two')");
    m_screen->waitFrames(2);
    QCOMPARE(m_screen->text("messageText"), QString("One"));
    m_screen->click("yesButton");
    QCOMPARE(m_screen->text("messageText"), QString("Two"));
    QVERIFY(m_screen->visible("messageBox"));
    m_screen->click("yesButton");
    QVERIFY(!m_screen->visible("messageBox"));
}

void tst_HostScreens::behindABoxNothingCanBeTouched()
{
    const bool before = m_screen->checked("listsButton");
    m_screen->evaluate("MessageBox.info('One', '')");
    m_screen->waitFrames(2);
    m_screen->click("listsButton");
    QCOMPARE(m_screen->checked("listsButton"), before);
    m_screen->click("yesButton");
    m_screen->click("listsButton");
    QCOMPARE(m_screen->checked("listsButton"), !before);
    m_screen->click("listsButton");
}

void tst_HostScreens::theOverviewGoesToTheObject()
{
    TestProject project;
    const auto a = project.addNode("A", "POINT ZM(400000 5600000 100 16)");
    project.addNode("B", "POINT ZM(400040 5600000 100 16)");
    project.close();
    m_viewer->openFolder(project.path());
    QTRY_VERIFY(m_viewer->projectOpen() && !m_viewer->busy());
    Torvik::AppState::instance().setActiveStructure(
        m_viewer->projectOpen()
            ? Torvik::AppState::instance().getActiveProject().staticCast<Torvik::Database::CProjectObject>()->node(1)
            : CDomainObjectPointer());
    m_screen->evaluate("screenManager.show('ProjectOverview::ProjectOverviewScreen', "
                       "{requestSelectedObject: belmora.appStateData.activeStructure})");
    QCOMPARE(m_viewer->currentId(), Torvik::AppState::instance().getActiveStructure()->id());
    QVERIFY(!m_screen->visible("inputScreen"));
    m_viewer->closeProject();
    QTRY_VERIFY(!m_viewer->projectOpen());
}

KX_SCENE_TEST_MAIN(tst_HostScreens)
#include "tst_HostScreens.moc"
