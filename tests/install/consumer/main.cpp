#include "domain/PipeEntityBuilder.h"
#include "scene/SceneRoot.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>

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
    return root && root.data() == SceneRoot::instance() ? 0 : 1;
}
