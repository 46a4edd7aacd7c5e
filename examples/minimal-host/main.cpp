// A host of the view in as few lines as it takes: one window, no map, no screens. minimal-host PROJECT [PICTURE]
#include "domain/boundary/AppState.h"
#include "domain/boundary/CProjectObject.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "geo/CApplicationSettingsLastAddress.h"
#include "geo/GdalGeoProjector.h"
#include "host/domain/ProjectStore.h"
#include "interaction/Utils3d.h"
#include "plans/FloorNav.h"
#include "scene/GlobalNav.h"
#include "scene/SceneApplication.h"
#include "scene/SceneRoot.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickWindow>
#include <QTimer>

using namespace Torvik;
using QmlWrapper::CQmlDomainObject;

class AppStateData : public QObject {
    Q_OBJECT
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject activeProject READ project NOTIFY changed)
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject activeInspection READ inspection WRITE setInspection NOTIFY changed)
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject activeStructure READ structure NOTIFY changed)
    Q_PROPERTY(Torvik::QmlWrapper::CQmlDomainObject invalidObject READ none CONSTANT)

public:
    AppStateData()
    {
        for (const auto signal : {&AppState::activeProjectChanged, &AppState::activeInspectionChanged,
                                  &AppState::activeStructureChanged})
            connect(&AppState::instance(), signal, this, &AppStateData::changed);
    }
    CQmlDomainObject project() const { return CQmlDomainObject(AppState::instance().getActiveProject()); }
    CQmlDomainObject inspection() const { return CQmlDomainObject(AppState::instance().getActiveInspection()); }
    void setInspection(const CQmlDomainObject& object) { AppState::instance().setActiveInspection(object.object()); }
    CQmlDomainObject structure() const { return CQmlDomainObject(AppState::instance().getActiveStructure()); }
    CQmlDomainObject none() const { return {}; }

signals:
    void changed();
};

template <typename Type>
void shareSingleton(const char* module, const char* name, Type& object)
{
    QQmlEngine::setObjectOwnership(&object, QQmlEngine::CppOwnership);
    qmlRegisterSingletonInstance(module, 1, 0, name, &object);
}

void registerModules(AppStateData& state)
{
    View3d::SceneRoot::registerMetaTypes();
    CApplicationSettingsLastAddress::initialize();
    shareSingleton("Torvik.Geo", "GeoProjector", *View3d::GdalGeoProjector::instance());
    shareSingleton("Torvik.Shared", "AppSettingsLastAddress", CApplicationSettingsLastAddress::instance());
    const auto file = [](const char* name) { return QUrl(QStringLiteral("qrc:/minimal/%1.qml").arg(name)); };
    qmlRegisterType(file("Translator"), "utils", 1, 0, "Translator");
    qmlRegisterType(file("ScreenPointer"), "ostel.controls", 1, 0, "ScreenPointer");
    qmlRegisterSingletonType(file("MessageBox"), "ostel.controls", 1, 0, "MessageBox");
    qmlRegisterSingletonType(file("MessageBox"), "ostel.controls", 1, 0, "WaitingBox");
    qmlRegisterType(file("VideoCreationHandler"), "Torvik.Application", 1, 0, "VideoCreationHandler");
    shareSingleton("Torvik.Database", "DomainObjectProvider", state);
}

int main(int argc, char** argv)
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    View3d::SceneApplication app(argc, argv);
    AppStateData state;
    registerModules(state);
    QQmlApplicationEngine engine;
    engine.addImportPath("qrc:/qml");
    QQmlContext& context = *engine.rootContext();
    context.setContextProperty("GlobalNav", View3d::GlobalNav::instance());
    context.setContextProperty("FloorNav", &View3d::FloorNav::instance());
    context.setContextProperty("Utils3D", &View3d::Utils3d::instance());
    context.setContextProperty("appState", &state);
    QObject* const host = QQmlComponent(&engine, QUrl("qrc:/minimal/Host.qml")).create();
    host->setParent(&engine); // outlives the window
    for (const char* name :
         {"belmora", "ostel", "design", "formatHelper", "screenManager", "pageStack", "font_Regular"})
        context.setContextProperty(name, host->property(name));
    engine.load(QUrl("qrc:/minimal/Main.qml"));
    View3d::GdalGeoProjector::instance()->initFromMap(51.0, 10.0, 0.0);

    auto& store = Database::ProjectStore::instance();
    const auto opened = argc > 1 ? store.open(QString::fromLocal8Bit(argv[1])) : Database::OpenedProject {};
    if (!opened.project)
        return qWarning("%s", qPrintable(argc > 1 ? opened.error : "minimal-host PROJECT [PICTURE]")), 1;
    AppState::instance().setActiveProject(opened.project);
    if (argc > 2)
        QTimer::singleShot(3000, &app, [&] {
            auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
            app.exit(window && window->grabWindow().save(QString::fromLocal8Bit(argv[2])) ? 0 : 1);
        });
    const int status = app.exec();
    store.close(opened.project);
    return status;
}

#include "main.moc"
