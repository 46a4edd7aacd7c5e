#include "host/app/PlanWork.h"

#include "domain/boundary/AppState.h"
#include "host/app/PlanCopy.h"
#include "host/app/PlanMessages.h"
#include "network/LowestManholeTracker.h"
#include "plans/FloorNav.h"
#include "plans/FloorPlanLoader.h"
#include "plans/PlanFiles.h"
#include "plans/PlanLoader.h"
#include "plans/PlanSettingsIO.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QDir>
#include <QFileInfo>
#include <QTimer>
#include <QtConcurrent>

namespace Torvik::Viewer {

using Base::CFileSystemNames;
using View3d::FloorNav;
using View3d::FloorPlanLoader;
using View3d::IBackgroundPlan;
using View3d::PlanLoader;
using View3d::SceneEntities;
using View3d::SceneRoot;

namespace {

/** Two taps nearer than that, in metres, are one point. */
constexpr float samePoint = 1e-3F;
/** A drawing does not tell itself that it is locked. */
constexpr char lockedName[] = "lockedToTheView";

QString projectPath()
{
    return SceneEntities::instance().getProjectPathOrEmptyString();
}

QString documentsOf(const QString& project)
{
    return project + CFileSystemNames::documentationPathPart();
}

bool isPlanFile(const QString& file)
{
    static const QStringList endings {QStringLiteral("png"), QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                      QStringLiteral("tif"), QStringLiteral("tiff"), QStringLiteral("bmp"),
                                      QStringLiteral("gif"), QStringLiteral("exif"), QStringLiteral("pdf"),
                                      QStringLiteral("dxf"), QStringLiteral("dwg")};
    return endings.contains(QFileInfo(file).suffix().toLower());
}

} // namespace

PlanWork::PlanWork(QObject* parent)
    : QObject(parent)
{
}

PlanWork::~PlanWork()
{
    if (m_copying)
        m_copying->waitForFinished();
}

IBackgroundPlan* PlanWork::plan() const
{
    return m_floor == underNetwork ? SceneEntities::instance().getBackgroundPlan()
                                   : FloorNav::instance().getFloorPlan(m_floor);
}

void PlanWork::follow()
{
    if (m_following)
        return;
    m_following = true;
    connect(&SceneEntities::instance(), &SceneEntities::planLoadedChanged, this, &PlanWork::watchPlan);
    connect(&FloorNav::instance(), &FloorNav::floorSet, this, &PlanWork::watchPlan);
    connect(&FloorNav::instance(), &FloorNav::floorValuesChanged, this, &PlanWork::changed);
}

void PlanWork::watchPlan()
{
    IBackgroundPlan* const now = plan();
    if (m_watched != now) {
        if (m_watched)
            disconnect(m_watched, nullptr, this, nullptr);
        m_watched = now;
        if (now) {
            connect(now, &IBackgroundPlan::layerLockChanged, this, [this, now](bool lock) {
                now->setProperty(lockedName, lock);
                emit changed();
            });
        }
    }
    emit changed();
}

void PlanWork::setFloor(int floor)
{
    follow();
    FloorNav::instance().setCurrentFloorIndex(floor);
    m_floor = floor;
    watchPlan();
}

void PlanWork::reset()
{
    follow();
    auto& floors = FloorNav::instance();
    floors.setCurrentFloorIndex(-1);
    // They lie where the project before has its place on earth.
    for (int floor = 0; floor < floorCount; ++floor)
        floors.setFloorPlan(floor, nullptr);
    m_floor = underNetwork;
    watchPlan();
}

QString PlanWork::planName() const
{
    const IBackgroundPlan* const now = plan();
    return now ? now->fileName() : QString();
}

bool PlanWork::locked() const
{
    const IBackgroundPlan* const now = plan();
    return now && now->property(lockedName).toBool();
}

void PlanWork::setLocked(bool locked)
{
    IBackgroundPlan* const now = plan();
    if (!now)
        return;
    watchPlan();
    now->setLock(locked);
    if (m_floor == underNetwork)
        SceneEntities::instance().saveBackgroundPlan();
}

QVariantList PlanWork::heights() const
{
    const QVariantList told = FloorNav::instance().floorValues();
    return told.isEmpty() ? QVariantList {0.0, 3.0, 3.0, 3.0} : told;
}

void PlanWork::setHeights(const QVariantList& heights)
{
    follow();
    FloorNav::instance().setFloorValues(heights);
}

QString PlanWork::refusal(const QUrl& file) const
{
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.toString();
    const QFileInfo info(path);
    const qint64 limit = View3d::PlanFiles::sizeLimit(info.suffix());
    if (m_loading)
        return tr("Another plan is still being loaded. Wait until it is there, or cancel it.");
    if (projectPath().isEmpty())
        return tr("There is no project that a plan could belong to. Open one first.");
    if (!info.isFile())
        return PlanMessages::missing(path);
    if (!isPlanFile(path))
        return PlanMessages::noPlan(path);
    if (!info.isReadable())
        return PlanMessages::closed(path);
    return limit > 0 && info.size() > limit ? PlanMessages::fileTooLarge(path, limit) : QString();
}

void PlanWork::load(const QUrl& file)
{
    const QString refused = refusal(file);
    if (!refused.isEmpty()) {
        emit failed(refused);
        return;
    }
    follow();
    m_source = QFileInfo(file.toLocalFile()).absoluteFilePath();
    m_loadPath = m_source;
    m_loadingFloor = m_floor;
    m_told = false;
    m_loading = true;
    emit changed();
    if (m_floor != underNetwork && !PlanCopy::needsCopy(m_source)) {
        startLoader();
        return;
    }
    m_scratch = std::make_unique<QTemporaryDir>();
    const IBackgroundPlan* const old = m_floor == underNetwork ? plan() : nullptr;
    const QString name = PlanCopy::freeName(m_source, documentsOf(projectPath()), old ? old->fullPath() : QString());
    m_loadPath = m_scratch->filePath(name);
    m_copying = std::make_unique<QFutureWatcher<QString>>();
    connect(m_copying.get(), &QFutureWatcher<QString>::finished, this, [this] {
        const QString problem = m_copying->result();
        m_copying.release()->deleteLater();
        onCopied(problem);
    });
    m_copying->setFuture(QtConcurrent::run(&PlanCopy::copy, m_source, m_loadPath));
}

void PlanWork::onCopied(const QString& problem)
{
    if (!m_loading)
        m_scratch.reset();
    else if (!problem.isEmpty())
        fail(PlanMessages::notCopied(m_source, problem));
    else
        startLoader();
}

void PlanWork::startLoader()
{
    SceneRoot* const root = SceneRoot::instance();
    bool started = false;
    if (m_loadingFloor == underNetwork) {
        hear(root->planLoader());
        root->planLoader()->loadPlan(m_loadPath);
        started = root->planLoader()->planLoading();
    } else {
        hear(root->floorPlanLoader());
        root->floorPlanLoader()->loadPlan(m_loadPath, m_loadingFloor);
        started = root->floorPlanLoader()->planLoading();
    }
    if (started || !m_loading)
        return;
    if (m_told)
        finish();
    else
        fail(PlanMessages::missing(m_source));
}

template <typename Loader>
void PlanWork::hear(Loader* loader)
{
    stopHearing();
    m_hearing = new QObject(this);
    connect(loader, &Loader::progressPlanLoadChanged, m_hearing,
            [this](int done) { emit progressPlanLoadChanged(done); });
    connect(loader, &Loader::fileTooLarge, m_hearing, [this](const View3d::SizeInfo& size) {
        m_told = true;
        m_size = size;
        emit fileTooLarge(size);
    });
    connect(loader, &Loader::pdfConverterProblem, m_hearing, [this](Base::CErrorCode code) {
        m_told = true;
        emit pdfConverterProblem(code);
    });
    connect(loader, &Loader::problemArisen, m_hearing, [this, loader] {
        m_told = true;
        emit failed(loader->problem().replace(m_loadPath, m_source));
    });
    connect(loader, &Loader::corruptedPlanFile, m_hearing, [this](Base::CErrorCode code) {
        m_told = true;
        emit corruptedPlanFile(code);
    });
    // Some reasons follow the end, a cancellation is told twice, and of a broken drawing no end is told.
    const auto end = [this, hearing = m_hearing.data()] {
        if (m_hearing == hearing)
            finish();
    };
    connect(loader, &Loader::cancelFinished, m_hearing, end, Qt::QueuedConnection);
    connect(loader, &Loader::corruptedPlanFile, m_hearing, end, Qt::QueuedConnection);
    connect(loader, &Loader::fileTooLarge, m_hearing, end, Qt::QueuedConnection);
    connect(loader, &Loader::planLoaded, m_hearing,
            [this](View3d::Renderable* loaded) { onLoaded(qobject_cast<IBackgroundPlan*>(loaded)); });
}

void PlanWork::stopHearing()
{
    if (!m_hearing)
        return;
    if (SceneRoot* const root = SceneRoot::instance()) {
        disconnect(root->planLoader(), nullptr, m_hearing, nullptr);
        disconnect(root->floorPlanLoader(), nullptr, m_hearing, nullptr);
    }
    m_hearing->deleteLater();
    m_hearing.clear();
}

void PlanWork::onLoaded(IBackgroundPlan* plan)
{
    const QString notes = PlanMessages::notes(m_source, m_loadPath);
    bool laid = true;
    if (m_loadingFloor == underNetwork) {
        laid = layUnderNetwork(plan);
    } else {
        // It stands as high as the others of the building.
        setHeights(heights());
    }
    if (laid && !notes.isEmpty())
        emit noted(notes);
    finish();
}

bool PlanWork::layUnderNetwork(IBackgroundPlan* plan)
{
    PlanLoader* const loader = SceneRoot::instance()->planLoader();
    const QString project = projectPath();
    QDir().mkpath(documentsOf(project));
    QDir().mkpath(project + CFileSystemNames::graphics3DPathPart());
    loader->swapPlan(plan);
    if (!loader->problem().isEmpty()) {
        plan->destroyLater();
        return false;
    }
    SceneEntities::instance().setBackgroundPlan(plan);
    m_told = true;
    emit planLoadedChanged();
    if (!plan->savePlanFile(project))
        emit failed(PlanMessages::placeNotStored(m_source));
    return true;
}

void PlanWork::finish()
{
    if (!m_loading)
        return;
    stopHearing();
    m_loading = false;
    if (!m_copying)
        m_scratch.reset();
    emit changed();
    if (!m_told)
        emit ended();
}

void PlanWork::fail(const QString& text)
{
    m_told = true;
    emit failed(text);
    finish();
}

void PlanWork::cancel()
{
    if (!m_loading)
        return;
    if (m_copying) {
        finish();
        return;
    }
    if (m_loadingFloor == underNetwork)
        SceneRoot::instance()->planLoader()->cancel();
    else
        SceneRoot::instance()->floorPlanLoader()->cancel();
}

QString PlanWork::explanation(const QString& kind) const
{
    if (kind == QLatin1String("tooLarge"))
        return PlanMessages::tooLarge(m_source, m_size);
    if (kind == QLatin1String("converter"))
        return PlanMessages::converterFailed(m_source);
    return PlanMessages::unreadable(m_source, m_loadPath);
}

QString PlanWork::align(int way, QVector3D a, QVector3D b, QVector3D c, QVector3D d)
{
    IBackgroundPlan* const now = plan();
    if (!now)
        return tr("There is no plan any more.");
    if ((b - a).length() < samePoint || (way == TwoLines && (d - c).length() < samePoint))
        return tr("Both ends of the line are at the same place. Tap two points that are apart.");
    if (way == LineAndLength && c.x() <= 0.0F)
        return tr("The length of the line must be greater than zero.");
    m_controller.setTargetPlan(now);
    // It is scaled about its origin, which need not lie on the ground; its height is none of this.
    const float height = now->placement()->translation().y();
    if (way == TwoLines)
        m_controller.scalePlanFile(a, b, c, d);
    else if (way == NorthLine)
        m_controller.setPlanNorthDirection(a, b, c, d);
    else
        m_controller.setPlanScaleWithSectionAndValue(a, b, c, d);
    now->setElevation(height);
    // A drawing keeps to itself that it is locked.
    if (locked())
        now->savePlanTransformationInCamera();
    if (m_floor == underNetwork)
        SceneEntities::instance().saveBackgroundPlan();
    return {};
}

void PlanWork::remove()
{
    if (m_floor != underNetwork) {
        FloorNav::instance().setFloorPlan(m_floor, nullptr);
        return;
    }
    const QString project = projectPath();
    SceneEntities::instance().deleteBackgroundPlan();
    if (!project.isEmpty())
        View3d::PlanSettingsIO::deleteOldPlanFile(project + CFileSystemNames::graphics3DPathPart() +
                                                  QStringLiteral("plan.xml"));
}

} // namespace Torvik::Viewer
