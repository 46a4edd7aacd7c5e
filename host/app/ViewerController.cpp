#include "host/app/ViewerController.h"

#include "domain/boundary/AppState.h"
#include "host/app/InspectionLookup.h"
#include "host/app/PlanMessages.h"
#include "host/app/ProjectLists.h"
#include "host/app/SceneReader.h"
#include "host/app/ViewFit.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/ShownUnit.h"
#include "host/domain/StoreTrouble.h"
#include "host/modules/Language.h"
#include "plans/PlanLoader.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <QDir>
#include <QFileInfo>
#include <Qt3DRender/QCamera>

#include <algorithm>

namespace Torvik::Viewer {

using Database::OpenedProject;
using Database::ProjectStore;
using View3d::CameraController;
using View3d::SceneRoot;

namespace {

/** Reading takes about this part of the time that opening takes; the scene takes the rest. */
constexpr double partOfReading = 0.3;
/** An object that was gone to is seen with some metres of what lies around it. */
constexpr double closestGoTo = 200.0;

int viewTypeOf(StandardView view)
{
    switch (view) {
    case StandardView::Top:
        return CameraController::View2dTop;
    case StandardView::Front:
        return CameraController::View2dFront;
    case StandardView::Perspective:
        break;
    }
    return CameraController::View3d;
}

double aspectOfScene()
{
    const SceneRoot* root = SceneRoot::instance();
    return root && root->sceneHeight() > 0 ? root->sceneWidth() / root->sceneHeight() : 1.0;
}

CameraPose poseOf(const Qt3DRender::QCamera& camera)
{
    return {camera.position(), camera.viewCenter(), camera.upVector()};
}

} // namespace

ViewerController::ViewerController(QObject* parent)
    : QObject(parent)
{
    connect(&m_loader, &SceneLoader::progress, this, [this](int done, int total) {
        const double part = total > 0 ? double(done) / total : 1.0;
        setProgress(partOfReading + (1 - partOfReading) * part,
                    tr("Building the scene: %1 of %2").arg(done).arg(total));
    });
    connect(&m_loader, &SceneLoader::starting, this, &ViewerController::followPlan);
    connect(&m_loader, &SceneLoader::finished, this, &ViewerController::onSceneFilled);
    connect(&m_selection, &SceneSelection::changed, this, &ViewerController::onSelectionChanged);
    connect(&m_observations, &ObservationPage::numberChanged, this, [this] {
        if (m_project && !m_busy)
            m_inspections.setObjects(ProjectLists::inspections(*m_project));
        m_desk.writeAnew();
    });
    connect(&AppState::instance(), &AppState::activeInspectionChanged, this,
            [this](const CDomainObjectPointer& inspection) {
                if (inspection)
                    m_observations.setInspection(inspection);
            });
    connect(&Language::instance(), &Language::changed, this, &ViewerController::writeAnew);
    connect(this, &ViewerController::currentIdChanged, this, [this] { m_desk.setCurrentId(m_currentId); });
    connect(&m_desk, &AppDesk::goToWanted, this, &ViewerController::goTo);
    connect(&m_desk, &AppDesk::deleted, this, [this] {
        setCurrentId({});
        writeAnew();
    });
    connect(&Base::ShownUnit::instance(), &Base::ShownUnit::changed, this, &ViewerController::writeAnew);
    connect(this, &ViewerController::currentIdChanged, this, &ViewerController::currentIdsChanged);
    connect(this, &ViewerController::projectChanged, &m_plans, &PlanWork::reset);
    connect(&m_plans, &PlanWork::floorMissing, this, &ViewerController::addPlanTrouble);
    connect(&ProjectStore::instance(), &ProjectStore::writeFailed, this, &ViewerController::setError);
    auto& trouble = Database::StoreTrouble::instance();
    connect(&trouble, &Database::StoreTrouble::begun, this, &ViewerController::setTrouble);
    connect(&trouble, &Database::StoreTrouble::over, this, [this] { setTrouble({}); });
    connect(&trouble, &Database::StoreTrouble::lost, this, &ViewerController::setError);
}

ViewerController::~ViewerController() = default;

void ViewerController::openProject(const QUrl& folder)
{
    openFolder(folder.isLocalFile() ? folder.toLocalFile() : folder.toString());
}

void ViewerController::openFolder(const QString& folder)
{
    if (m_busy)
        return;
    // Something else that was dropped on the window, or was a project once, closes none.
    if (m_project && !QFileInfo(ProjectStore::databaseFile(folder)).isFile()) {
        setError(tr("%1 is no project. The one that is open stays open.").arg(folder));
        emit openingFailed();
        return;
    }
    closeProject();
    dismissError();
    m_projectName = QFileInfo(QDir(folder).absolutePath()).fileName();
    emit projectChanged();
    setBusy(true);
    setProgress(0, tr("Reading %1").arg(m_projectName));
    // The reading thread reports; what it says is shown on this one.
    const auto progress = [this](int done, int total) {
        QMetaObject::invokeMethod(
            this,
            [this, done, total] {
                if (m_busy && !m_loader.isLoading() && total > 0)
                    setProgress(partOfReading * done / total, tr("Reading %1").arg(m_projectName));
            },
            Qt::QueuedConnection);
    };
    ProjectStore::instance().openInBackground(
        folder, ProjectStore::ReadWrite, this, [this](const OpenedProject& opened) { onRead(opened); }, progress);
}

void ViewerController::onRead(const OpenedProject& opened)
{
    if (!opened.project) {
        m_projectName.clear();
        emit projectChanged();
        setBusy(false);
        setError(opened.error);
        emit openingFailed();
        return;
    }
    m_project = opened.project;
    emit projectChanged();
    fillLists();
    m_loader.load(m_project);
}

void ViewerController::onSceneFilled()
{
    m_bounds = boundsOf(SceneReader::snapshot());
    followCamera();
    m_selection.follow();
    setProgress(1, {});
    setBusy(false);
    m_plans.layFloors(projectFolder());
    takeOpeningView();
    emit opened();
}

void ViewerController::followPlan()
{
    if (m_planFollowed)
        return;
    m_planFollowed = true;
    const View3d::PlanLoader* const loader = SceneRoot::instance()->planLoader();
    // Of one that the user has chosen its own screen tells.
    const auto tell = [this](const QString& text) {
        if (!m_plans.loading())
            setPlanTrouble(text);
    };
    connect(loader, &View3d::PlanLoader::problemArisen, this, [loader, tell] { tell(loader->problem()); });
    connect(loader, &View3d::PlanLoader::corruptedPlanFile, this,
            [loader, tell] { tell(PlanMessages::unreadable(loader->planPath())); });
    connect(loader, &View3d::PlanLoader::fileTooLarge, this,
            [loader, tell](const View3d::SizeInfo& size) { tell(PlanMessages::tooLarge(loader->planPath(), size)); });
    connect(loader, &View3d::PlanLoader::pdfConverterProblem, this,
            [loader, tell] { tell(PlanMessages::converterFailed(loader->planPath())); });
}

void ViewerController::takeOpeningView()
{
    QString id;
    if (!m_openingView.goToKey.isEmpty()) {
        id = idOfKey(m_openingView.goToKey);
        if (id.isEmpty())
            setError(tr("%1 has no object with the key \"%2\"").arg(m_projectName, m_openingView.goToKey));
    }
    if (!m_openingView.inspectKey.isEmpty()) {
        const auto inspection = inspectionOfKey(m_openingView.inspectKey);
        if (!inspection)
            setError(tr("%1 has no inspection \"%2\"").arg(m_projectName, m_openingView.inspectKey));
        AppState::instance().setActiveInspection(inspection);
    }
    lookAt(id, m_openingView.view, m_openingView.distance, false);
    // The wish was for the first project only.
    m_openingView.goToKey.clear();
    m_openingView.inspectKey.clear();
    m_openingView.distance.reset();
}

void ViewerController::closeProject()
{
    if (m_busy || !m_project)
        return;
    m_plans.storeFloors();
    ProjectStore::instance().close(m_project);
    m_project.clear();
    m_projectName.clear();
    m_bounds = {};
    setCurrentId({});
    m_nodes.setObjects({});
    m_sections.setObjects({});
    m_inspections.setObjects({});
    m_observations.setInspection({});
    emit projectChanged();
}

void ViewerController::fillLists()
{
    m_nodes.setObjects(ProjectLists::nodes(*m_project));
    m_sections.setObjects(ProjectLists::pipes(*m_project));
    m_inspections.setObjects(ProjectLists::inspections(*m_project));
}

void ViewerController::writeAnew()
{
    if (m_project && !m_busy)
        fillLists();
    m_observations.writeAnew();
}

QString ViewerController::idOfKey(const QString& key) const
{
    for (const ObjectListModel* model : {&m_nodes, &m_sections}) {
        const QString id = model->idOfKey(key);
        if (!id.isEmpty())
            return id;
    }
    return {};
}

QSharedPointer<Database::CPipeInspectionObject> ViewerController::inspectionOfKey(const QString& key) const
{
    return m_project ? Viewer::inspectionOfKey(*m_project, key) : nullptr;
}

void ViewerController::lookAt(const QString& id, StandardView view, std::optional<double> distance, bool animated)
{
    const Bounds bounds = id.isEmpty() ? m_bounds : SceneReader::boundsOfObject(id);
    CameraPose pose = fittingPose(bounds, view, aspectOfScene());
    if (id.isEmpty() && !bounds.isEmpty() && !distance)
        pose = ViewFit::wholeProject(pose, m_view);
    if (!id.isEmpty())
        pose = standardPose(view, pose.center, std::max(closestGoTo, double((pose.center - pose.position).length())));
    if (distance)
        pose = standardPose(view, pose.center, *distance);
    setCurrentId(id);
    emit requestPose(pose.position, pose.center, pose.up, viewTypeOf(view), animated);
}

void ViewerController::goTo(const QString& id)
{
    const Bounds bounds = SceneReader::boundsOfObject(id);
    if (bounds.isEmpty()) {
        setError(tr("This object has no place in the scene."));
        return;
    }
    m_selection.select(id);
    setCurrentId(id);
    showObservationsOf(id);
    bringIntoView(bounds);
}

void ViewerController::onSelectionChanged()
{
    const QStringList ids = m_selection.ids();
    if (!ids.contains(m_currentId))
        setCurrentId(ids.value(0));
    showObservationsOf(m_selection.inspectionId());
    emit currentIdsChanged();
}

void ViewerController::showObservationsOf(const QString& id)
{
    const auto object = m_project ? m_project->lookupObject(id) : nullptr;
    if (object && object->objectType() == Database::PipeInspectionObjectType)
        m_observations.setInspection(object);
}

QStringList ViewerController::currentIds() const
{
    QStringList ids = m_selection.ids();
    if (!m_currentId.isEmpty() && !ids.contains(m_currentId))
        ids << m_currentId;
    return ids;
}

void ViewerController::setView(QQuickItem* view)
{
    if (m_view == view)
        return;
    m_view = view;
    emit viewChanged();
}

void ViewerController::fit()
{
    setCurrentId({});
    const Qt3DRender::QCamera* camera = SceneRoot::camera();
    if (!camera || m_bounds.isEmpty())
        return;
    const CameraPose pose = ViewFit::wholeProject(poseOf(*camera), m_view);
    emit requestPose(pose.position, pose.center, pose.up, View3d::GlobalNav::instance()->viewType(), true);
}

void ViewerController::bringIntoView(const Bounds& bounds)
{
    const Qt3DRender::QCamera* camera = SceneRoot::camera();
    if (!camera || bounds.isEmpty())
        return;
    const CameraPose now = poseOf(*camera);
    const double distance = std::max(closestGoTo, distanceToFit(bounds, now, aspectOfScene()));
    const CameraPose pose = movedPose(now, bounds.center(), distance);
    emit requestPose(pose.position, pose.center, pose.up, View3d::GlobalNav::instance()->viewType(), true);
}

void ViewerController::followCamera()
{
    Qt3DRender::QCamera* camera = SceneRoot::camera();
    if (!camera || m_cameraFollowed)
        return;
    m_cameraFollowed = true;
    connect(camera, &Qt3DRender::QCamera::viewVectorChanged, this, &ViewerController::adaptLens);
    connect(camera, &Qt3DRender::QCamera::positionChanged, this, &ViewerController::adaptLens);
}

void ViewerController::adaptLens()
{
    Qt3DRender::QCamera* camera = SceneRoot::camera();
    if (!camera)
        return;
    const LensRange range = lensRange(poseOf(*camera), m_bounds);
    camera->setNearPlane(range.nearPlane);
    camera->setFarPlane(range.farPlane);
}

QString ViewerController::errorText() const
{
    QStringList texts {m_troubleText, m_planText, m_errorText};
    texts.removeAll({});
    return texts.join(QLatin1Char('\n'));
}

void ViewerController::dismissError()
{
    setError({});
    setPlanTrouble({});
    setTrouble({});
}

void ViewerController::setFilter(const QString& filter)
{
    m_nodes.setFilter(filter);
    m_sections.setFilter(filter);
    m_inspections.setFilter(filter);
}

void ViewerController::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    m_plans.setProjectFilling(busy);
    emit busyChanged();
}

void ViewerController::setProgress(double progress, const QString& text)
{
    m_progress = progress;
    m_progressText = text;
    emit progressChanged();
}

void ViewerController::setError(const QString& text)
{
    if (m_errorText == text)
        return;
    m_errorText = text;
    emit errorTextChanged();
}

void ViewerController::setPlanTrouble(const QString& text)
{
    if (m_planText == text)
        return;
    m_planText = text;
    emit errorTextChanged();
}

void ViewerController::addPlanTrouble(const QString& text)
{
    setPlanTrouble(m_planText.isEmpty() ? text : m_planText + QLatin1Char('\n') + text);
}

void ViewerController::setTrouble(const QString& text)
{
    if (m_troubleText == text)
        return;
    m_troubleText = text;
    emit errorTextChanged();
}

void ViewerController::setCurrentId(const QString& id)
{
    if (m_currentId == id)
        return;
    m_currentId = id;
    emit currentIdChanged();
}

} // namespace Torvik::Viewer
