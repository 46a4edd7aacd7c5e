#include "domain/PipeEntityBuilder.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/PointsAccess.h"
#include "scene/SceneRoot.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

using Torvik::View3d::InspPointsAccess;
using Torvik::View3d::MeasurementPointsAccess;
using Torvik::View3d::MeasurementPointsHandler;
using Torvik::View3d::PipeEntityBuilder;
using Torvik::View3d::SceneRoot;

/** A host at its smallest: registers the view and has QML make its root. */
int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    SceneRoot::registerMetaTypes();
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import com.torvik.view3d 1.0\nSceneRoot { gridVisible: false }", QUrl());
    QScopedPointer<QObject> root(component.create());
    if (!root)
        qWarning("%s", qPrintable(component.errorString()));
    // What a host may call beside the root.
    PipeEntityBuilder builder;
    if (builder.createOrReplace(nullptr, nullptr, {}))
        return 1;
    // Without a project there is nothing to find.
    MeasurementPointsAccess measured(QStringLiteral("inspection"));
    InspPointsAccess inspected(QStringLiteral("inspection"));
    inspected.readPoints({});
    MeasurementPointsHandler::instance()->switchToInspection(QStringLiteral("inspection"));
    MeasurementPointsHandler::instance()->waitUntilStored();
    if (!measured.countInclinationMeasurement().isEmpty())
        return 1;
    return root && root.data() == SceneRoot::instance() ? 0 : 1;
}
