#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CProjectObject.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "host/app/ViewerController.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ShownUnit.h"
#include "host/modules/Language.h"
#include "host/modules/ObjectContent.h"
#include "scene/GlobalNav.h"
#include "view/ViewerScreen.h"

#include <QQmlComponent>

#include <memory>

using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::View3d::GlobalNav;
using Torvik::Viewer::Language;
using Torvik::Viewer::ViewerController;

/** Language and units of the window, which change at once. */
class tst_Language : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void theSwitchChangesAllTextsAtOnce();
    void theViewKeepsItsPictureAndPose();
    void theViewsOwnTextsFollow();
    void lengthsFollowTheUnit();
    void theGridsTextFollowsTheUnitAndTheLanguage();
    void formsOfObjectsAreInTheLanguage();
    void aProjectSaysItsOwnUnit();
    void nothingWarned() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QmlWarnings> m_warnings;
    ViewerController* m_controller = nullptr;
    ViewerScreen* m_screen = nullptr;
};

void tst_Language::initTestCase()
{
    Torvik::Base::HostSettings::setSettingsFile(m_folder.filePath("settings.ini"));
    m_warnings = std::make_unique<QmlWarnings>();
    m_project = std::make_unique<TestProject>();
    const auto a = m_project->addNode("S1", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 3.048}});
    const auto b = m_project->addNode("S2", "POINT ZM(400040 5600000 100 16)", {{"OBJ_DepthToInvert", 3.0}});
    const auto pipe = m_project->addSection("H1", a, b, {{"OBJ_Size1", 1000}});
    m_project->addInspection(pipe, "LINESTRING ZM(400040 5600000 97 320,400000 5600000 97 0)");
    const QString folder = m_project->path();
    m_project->close();
    m_controller = new ViewerController(this);
    m_screen = new ViewerScreen(*m_controller, QSize(1200, 700));
    QSignalSpy opened(m_controller, &ViewerController::opened);
    m_controller->openFolder(folder);
    QVERIFY(opened.wait(20000));
    m_screen->waitFrames(10);
}

void tst_Language::cleanup()
{
    Language::instance().choose("en");
    Torvik::Base::ShownUnit::instance().setImperial(false);
    QMetaObject::invokeMethod(m_screen->item("appCards"), "close");
}

void tst_Language::cleanupTestCase()
{
    m_controller->closeProject();
    delete m_screen;
}

void tst_Language::theSwitchChangesAllTextsAtOnce()
{
    QCOMPARE(m_screen->text("topButton"), QStringLiteral("Top"));
    m_screen->click("settingsButton");
    m_screen->waitFrames(2);

    m_screen->click("language_de");

    QCOMPARE(m_screen->text("topButton"), QStringLiteral("Oben"));
    QCOMPARE(m_screen->text("openButton"), QString::fromUtf8("Öffnen"));
    QVERIFY(m_screen->checked("language_de"));
    QCOMPARE(m_screen->text("selectedName"), QString::fromUtf8("Nichts ausgewählt"));
    auto* nodes = qobject_cast<QAbstractItemModel*>(m_controller->nodesModel());
    QCOMPARE(nodes->index(0, 0).data(Torvik::Viewer::ObjectListModel::DetailRole).toString(),
             QStringLiteral("Schacht, 3,05 m tief"));
    m_screen->keep("settings_de");
    QCOMPARE(m_screen->evaluate("Qt.locale().name.substring(0, 2)").toString(), QStringLiteral("de"));

    m_screen->click("language_en");
    QCOMPARE(m_screen->text("topButton"), QStringLiteral("Top"));
    m_screen->click("closeSettingsButton");
    QVERIFY(!m_screen->visible("language_en"));
}

void tst_Language::theViewKeepsItsPictureAndPose()
{
    // A name comes half a second after the view, and would lie on one of the places.
    GlobalNav::instance()->setLabelsVisible(false);
    m_controller->goTo(m_controller->idOfKey("H1"));
    m_screen->settle();
    m_screen->waitFrames(10);
    const auto colours = [this] {
        const QVector3D middle = m_screen->camera()->viewCenter();
        const QImage picture = m_screen->grab();
        QStringList names;
        for (const QVector3D& beside : {QVector3D(3, 0, 0), QVector3D(-9, 0, 0), QVector3D(3, 0, 3.5F)})
            names << picture.pixelColor(m_screen->inWindow(m_screen->pixelOf(middle + beside))).name();
        return names;
    };
    const QStringList before = colours();
    const QVector3D position = m_screen->camera()->position();
    QVERIFY(before[0] != before[2]);

    Language::instance().choose("de");
    m_screen->waitFrames(20);

    QCOMPARE(m_screen->camera()->position(), position);
    QCOMPARE(colours(), before);
    QCOMPARE(m_screen->text("selectedKind"), QStringLiteral("Rohr"));
    m_screen->keep("window_de");
    GlobalNav::instance()->setLabelsVisible(true);
}

void tst_Language::theViewsOwnTextsFollow()
{
    QQmlComponent component(qmlEngine(m_screen->scene()));
    component.setData("import QtQuick 2.12\nimport utils 1.0\nItem { id: item\n"
                      "property Translator translator: Translator {"
                      "  translationClassName: 'Ostel.Sightlog.App.Essential3DCommands' }\n"
                      "property string shown: item.translator.txt('GoToCameraButton', 'Go-To\\nCamera') }",
                      {});
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("shown").toString(), QStringLiteral("Go-To\nCamera"));

    Language::instance().choose("de");

    QCOMPARE(object->property("shown").toString(), QStringLiteral("Zur\nKamera"));
}

void tst_Language::lengthsFollowTheUnit()
{
    auto* nodes = qobject_cast<QAbstractItemModel*>(m_controller->nodesModel());
    m_screen->click("settingsButton");
    m_screen->waitFrames(2);

    m_screen->click("imperialButton");

    QCOMPARE(nodes->index(0, 0).data(Torvik::Viewer::ObjectListModel::DetailRole).toString(),
             QStringLiteral("manhole, 10.00 ft deep"));
    QCOMPARE(m_screen->evaluate("formatHelper.distanceUnitString()").toString(), QStringLiteral("ft"));
    QVERIFY(m_screen->checked("imperialButton"));
    // What is stored keeps its meaning.
    QCOMPARE(Torvik::Base::CLocaleSupport::getDistanceUnit(), Torvik::Base::HostSettings::unitMetres);
    m_screen->click("metricButton");
    QCOMPARE(nodes->index(0, 0).data(Torvik::Viewer::ObjectListModel::DetailRole).toString(),
             QStringLiteral("manhole, 3.05 m deep"));
}

void tst_Language::theGridsTextFollowsTheUnitAndTheLanguage()
{
    // The squares stay those of the project, so what is told of them must be the same length.
    const double metres = Torvik::View3d::SceneRoot::instance()->gridSize() * 0.1;
    const auto told = [this] { return m_screen->text("gridScaleText"); };
    const auto lengthOf = [](const QString& text) {
        const QStringList parts = text.split(' ');
        const double unit = parts.value(1) == "ft"     ? 0.3048
                            : parts.value(1) == "inch" ? 0.0254
                            : parts.value(1) == "cm"   ? 0.01
                                                       : 1.0;
        return QLocale().toDouble(parts.value(0)) * unit;
    };
    const QString before = told();
    QVERIFY2(before.endsWith("m") && qAbs(lengthOf(before) - metres) < 1e-6, qPrintable(before));

    Torvik::Base::ShownUnit::instance().setImperial(true);
    QVERIFY2(told().endsWith("ft") || told().endsWith("inch"), qPrintable(told()));
    QVERIFY2(qAbs(lengthOf(told()) / metres - 1.0) < 0.04, qPrintable(told()));
    Language::instance().choose("de");
    QVERIFY2(told().contains(',') && qAbs(lengthOf(told()) / metres - 1.0) < 0.04, qPrintable(told()));

    Torvik::Base::ShownUnit::instance().setImperial(false);
    QCOMPARE(told(), before);
}

void tst_Language::formsOfObjectsAreInTheLanguage()
{
    using namespace Torvik::Viewer;
    const auto project = Torvik::AppState::instance().getActiveProject().staticCast<Torvik::Database::CProjectObject>();
    const Torvik::QmlWrapper::CQmlDomainObject pipe(project->lookupObject(m_controller->idOfKey("H1")));
    DomainObjectDataAccessor accessor;
    accessor.setDomainObject(pipe);
    TemplateLoader form;
    form.setTemplateId(pipe.queryTemplateId());
    ObjectContentListModel fields;
    fields.setDataAccessor(&accessor);
    fields.setTemplateLoader(&form);
    const auto label = [&fields](const QString& column) {
        for (int row = 0; row < fields.rowCount(); ++row) {
            if (fields.index(row).data(ObjectContentListModel::BoundColumnRole).toString() == column)
                return fields.index(row).data(ObjectContentListModel::TextRole).toString();
        }
        return QString();
    };
    QCOMPARE(label("OBJ_Street"), QStringLiteral("Street"));

    Language::instance().choose("de");

    QCOMPARE(label("OBJ_Street"), QString::fromUtf8("Stra\xc3\x9f"
                                                    "e"));
    QCOMPARE(label("OBJ_City"), QStringLiteral("Ort"));
}

void tst_Language::aProjectSaysItsOwnUnit()
{
    TestProject inFeet;
    inFeet.project()->updateValue("PRJ_DistanceUnit", 2);
    const auto before = Torvik::AppState::instance().getActiveProject();

    Torvik::AppState::instance().setActiveProject(inFeet.project());
    QVERIFY(Torvik::Base::ShownUnit::instance().imperial());

    Torvik::AppState::instance().setActiveProject(before);
    QVERIFY(!Torvik::Base::ShownUnit::instance().imperial());
    inFeet.close();
}

KX_SCENE_TEST_MAIN(tst_Language)
#include "tst_Language.moc"
