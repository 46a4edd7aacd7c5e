#include "plans/PlanLoader.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CLogger.h"
#include "plans/IBackgroundPlan.h"
#include "plans/PlanFiles.h"
#include "plans/PlanSettingsIO.h"
#include "scene/SceneEntities.h"

#include <QTimer>

namespace Torvik::View3d {

PlanLoader::PlanLoader(QObject* parent)
    : PlanLoader(parent, TooLarge::EndsAtOnce)
{
}

PlanLoader::PlanLoader(QObject* parent, TooLarge tooLarge)
    : QObject(parent)
    , m_tooLarge(tooLarge)
{
}

PlanLoader::~PlanLoader() = default;

bool PlanLoader::planLoading() const
{
    return !m_plan.isNull();
}

qlonglong PlanLoader::getPlanFileSizeLimit(QString extension)
{
    return PlanFiles::sizeLimit(extension);
}

bool PlanLoader::validFile(const QString& path) const
{
    return PlanFiles::isValid(path);
}

void PlanLoader::setProblem(const QString& problem)
{
    m_problem = problem;
    if (problem.isEmpty())
        return;
    Logging::CLogger::logMessage(Logging::LogWarning, QStringLiteral("Torvik::PlanLoader"), problem);
    emit problemArisen();
}

bool PlanLoader::begin(const QString& path)
{
    m_path = path;
    m_plan = createNewPlan(path);
    if (!m_plan) {
        setProblem(tr("%1 is no kind of plan that can be laid").arg(path));
        return false;
    }
    emit planLoadingChanged();
    return true;
}

void PlanLoader::connectCommon(IBackgroundPlan* plan)
{
    connect(plan, &IBackgroundPlan::progressChanged, this, &PlanLoader::progressPlanLoadChanged);
    connect(plan, &IBackgroundPlan::backgroundLoadingWasCancelled, this, [this, plan = QPointer(plan)] {
        forceCancel();
        // One that was found broken is the loader's no longer, and nobody else's either.
        if (plan)
            plan->deleteLater();
    });
    connect(plan, &IBackgroundPlan::fileTooLarge, this, [this, plan](const SizeInfo& sizeInfo) {
        emit fileTooLarge(sizeInfo);
        if (m_tooLarge == TooLarge::EndsAtOnce)
            forceCancel();
        else
            endUnlessItDoesByItself(plan);
    });
    connect(plan, &IBackgroundPlan::pdfConverterProblem, this, [this](Base::CErrorCode errorCode) {
        forceCancel();
        emit pdfConverterProblem(errorCode);
    });
    connect(plan, &QObject::destroyed, this, [this] {
        emit cancelFinished();
        emit planLoadingChanged();
    });
}

void PlanLoader::loadPlan(QString fullPath)
{
    setProblem({});
    if (!validFile(fullPath))
        return;
    abandon();
    if (!begin(fullPath))
        return;
    connectCommon(m_plan);
    connect(m_plan, &IBackgroundPlan::fileCorrupted, this, &PlanLoader::processsAfterCorrupted);
    // Not every kind tells a cancellation after that, and nobody else knows the plan.
    connect(m_plan, &IBackgroundPlan::fileCorrupted, m_plan, &QObject::deleteLater);
    connect(m_plan, &IBackgroundPlan::backgroundLoadingFinished, this, &PlanLoader::processAfterLoaded);
    m_plan->load();
}

void PlanLoader::loadPlanFromProject(QSharedPointer<Database::CProjectObject> project)
{
    if (SceneEntities::instance().getBackgroundPlan() || !project || project->projectPath().isEmpty() || planLoading())
        return;
    setProblem({});
    PlanSettingsIO io;
    io.tryToLoadPlanSettings(project->projectPath());
    const QString path = io.getPathToPlanImage();
    PlanFiles::recover(path);
    if (path.isEmpty() || !validFile(path)) {
        setProblem(!path.isEmpty() ? tr("The plan of the project cannot be laid: %1 is missing or too large").arg(path)
                                   : io.problem());
        return;
    }
    if (!begin(path))
        return;
    // It is laid all the same, somewhere.
    if (!io.problem().isEmpty())
        setProblem(tr("%1\nThe plan %2 is laid, but perhaps not where it was: place it anew.").arg(io.problem(), path));
    initGeoProjector(io.getPlanSettings());
    connectCommon(m_plan);
    connect(m_plan, &IBackgroundPlan::fileCorrupted, this, [this, plan = m_plan](Base::CErrorCode errorCode) {
        emit corruptedPlanFile(errorCode);
        endUnlessItDoesByItself(plan);
    });
    // Of the tie to the earth that stands now.
    connect(m_plan, &IBackgroundPlan::backgroundLoadingFinished, this,
            [this, settings = io.getPlanSettings()](IBackgroundPlan* plan) {
                processAfterLoadedAndSetTranslation(plan, settings);
            });
    m_plan->load();
}

IBackgroundPlan* PlanLoader::release()
{
    IBackgroundPlan* const plan = m_plan;
    m_plan.clear();
    if (!plan)
        return nullptr;
    disconnect(plan, &QObject::destroyed, this, nullptr);
    // What was under way when the load ended must not be handed on: the plan may be about to be deleted.
    disconnect(plan, &IBackgroundPlan::backgroundLoadingFinished, this, nullptr);
    return plan;
}

void PlanLoader::processAfterLoaded(IBackgroundPlan* plan)
{
    release();
    if (!plan)
        return;
    emit planLoaded(plan);
    emit planLoadingChanged();
}

void PlanLoader::processAfterLoadedAndSetTranslation(IBackgroundPlan* plan, const PlanSettings& settings)
{
    release();
    if (!plan)
        return;
    applyTranslationFromPlanFile(plan, settings);
    emit planLoaded(plan);
    emit planLoadingChanged();
}

void PlanLoader::processsAfterCorrupted(Base::CErrorCode errorCode)
{
    release();
    emit corruptedPlanFile(errorCode);
    emit planLoadingChanged();
}

void PlanLoader::forceCancel()
{
    if (IBackgroundPlan* const plan = release())
        plan->deleteLater();
    emit cancelFinished();
    emit planLoadingChanged();
}

void PlanLoader::endUnlessItDoesByItself(const QPointer<IBackgroundPlan>& plan)
{
    // Mostly a cancellation follows; not every kind tells one.
    QTimer::singleShot(0, this, [this, plan] {
        if (plan && plan == m_plan)
            forceCancel();
    });
}

void PlanLoader::cancel()
{
    if (!m_plan)
        return;
    connect(m_plan, &IBackgroundPlan::backgroundLoadingWasCancelled, this, &PlanLoader::forceCancel);
    m_plan->cancelFileLoading();
}

void PlanLoader::abandon()
{
    if (!m_plan)
        return;
    disconnect(m_plan, nullptr, this, nullptr);
    forceCancel();
}

void PlanLoader::swapPlan(IBackgroundPlan* newPlan)
{
    setProblem({});
    const SceneEntities& entities = SceneEntities::instance();
    const QString project = entities.getProjectPathOrEmptyString();
    if (!newPlan || project.isEmpty())
        return;
    const IBackgroundPlan* const old = entities.getBackgroundPlan();
    const QString target = project + Base::CFileSystemNames::documentationPathPart() + newPlan->fileName();
    const PlanFiles::Swapped swapped = PlanFiles::swap(old ? old->fullPath() : QString(), newPlan->fullPath(), target);
    newPlan->setFullPath(swapped.newPath);
    setProblem(swapped.problem);
}

} // namespace Torvik::View3d
