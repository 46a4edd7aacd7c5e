#include "host/modules/HostModules.h"

#include "geo/CApplicationSettingsLastAddress.h"
#include "geo/GdalGeoProjector.h"
#include "host/domain/ShownUnit.h"
#include "host/modules/Belmora.h"
#include "host/modules/FormatHelper.h"
#include "host/modules/Language.h"
#include "host/modules/ObjectContent.h"
#include "host/modules/Ostel.h"
#include "host/modules/Screens.h"
#include "host/modules/Video.h"
#include "interaction/Utils3d.h"
#include "plans/FloorNav.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQml>

// Q_INIT_RESOURCE does not work inside a namespace.
static void initHostModuleResources()
{
    Q_INIT_RESOURCE(hostmodules);
}

namespace Torvik::Viewer {

namespace {

QObject* geoProjector(QQmlEngine* engine, QJSEngine*)
{
    auto* projector = View3d::GdalGeoProjector::instance();
    engine->setObjectOwnership(projector, QQmlEngine::CppOwnership);
    return projector;
}

QObject* lastAddress(QQmlEngine* engine, QJSEngine*)
{
    auto& settings = CApplicationSettingsLastAddress::instance();
    engine->setObjectOwnership(&settings, QQmlEngine::CppOwnership);
    return &settings;
}

QObject* domainObjectProvider(QQmlEngine*, QJSEngine*)
{
    return new DomainObjectProvider;
}

void registerTypesOnce()
{
    static const bool done = [] {
        initHostModuleResources();
        View3d::SceneRoot::registerMetaTypes();
        qmlRegisterSingletonType<View3d::GdalGeoProjector>("Torvik.Geo", 1, 0, "GeoProjector", &geoProjector);
        qmlRegisterSingletonType<CApplicationSettingsLastAddress>("Torvik.Shared", 1, 0, "AppSettingsLastAddress",
                                                                  &lastAddress);
        CApplicationSettingsLastAddress::initialize();
        registerObjectContentTypes();
        qmlRegisterSingletonType<DomainObjectProvider>("Torvik.Database", 1, 0, "DomainObjectProvider",
                                                       &domainObjectProvider);
        qmlRegisterUncreatableType<VideoCreationHandler>("Torvik.Application", 1, 0, "VideoCreationHandler",
                                                         QStringLiteral("belmora has it"));
        qRegisterMetaType<QmlWrapper::CQmlDomainObject>();
        return true;
    }();
    Q_UNUSED(done)
}

QObject* createDesign(QQmlEngine& engine)
{
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qml/host/Design.qml")));
    QObject* design = component.create();
    if (!design) {
        qFatal("The style tree does not load: %s", qPrintable(component.errorString()));
    }
    design->setParent(&engine);
    return design;
}

} // namespace

void registerHostModules(QQmlEngine& engine)
{
    registerTypesOnce();
    engine.addImportPath(QStringLiteral("qrc:/qml"));

    QQmlContext* context = engine.rootContext();
    context->setContextProperty(QStringLiteral("GlobalNav"), View3d::GlobalNav::instance());
    context->setContextProperty(QStringLiteral("FloorNav"), &View3d::FloorNav::instance());
    context->setContextProperty(QStringLiteral("Utils3D"), &View3d::Utils3d::instance());
    context->setContextProperty(QStringLiteral("belmora"), new Belmora(&engine));
    context->setContextProperty(QStringLiteral("ostel"), new Ostel(&engine));
    context->setContextProperty(QStringLiteral("formatHelper"), new FormatHelper(&engine));
    context->setContextProperty(QStringLiteral("language"), &Language::instance());
    context->setContextProperty(QStringLiteral("units"), &Base::ShownUnit::instance());
    QObject::connect(&Language::instance(), &Language::changed, &engine, &QQmlEngine::retranslate);
    auto* pages = new PageStack(&engine);
    context->setContextProperty(QStringLiteral("pageStack"), pages);
    context->setContextProperty(QStringLiteral("screenManager"), new ScreenManager(&engine));
    context->setContextProperty(QStringLiteral("font_Regular"),
                                QVariantMap {{QStringLiteral("name"), QGuiApplication::font().family()}});
    context->setContextProperty(QStringLiteral("design"), createDesign(engine));
}

} // namespace Torvik::Viewer
