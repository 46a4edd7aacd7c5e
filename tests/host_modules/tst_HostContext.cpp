#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "host/modules/HostModules.h"
#include "host/modules/Screens.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik;
using namespace Torvik::Viewer;
using Kx::Test::TestProject;

/** What QML finds in the context that the host prepares for it. */
class tst_HostContext : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerHostModules(m_engine); }

    void cleanup()
    {
        AppState::instance().setActiveProject({});
        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitMetres);
    }

    void theNamesStandForTheSharedInstances()
    {
        const auto property = [this](const char* name) {
            return m_engine.rootContext()->contextProperty(name).value<QObject*>();
        };
        QCOMPARE(property("Utils3D"), &View3d::Utils3d::instance());
        QCOMPARE(&View3d::Utils3d::instance(), &View3d::Utils3d::instance());
        QCOMPARE(property("GlobalNav"), View3d::GlobalNav::instance());
        const auto object = create("import QtQml 2.12\nimport Torvik.Geo 1.0\n"
                                   "QtObject { property var projector: GeoProjector }");
        QVERIFY(object);
        QCOMPARE(object->property("projector").value<QObject*>(), View3d::GdalGeoProjector::instance());
        QCOMPARE(QQmlEngine::objectOwnership(View3d::GdalGeoProjector::instance()), QQmlEngine::CppOwnership);
    }

    void whatIsActiveIsBound()
    {
        TestProject p;
        const auto pipe = p.addSection("S", p.addNode("A"), {});
        const auto inspection = p.addInspection(pipe);
        const auto object = create("import QtQml 2.12\nQtObject {"
                                   "  property var app: belmora.appStateData\n"
                                   "  property bool project: app.activeProject.valid\n"
                                   "  property bool threeD: app.project3dActive\n"
                                   "  property bool inspection: app.activeInspection.valid\n"
                                   "  property bool structure: app.activeStructure.valid\n"
                                   "  property string all: [project, threeD, inspection, structure].join() }");
        QVERIFY(object);
        const auto all = [&object] { return object->property("all").toString(); };

        QCOMPARE(all(), QString("false,false,false,false"));
        p.activate();
        QCOMPARE(all(), QString("true,true,false,false"));
        AppState::instance().setActiveStructure(pipe);
        QCOMPARE(all(), QString("true,true,false,true"));
        AppState::instance().setActiveInspection(inspection);
        QCOMPARE(all(), QString("true,true,true,true"));
        AppState::instance().setActiveInspection({});
        QCOMPARE(all(), QString("true,true,false,true"));
        AppState::instance().setActiveStructure({});
        QCOMPARE(all(), QString("true,true,false,false"));
        TestProject flat({}, false);
        flat.activate();
        QCOMPARE(all(), QString("true,false,false,false"));
        flat.close();
        QCOMPARE(all(), QString("false,false,false,false"));
    }

    void anObjectAnswersInQml()
    {
        TestProject p;
        const auto node = p.addNode("A");
        const auto inspection = p.addInspection(p.addSection("S", node, {}));
        p.activate();
        AppState::instance().setActiveInspection(inspection);
        const auto object = create("import QtQml 2.12\nQtObject {"
                                   "  property var it: belmora.appStateData.activeInspection\n"
                                   "  property var all: [it.valid, it.id(), it.objectType(), it.queryName(),"
                                   "    it.queryTemplateId(), it.getStartNode().id(), it.getStartNode().valid,"
                                   "    it.getStartNode().getStartNode().valid] }");
        QVERIFY(object);
        QCOMPARE(object->property("all").toList(),
                 (QVariantList {true, inspection->id(), 5, "S", "SECINSP", node->id(), true, false}));
    }

    void lengthsComeInTheProjectsUnit()
    {
        const QByteArray label = "import \"qrc:/qml/view3d\"\nLengthLabel { value: 10 }";
        const auto unit = [this] {
            return create("import QtQml 2.12\nQtObject { property string unit: formatHelper.distanceUnitString() }")
                ->property("unit")
                .toString();
        };
        const auto shown = [this, &label] {
            const auto object = create(label);
            const auto* const item = qobject_cast<QQuickItem*>(object.get());
            return item ? item->childItems().value(0)->property("text").toString() : QString();
        };

        QCOMPARE(unit(), QString("m"));
        QCOMPARE(shown(), QString("10 m"));
        Base::HostSettings::setDistanceUnit(Base::HostSettings::unitFeet);
        QCOMPARE(unit(), QString("ft"));
        QCOMPARE(shown(), QString("33 ft"));
    }

    void aScreenIsAskedForWithItsArguments()
    {
        auto* const screens = m_engine.rootContext()->contextProperty("screenManager").value<ScreenManager*>();
        QVERIFY(screens);
        QSignalSpy asked(screens, &ScreenManager::screenRequested);

        QVERIFY(create("import QtQml 2.12\nQtObject { Component.onCompleted: {"
                       "  screenManager.show('settings', {page: 3, from: 'view'})\n"
                       "  screenManager.show('plan') } }"));

        QCOMPARE(asked.count(), 2);
        QCOMPARE(asked[0][0].toString(), QString("settings"));
        QCOMPARE(asked[0][1].toMap(), (QVariantMap {{"page", 3}, {"from", "view"}}));
        QCOMPARE(asked[1][0].toString(), QString("plan"));
        QVERIFY(asked[1][1].toMap().isEmpty());
    }

private:
    std::unique_ptr<QObject> create(const QByteArray& qml)
    {
        QQmlComponent component(&m_engine);
        component.setData(qml, QUrl());
        std::unique_ptr<QObject> object(component.create());
        if (!object)
            qWarning("%s", qPrintable(component.errorString()));
        return object;
    }

    QQmlEngine m_engine;
};

KX_SCENE_TEST_MAIN(tst_HostContext)
#include "tst_HostContext.moc"
