#include "network/LowestManholeTracker.h"
#include "plans/IBackgroundPlan.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <utility>

/** The plan under the network. Second part of SceneEntities' source. */
namespace Torvik::View3d {

namespace {

/** The plan lies that much below the lowest object, so that the two do not flicker through each other. */
constexpr float gapBelowNetwork = 0.0001F;
constexpr int betweenStoresMs = 500;

} // namespace

IBackgroundPlan* SceneEntities::getBackgroundPlan() const
{
    return m_backgroundPlan;
}

IBackgroundPlan* SceneEntities::getBackgroundPlanToConfirm() const
{
    return m_backgroundPlanToConfirm;
}

QVariant SceneEntities::getBackgroundPlanVariant() const
{
    return m_backgroundPlan ? QVariant::fromValue(m_backgroundPlan.data()) : QVariant();
}

bool SceneEntities::planLoaded() const
{
    return !m_backgroundPlan.isNull();
}

bool SceneEntities::planToConfirmLoaded() const
{
    return !m_backgroundPlanToConfirm.isNull();
}

void SceneEntities::setBackgroundPlanToConfirm(IBackgroundPlan* plan)
{
    if (m_backgroundPlanToConfirm == plan)
        return;
    if (m_backgroundPlanToConfirm)
        disconnect(m_backgroundPlanToConfirm, &QObject::destroyed, this, &SceneEntities::planToConfirmLoadedChanged);
    m_backgroundPlanToConfirm = plan;
    if (plan)
        connect(plan, &QObject::destroyed, this, &SceneEntities::planToConfirmLoadedChanged);
    emit planToConfirmLoadedChanged();
}

void SceneEntities::setBackgroundPlan(IBackgroundPlan* plan)
{
    if (m_backgroundPlan == plan)
        return;
    const bool wasLocked = m_backgroundPlan && m_backgroundPlan->isLocked();
    if (IBackgroundPlan* const old = std::exchange(m_backgroundPlan, plan)) {
        letGo(old);
        old->deleteLater();
    }
    m_planProjectPath = getProjectPathOrEmptyString();
    m_planStored.invalidate();
    if (plan) {
        plan->onTaken();
        follow(plan);
        plan->setElevation(LowestManholeTracker::instance()->getCurrentLowestY() - gapBelowNetwork);
        saveBackgroundPlan();
        showAsTheViewDoes(plan);
        connect(GlobalNav::instance(), &GlobalNav::viewTypeChanged, plan, [plan] { showAsTheViewDoes(plan); });
    }
    const bool locked = plan && plan->isLocked();
    SceneRoot* const root = SceneRoot::instance();
    if (root && wasLocked != locked)
        emit root->planLayerLockChanged(locked);
    emit planLoadedChanged();
}

void SceneEntities::follow(IBackgroundPlan* plan)
{
    SceneRoot* const root = SceneRoot::instance();
    connect(plan, &Qt3DCore::QNode::enabledChanged, root, &SceneRoot::planLayerEnabledChanged);
    connect(plan, &IBackgroundPlan::layerLockChanged, root, &SceneRoot::planLayerLockChanged);
    connect(LowestManholeTracker::instance(), &LowestManholeTracker::lowestObjectChanged, plan, [this, plan](float y) {
        plan->setElevation(y - gapBelowNetwork);
        // While the lowest object is dragged, not at every step: editingFinished stores the last.
        if (m_planStored.isValid() && !m_planStored.hasExpired(betweenStoresMs))
            return;
        m_planStored.start();
        saveBackgroundPlan();
    });
    // Where the user has aligned it, or let it go from the camera, is where it lies the next time; its height is ours.
    connect(plan, &Renderable::editingFinished, this, [this, plan] {
        plan->setElevation(LowestManholeTracker::instance()->getCurrentLowestY() - gapBelowNetwork);
        saveBackgroundPlan();
    });
    connect(plan, &QObject::destroyed, this, &SceneEntities::planLoadedChanged);
}

void SceneEntities::letGo(IBackgroundPlan* plan)
{
    // Until it is deleted it must neither speak for the layer nor be stored over the next one.
    disconnect(plan, nullptr, this, nullptr);
    disconnect(plan, nullptr, SceneRoot::instance(), nullptr);
    disconnect(LowestManholeTracker::instance(), nullptr, plan, nullptr);
    disconnect(GlobalNav::instance(), nullptr, plan, nullptr);
}

void SceneEntities::showAsTheViewDoes(IBackgroundPlan* plan)
{
    plan->setEnabled(SceneRoot::instance()->planLayerShown());
}

void SceneEntities::deleteBackgroundPlan()
{
    if (!m_backgroundPlan)
        return;
    m_backgroundPlan->deleteLater();
    setBackgroundPlan(nullptr);
}

void SceneEntities::saveBackgroundPlan() const
{
    const QString path = getProjectPathOrEmptyString();
    // When the next project is active before this one has left, or a plan was laid while none was open, the project's
    // own plan must not be written over.
    if (!path.isEmpty() && m_backgroundPlan && m_planProjectPath == path)
        m_storedWell = m_backgroundPlan->savePlanFile(path);
}

} // namespace Torvik::View3d
