#include "plans/FloorNav.h"

#include <QQmlEngine>

namespace Torvik::View3d {

namespace {
/** Floors that are taken off when another is shown. */
constexpr int switchedFloors = 5;
} // namespace

FloorNav& FloorNav::instance()
{
    static FloorNav nav;
    return nav;
}

void FloorNav::setCurrentFloorIndex(int index)
{
    if (m_current == index)
        return;
    m_current = index;
    for (int floor = 0; floor < switchedFloors; ++floor) {
        IBackgroundPlan* const plan = m_plans.value(floor);
        if (plan && floor != index)
            plan->setEnabled(false);
    }
    if (IBackgroundPlan* const plan = m_plans.value(index))
        plan->setEnabled(true);
    emit currentFloorChanged();
}

void FloorNav::setFloorValues(const QList<QVariant>& values)
{
    m_values.clear();
    for (const QVariant& value : values)
        m_values.append(value.toDouble());
    convertFloorPlansY();
    emit floorValuesChanged();
}

IBackgroundPlan* FloorNav::getFloorPlan(int floorIndex)
{
    IBackgroundPlan* const plan = m_plans.value(floorIndex);
    if (plan)
        QQmlEngine::setObjectOwnership(plan, QQmlEngine::CppOwnership);
    return plan;
}

bool FloorNav::hasFloorPlan(int floorIndex)
{
    return m_plans.value(floorIndex) != nullptr;
}

void FloorNav::setFloorPlan(int floorIndex, IBackgroundPlan* floorPlan)
{
    const bool known = m_plans.contains(floorIndex);
    if (known ? m_plans.value(floorIndex) == floorPlan : !floorPlan)
        return;
    if (IBackgroundPlan* const old = m_plans.take(floorIndex))
        old->destroyLater();
    m_plans.insert(floorIndex, floorPlan);
    if (floorPlan)
        floorPlan->onTaken();
    emit floorSet();
}

void FloorNav::resetPosition(QVector3D position)
{
    for (const auto& plan : qAsConst(m_plans)) {
        if (plan)
            plan->move(-position, IBackgroundPlan::MeasurementType(0));
    }
}

void FloorNav::convertFloorPlansY()
{
    QList<double> heights;
    for (const QVariant& value : qAsConst(m_values))
        heights.append(value.toDouble());
    updateFloorPlansY(heights);
}

void FloorNav::updateFloorPlansY(const QList<double>& values)
{
    double height = 0.0;
    for (int floor = 0; floor < values.size(); ++floor) {
        height += values[floor];
        if (IBackgroundPlan* const plan = m_plans.value(floor))
            plan->setElevation(static_cast<float>(height));
    }
}

} // namespace Torvik::View3d
