#include "benchmarks/LiveScene.h"

#include "domain/boundary/AppState.h"
#include "host/domain/ProjectStore.h"
#include "scene/SceneRoot.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <Qt3DRender/QCamera>

namespace Torvik::Bench {

using View3d::EntitiesManager;

namespace {

constexpr int settleFrames = 4;

template <typename Signal>
void waitFor(const EntitiesManager& manager, Signal signal)
{
    QEventLoop loop;
    QObject::connect(&manager, signal, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

LiveScene::LiveScene(Stage::Kind kind)
    : m_stage(kind)
    , m_root(new View3d::SceneRoot)
{
    m_root->setParent(m_stage.root());
    m_root->setCamera(m_stage.camera());
    m_root->setSceneWidth(Stage::width);
    m_root->setSceneHeight(Stage::height);
    m_root->qmlOnCompleted();
    m_stage.waitFrames(settleFrames);
}

QSharedPointer<Database::CProjectObject> LiveScene::open(const QString& folder) const
{
    const auto opened = Database::ProjectStore::instance().open(folder);
    if (!opened.project)
        qFatal("%s", qPrintable(opened.error));
    bool loaded = false;
    QObject context;
    QObject::connect(&m_root->entitiesManager(), &EntitiesManager::loadingFinished, &context, [&] { loaded = true; });
    AppState::instance().setActiveProject(opened.project);
    if (!loaded)
        waitFor(m_root->entitiesManager(), &EntitiesManager::loadingFinished);
    m_stage.waitFrames(settleFrames);
    return opened.project;
}

void LiveScene::close(const QSharedPointer<Database::CProjectObject>& project) const
{
    Database::ProjectStore::instance().close(project);
    if (m_root->entitiesManager().isBusy())
        waitFor(m_root->entitiesManager(), &EntitiesManager::removalFinished);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_stage.waitFrames(settleFrames);
}

void LiveScene::lookDown(const QVector3D& point, float height) const
{
    m_stage.camera()->setPosition(point + QVector3D(0.0F, height, 0.0F));
    m_stage.camera()->setViewCenter(point);
    m_stage.camera()->setUpVector(QVector3D(0.0F, 0.0F, 1.0F));
    m_stage.waitFrames(settleFrames);
}

} // namespace Torvik::Bench
