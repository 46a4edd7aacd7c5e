#include "host/app/PlanWork.h"

#include "domain/boundary/AppState.h"
#include "host/app/PlanCheck.h"
#include "host/app/PlanCopy.h"
#include "host/app/PlanLaying.h"
#include "host/app/PlanLoad.h"
#include "host/app/PlanMessages.h"
#include "host/app/PlanUnits.h"
#include "host/drawing/DrawingJournal.h"
#include "plans/FloorNav.h"
#include "plans/PlanLoader.h"
#include "plans/PlanSettingsIO.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Torvik::Viewer {

using Base::CFileSystemNames;
using View3d::FloorNav;
using View3d::IBackgroundPlan;
using View3d::PlanLoader;
using View3d::SceneEntities;
using View3d::SceneRoot;

namespace {

/** Two taps nearer than that, in metres, are one point. */
constexpr float samePoint = 1e-3F;

QString projectPath()
{
    return SceneEntities::instance().getProjectPathOrEmptyString();
}

QString planFile()
{
    return projectPath() + CFileSystemNames::graphics3DPathPart() + QStringLiteral("plan.xml");
}

IBackgroundPlan* ownPlan()
{
    return SceneEntities::instance().getBackgroundPlan();
}

} // namespace

PlanWork::PlanWork(QObject* parent)
    : QObject(parent)
{
    connect(&m_keeper, &FloorKeeper::notStored, this, &PlanWork::notStored);
    connect(&m_keeper, &FloorKeeper::trouble, this, &PlanWork::floorMissing);
}

PlanWork::~PlanWork()
{
    delete m_load;
}

IBackgroundPlan* PlanWork::plan() const
{
    if (m_floor != underNetwork)
        return FloorNav::instance().getFloorPlan(m_floor);
    // One for a look lies over the project's own.
    IBackgroundPlan* const waiting = SceneEntities::instance().getBackgroundPlanToConfirm();
    return waiting ? waiting : ownPlan();
}

void PlanWork::follow()
{
    if (m_following)
        return;
    m_following = true;
    const auto& entities = SceneEntities::instance();
    connect(&entities, &SceneEntities::planLoadedChanged, this, &PlanWork::watchPlan);
    connect(&entities, &SceneEntities::planToConfirmLoadedChanged, this, &PlanWork::watchPlan);
    connect(&FloorNav::instance(), &FloorNav::floorSet, this, &PlanWork::watchPlan);
    connect(&FloorNav::instance(), &FloorNav::floorValuesChanged, this, &PlanWork::changed);
    connect(&FloorNav::instance(), &FloorNav::currentFloorChanged, this, &PlanWork::onFloorShown);
}

void PlanWork::onFloorShown()
{
    const int shown = FloorNav::instance().getCurrentFloorIndex();
    m_floor = shown >= 0 && shown < floorCount ? shown : underNetwork;
    watchPlan();
}

void PlanWork::watchPlan()
{
    IBackgroundPlan* const now = plan();
    if (m_watched != now) {
        if (m_watched)
            disconnect(m_watched, nullptr, this, nullptr);
        m_watched = now;
        if (now) {
            connect(now, &IBackgroundPlan::layerLockChanged, this, &PlanWork::changed);
            // The scene stores it then.
            connect(now, &View3d::Renderable::editingFinished, this, &PlanWork::tellUnlessStored, Qt::QueuedConnection);
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
    // What is loading was for the project before.
    if (m_load) {
        m_told = false;
        finish();
    }
    m_keeper.forget();
    auto& floors = FloorNav::instance();
    floors.setCurrentFloorIndex(underNetwork);
    // They lie where the project before has its place on earth, at the heights of its building.
    for (int floor = 0; floor < floorCount; ++floor)
        floors.setFloorPlan(floor, nullptr);
    floors.setFloorValues({});
    m_floor = underNetwork;
    m_toldNotStored = false;
    watchPlan();
}

QString PlanWork::planName() const
{
    const IBackgroundPlan* const now = plan();
    return now ? now->fileName() : QString();
}

bool PlanWork::forALook() const
{
    return m_floor == underNetwork && plan() != ownPlan();
}

bool PlanWork::locked() const
{
    const IBackgroundPlan* const now = plan();
    return now && now->followsCamera();
}

void PlanWork::setLocked(bool locked)
{
    IBackgroundPlan* const now = plan();
    if (!now)
        return;
    watchPlan();
    now->setLock(locked);
    store();
}

void PlanWork::store()
{
    if (m_floor != underNetwork)
        m_keeper.saveSoon();
    if (m_floor != underNetwork || forALook())
        return;
    SceneEntities::instance().saveBackgroundPlan();
    tellUnlessStored();
}

void PlanWork::tellUnlessStored()
{
    const bool lost = ownPlan() && !SceneEntities::instance().backgroundPlanStored();
    if (lost && !m_toldNotStored)
        emit notStored(PlanMessages::placeNotStored(ownPlan()->fullPath()));
    m_toldNotStored = lost;
}

QVariantList PlanWork::heights() const
{
    const QVariantList told = FloorNav::instance().floorValues();
    return told.isEmpty() ? FloorKeeper::usualHeights() : told;
}

void PlanWork::setHeights(const QVariantList& heights)
{
    follow();
    FloorNav::instance().setFloorValues(heights);
}

QString PlanWork::refusal(const QUrl& file) const
{
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.toString();
    const SceneRoot* const root = SceneRoot::instance();
    if (m_load)
        return tr("Another plan is still being loaded. Wait until it is there, or cancel it.");
    if (projectPath().isEmpty())
        return tr("There is no project that a plan could belong to. Open one first.");
    if (m_filling || floorsComing() || (m_floor == underNetwork && root && root->planLoader()->planLoading()))
        return tr("The project is still being opened, and its own plan may come. Wait until it is there.");
    return whyNoPlan(path, projectPath());
}

QString PlanWork::questionBeforeLoad() const
{
    const auto inPlaceOfOneNotLaid = [](const QString& file) {
        return file.isEmpty()
                   ? QString()
                   : tr("%1 is the plan of this project, though it could not be laid this time. When the new "
                        "plan has been loaded, it takes its place, and where the old one lay is forgotten.")
                         .arg(file);
    };
    if (m_floor != underNetwork)
        return hasPlan() ? tr("%1 lies on this floor. When the new plan has been loaded, the old one goes; its file "
                              "stays among the project's documents.")
                               .arg(planName())
                         : inPlaceOfOneNotLaid(m_keeper.notLaid(m_floor));
    if (const IBackgroundPlan* const own = ownPlan())
        return tr("%1 lies under the network. When the new plan has been loaded, the old one goes, and its file in the "
                  "project is deleted.")
            .arg(own->fileName());
    View3d::PlanSettingsIO stored;
    stored.tryToLoadPlanSettings(projectPath());
    return inPlaceOfOneNotLaid(QFileInfo(stored.getPathToPlanImage()).fileName());
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
    m_told = false;
    const IBackgroundPlan* const old = m_floor == underNetwork ? ownPlan() : nullptr;
    m_load = new PlanLoad(
        {m_source, projectPath(), m_floor, old ? old->fullPath() : QString(), canStayWhereItIs(m_source)}, this);
    hearLoad();
    emit changed();
    m_load->start();
}

bool PlanWork::canStayWhereItIs(const QString& file) const
{
    // The file of the plan under the network goes with that one.
    const IBackgroundPlan* const own = ownPlan();
    const QDir documents(projectPath() + CFileSystemNames::documentationPathPart());
    return m_floor != underNetwork && !PlanCopy::needsCopy(file) && QFileInfo(file).dir() == documents &&
           (!own || QFileInfo(own->fullPath()) != QFileInfo(file));
}

void PlanWork::hearLoad()
{
    const auto tell = [this](auto&& what) {
        m_told = true;
        m_loadPath = m_load->loadPath();
        what();
    };
    connect(m_load, &PlanLoad::progressed, this, &PlanWork::progressPlanLoadChanged);
    connect(m_load, &PlanLoad::tooLarge, this, [this, tell](const View3d::SizeInfo& size) {
        m_size = size;
        tell([&] { emit fileTooLarge(size); });
    });
    connect(m_load, &PlanLoad::converterFailed, this,
            [this, tell](Base::CErrorCode code) { tell([&] { emit pdfConverterProblem(code); }); });
    connect(m_load, &PlanLoad::corrupted, this,
            [this, tell](Base::CErrorCode code) { tell([&] { emit corruptedPlanFile(code); }); });
    connect(m_load, &PlanLoad::failed, this, [this, tell](const QString& text) { tell([&] { emit failed(text); }); });
    connect(m_load, &PlanLoad::loaded, this, &PlanWork::onLoaded);
    connect(m_load, &PlanLoad::over, this, &PlanWork::finish);
}

void PlanWork::onLoaded(IBackgroundPlan* plan)
{
    PlanUnits::scale(*plan, PlanUnits::metresPerUnit(DXF::DrawingJournal::last(m_load->loadPath())));
    if (!lay(plan))
        return;
    m_load->keepFile();
    QStringList notes {PlanMessages::notes(m_source, m_load->loadPath())};
    if (m_load->pages() > 1)
        notes << PlanMessages::firstPageOnly(m_source, m_load->pages());
    notes.removeAll({});
    if (!notes.isEmpty())
        emit noted(notes.join(QLatin1Char('\n')));
}

bool PlanWork::lay(IBackgroundPlan* plan)
{
    const PlanLoad::Order& order = m_load->order();
    if (order.floor != underNetwork) {
        layOnFloor(plan);
        return true;
    }
    const bool otherProject = projectPath() != order.project;
    const QString problem = otherProject ? QString() : PlanLaying::layUnderNetwork(plan, order.project, m_source);
    if (otherProject || !problem.isEmpty()) {
        plan->destroyLater();
        m_told = !problem.isEmpty();
        if (m_told)
            emit failed(problem);
        return false;
    }
    m_told = true;
    m_toldNotStored = false;
    emit planLoadedChanged();
    return true;
}

void PlanWork::layOnFloor(IBackgroundPlan* plan)
{
    const QString problem = PlanLaying::keepOnFloor(plan, m_load->order().project, m_source);
    // It stands as high as the others of the building.
    setHeights(heights());
    m_keeper.saveSoon();
    if (!problem.isEmpty())
        emit notStored(problem);
}

void PlanWork::finish()
{
    if (!m_load)
        return;
    m_load->disconnect(this);
    m_load->giveUp();
    // It may be calling us.
    std::exchange(m_load, nullptr)->deleteLater();
    emit changed();
    if (!m_told)
        emit ended();
}

void PlanWork::cancel()
{
    if (m_load)
        m_load->cancel();
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
    store();
    return {};
}

void PlanWork::remove()
{
    if (m_floor != underNetwork) {
        FloorNav::instance().setFloorPlan(m_floor, nullptr);
        return;
    }
    if (forALook()) {
        PlanLaying::removeWaiting();
        return;
    }
    SceneEntities::instance().deleteBackgroundPlan();
    if (projectPath().isEmpty())
        return;
    View3d::PlanSettingsIO::deleteOldPlanFile(planFile());
    if (QFile::exists(planFile()))
        emit notStored(PlanMessages::notForgotten(planFile()));
}

} // namespace Torvik::Viewer
