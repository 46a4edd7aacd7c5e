#include "host/app/HeadlessScene.h"

#include "host/app/SceneLoader.h"
#include "scene/SceneRoot.h"

#include <QEventLoop>
#include <Qt3DRender/QCamera>

namespace Torvik::Viewer::HeadlessScene {

void show(const QSharedPointer<Database::CProjectObject>& project)
{
    View3d::SceneRoot::registerMetaTypes();
    auto* root = new View3d::SceneRoot;
    root->setCamera(new Qt3DRender::QCamera(root));
    root->qmlOnCompleted();

    SceneLoader loader;
    QEventLoop untilFilled;
    QObject::connect(&loader, &SceneLoader::finished, &untilFilled, &QEventLoop::quit);
    loader.load(project);
    untilFilled.exec();
}

QString layPlan(const PlanWish& wish)
{
    PlanDesk desk;
    QEventLoop untilLaid;
    QString error;
    desk.lay(wish, [&](const QString& reason) {
        error = reason;
        untilLaid.quit();
    });
    untilLaid.exec();
    return error;
}

} // namespace Torvik::Viewer::HeadlessScene
