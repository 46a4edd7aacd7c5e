#include "host/app/FloorKeeper.h"

#include "domain/boundary/BaseServices.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/PlanCheck.h"
#include "host/app/PlanLoad.h"
#include "host/app/PlanMessages.h"
#include "plans/FloorNav.h"
#include "plans/PlanLoader.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace Torvik::Viewer {

using View3d::FloorNav;
using View3d::GdalGeoProjector;
using View3d::IBackgroundPlan;
using View3d::SceneEntities;
using View3d::SceneRoot;

namespace {

/** By so much of a column an axis changes when only the plan's height is set. */
constexpr float rounding = 1e-5F;

/** Without its height, which is the floor's. */
QMatrix4x4 flatMatrix(const IBackgroundPlan& plan)
{
    QMatrix4x4 matrix = plan.placement()->matrix();
    matrix(1, 3) = 0.0F;
    return matrix;
}

bool same(const QMatrix4x4& a, const QMatrix4x4& b)
{
    for (int axis = 0; axis < 3; ++axis) {
        const QVector3D column = a.column(axis).toVector3D();
        if (!((column - b.column(axis).toVector3D()).length() <= rounding * column.length()))
            return false;
    }
    return a.column(3) == b.column(3);
}

FloorPlace placeOf(const IBackgroundPlan& plan)
{
    const auto& projector = *GdalGeoProjector::instance();
    const View3d::PlanPlace inScene = View3d::PlanPlaces::originOf(plan.placement()->matrix(), {});
    const auto onEarth = (inScene.position + projector.origin()) / projector.scale();
    return {-onEarth.x(), onEarth.z(), inScene.turnDeg, inScene.scale};
}

void place(IBackgroundPlan& plan, const FloorPlace& place)
{
    const auto& projector = *GdalGeoProjector::instance();
    View3d::PlanPlace inScene;
    inScene.position = View3d::Vector3D<double>(-place.east, 0.0, place.north) * projector.scale() - projector.origin();
    inScene.turnDeg = place.turnDeg;
    inScene.scale = place.scale;
    plan.placement()->setMatrix(View3d::PlanPlaces::matrixAt(inScene, {}));
}

} // namespace

FloorKeeper::FloorKeeper(QObject* parent)
    : QObject(parent)
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &FloorKeeper::layNext);
    m_saving.setSingleShot(true);
    connect(&m_saving, &QTimer::timeout, this, &FloorKeeper::save);
    connect(&FloorNav::instance(), &FloorNav::floorSet, this, &FloorKeeper::onFloorSet);
    connect(&FloorNav::instance(), &FloorNav::floorValuesChanged, this, &FloorKeeper::saveSoon);
}

FloorKeeper::~FloorKeeper()
{
    forget();
}

QVariantList FloorKeeper::usualHeights()
{
    return {0.0, 3.0, 3.0, 3.0};
}

QString FloorKeeper::documents() const
{
    return m_project + Base::CFileSystemNames::documentationPathPart();
}

void FloorKeeper::open(const QString& project)
{
    forget();
    if (project.isEmpty() || !SceneRoot::instance())
        return;
    m_project = project;
    const FloorFile::Reading reading = FloorFile::load(project);
    m_damaged = !reading.problems.isEmpty();
    for (const QString& problem : reading.problems)
        emit trouble(problem);
    for (auto plan = reading.floors.plans.begin(); plan != reading.floors.plans.end(); ++plan) {
        m_floors[plan.key()].plan = *plan;
        m_waiting << plan.key();
    }
    for (const double height : reading.floors.heights)
        m_heights << height;
    // Without plans to come there is nothing to stand at the heights that everybody has.
    if (m_heights.isEmpty() && !m_waiting.isEmpty())
        m_heights = usualHeights();
    if (!m_heights.isEmpty())
        FloorNav::instance().setFloorValues(m_heights);
    m_laying = !m_waiting.isEmpty();
    if (m_laying)
        waitForOwnPlan();
}

void FloorKeeper::waitForOwnPlan()
{
    auto* const own = SceneRoot::instance()->planLoader();
    const auto go = [this, own] {
        if (own->planLoading())
            return;
        disconnect(m_ownPlan);
        m_next.start(0);
    };
    m_ownPlan = connect(own, &View3d::PlanLoader::planLoadingChanged, this, go);
    go();
}

void FloorKeeper::layNext()
{
    if (!SceneRoot::instance() || m_waiting.isEmpty()) {
        endLaying();
        return;
    }
    const int floor = m_waiting.takeFirst();
    const QString file = documents() + m_floors[floor].plan.file;
    const QString refused = whyNoPlan(file);
    if (!refused.isEmpty()) {
        emit trouble(tr("Floor %1: %2").arg(QString::number(floor + 1), refused));
        m_next.start(0);
        return;
    }
    PlanLoad::Order order;
    order.source = file;
    order.project = m_project;
    order.floor = floor;
    order.inProject = true;
    m_load = new PlanLoad(order, this);
    hearLoad(floor, file);
    m_load->start();
}

void FloorKeeper::hearLoad(int floor, const QString& file)
{
    const auto tell = [this, floor](const QString& text) {
        emit trouble(tr("Floor %1: %2").arg(QString::number(floor + 1), text));
    };
    connect(m_load, &PlanLoad::tooLarge, this,
            [tell, file](const View3d::SizeInfo& size) { tell(PlanMessages::tooLarge(file, size)); });
    connect(m_load, &PlanLoad::corrupted, this, [tell, file] { tell(PlanMessages::unreadable(file)); });
    connect(m_load, &PlanLoad::converterFailed, this, [tell, file] { tell(PlanMessages::converterFailed(file)); });
    connect(m_load, &PlanLoad::failed, this, tell);
    connect(m_load, &PlanLoad::loaded, this, [this, floor](IBackgroundPlan* plan) { onLaid(floor, plan); });
    connect(m_load, &PlanLoad::over, this, [this] {
        std::exchange(m_load, nullptr)->deleteLater();
        m_next.start(0);
    });
}

void FloorKeeper::onLaid(int floor, IBackgroundPlan* plan)
{
    Kept& kept = m_floors[floor];
    if (kept.plan.place)
        place(*plan, *kept.plan.place);
    auto& floors = FloorNav::instance();
    floors.setFloorValues(floors.floorValues());
    // The loader shows what it lays; the user looks at something else.
    floors.setCurrentFloorIndex(m_shown);
    kept.laid = plan;
    kept.wasLaid = true;
    kept.matrix = flatMatrix(*plan);
}

void FloorKeeper::endLaying()
{
    m_laying = false;
    m_waiting.clear();
}

void FloorKeeper::forget()
{
    m_next.stop();
    m_saving.stop();
    disconnect(m_ownPlan);
    // It may be calling us.
    if (m_load) {
        m_load->disconnect(this);
        m_load->giveUp();
        std::exchange(m_load, nullptr)->deleteLater();
    }
    endLaying();
    m_project.clear();
    m_floors.clear();
    m_heights.clear();
    m_damaged = m_changed = m_toldNotStored = false;
}

void FloorKeeper::close()
{
    if (!m_project.isEmpty())
        save();
    forget();
}

QString FloorKeeper::notLaid(int floor) const
{
    const Kept kept = m_floors.value(floor);
    return kept.wasLaid ? QString() : kept.plan.file;
}

void FloorKeeper::saveSoon()
{
    if (!m_project.isEmpty())
        m_saving.start(0);
}

void FloorKeeper::onFloorSet()
{
    auto& floors = FloorNav::instance();
    // The loader tells it before it shows what it has laid.
    m_shown = floors.getCurrentFloorIndex();
    if (m_project.isEmpty() || !SceneRoot::instance())
        return;
    for (int floor = 0; floor < FloorFile::floorCount; ++floor) {
        if (IBackgroundPlan* const plan = floors.getFloorPlan(floor)) {
            connect(plan, &View3d::Renderable::editingFinished, this, &FloorKeeper::saveSoon, Qt::UniqueConnection);
        } else if (m_floors.value(floor).wasLaid) {
            m_floors.remove(floor);
            m_changed = true;
        }
    }
    saveSoon();
}

void FloorKeeper::takePlan(int floor, IBackgroundPlan* plan)
{
    const QFileInfo file(plan->fullPath());
    // One that could not be brought into the project lasts until that is closed.
    if (QDir(file.path()) != QDir(documents())) {
        m_changed = m_floors.remove(floor) > 0 || m_changed;
        return;
    }
    Kept& kept = m_floors[floor];
    const QMatrix4x4 matrix = flatMatrix(*plan);
    if (kept.laid == plan && same(kept.matrix, matrix))
        return;
    kept = {{file.fileName(), placeOf(*plan)}, plan, matrix, true};
    m_changed = true;
}

void FloorKeeper::takeChanges()
{
    auto& floors = FloorNav::instance();
    for (int floor = 0; floor < FloorFile::floorCount; ++floor) {
        if (IBackgroundPlan* const plan = floors.getFloorPlan(floor))
            takePlan(floor, plan);
    }
    if (floors.floorValues() != m_heights) {
        m_heights = floors.floorValues();
        m_changed = true;
    }
}

void FloorKeeper::save()
{
    m_saving.stop();
    if (SceneEntities::instance().getProjectPathOrEmptyString() != m_project)
        return;
    takeChanges();
    if (!m_changed)
        return;
    Floors floors;
    for (const QVariant& height : qAsConst(m_heights))
        floors.heights << height.toDouble();
    if (!floors.heights.isEmpty())
        floors.heights.resize(FloorFile::floorCount);
    for (auto kept = m_floors.begin(); kept != m_floors.end(); ++kept) {
        if (kept->laid && !kept->plan.place)
            kept->plan.place = placeOf(*kept->laid);
        floors.plans.insert(kept.key(), kept->plan);
    }
    const QString problem = FloorFile::save(floors, m_project, m_damaged);
    m_changed = !problem.isEmpty();
    m_damaged = m_damaged && m_changed;
    if (m_changed && !m_toldNotStored)
        emit notStored(PlanMessages::floorsNotStored(problem));
    m_toldNotStored = m_changed;
}

} // namespace Torvik::Viewer
