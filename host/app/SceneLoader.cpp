#include "host/app/SceneLoader.h"

#include "domain/EntitiesManager.h"
#include "domain/boundary/AppState.h"
#include "scene/SceneRoot.h"

namespace Torvik::Viewer {

namespace {

constexpr int sceneLookoutMs = 20;

} // namespace

SceneLoader::SceneLoader(QObject* parent)
    : QObject(parent)
{
    m_waitForScene.setInterval(sceneLookoutMs);
    connect(&m_waitForScene, &QTimer::timeout, this, &SceneLoader::tryToStart);
}

void SceneLoader::load(const QSharedPointer<Database::CProjectObject>& project)
{
    m_project = project;
    m_loading = true;
    m_waitForScene.start();
}

void SceneLoader::tryToStart()
{
    View3d::SceneRoot* root = View3d::SceneRoot::instance();
    if (!root)
        return;
    m_waitForScene.stop();
    if (!m_connected) {
        m_connected = true;
        View3d::EntitiesManager* manager = &root->entitiesManager();
        connect(manager, &View3d::EntitiesManager::loadingProgress, this, &SceneLoader::progress);
        connect(manager, &View3d::EntitiesManager::loadingFinished, this, &SceneLoader::onSceneFilled);
    }
    emit starting();
    AppState::instance().setActiveProject(m_project);
}

void SceneLoader::onSceneFilled()
{
    if (!m_loading)
        return;
    m_loading = false;
    m_project.clear();
    // The objects still answer one another by posted events; who hears of the end sees the scene settled.
    QTimer::singleShot(0, this, [this] { QTimer::singleShot(0, this, &SceneLoader::finished); });
}

} // namespace Torvik::Viewer
