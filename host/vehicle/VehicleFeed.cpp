#include "host/vehicle/VehicleFeed.h"

#include "domain/boundary/AppState.h"
#include "host/vehicle/MeasurementQueue.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/SystemControlProxy.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/Rounding.h"
#include "scene/SceneEntities.h"

#include <utility>

namespace Torvik::Vehicle {

using View3d::GlobalNav;
using View3d::SceneEntities;
using View3d::SystemControlProxy;

namespace {

/** While the database is asked, places are held back, or are told in one line with those of the inspection before. That
 *  comes right by itself, so the window need not wait longer. */
constexpr int untilAnsweredMs = 500;

} // namespace

VehicleFeed::VehicleFeed(QObject* parent)
    : QObject(parent)
{
    if (isMeasuring())
        onMeasuring();
    connect(GlobalNav::instance(), &GlobalNav::realTimeEnabledChanged, this, [this](bool enabled) {
        if (enabled)
            onMeasuring();
    });
}

void VehicleFeed::onMeasuring()
{
    m_furthest = nowhere;
    m_opening = true;
    findPipe();
    continueMeasurement();
}

void VehicleFeed::continueMeasurement()
{
    const CDomainObjectPointer inspection = AppState::instance().getActiveInspection();
    if (!inspection)
        return;
    const QString id = inspection->id();
    if (!m_measuredInspections.contains(id)) {
        m_measuredInspections.insert(id);
        return;
    }
    View3d::MeasurementPointsHandler::instance()->switchToInspection(id);
    MeasurementQueue::settleWithin(untilAnsweredMs);
}

bool VehicleFeed::findPipe()
{
    const View3d::Section* const section = SceneEntities::instance().getActiveSectionEntity();
    m_pipe = section ? section->pipe() : nullptr;
    m_frame = m_pipe ? SensorFrame(m_pipe->firstPoint(), m_pipe->worldMatrix()) : SensorFrame();
    return !m_pipe.isNull();
}

bool VehicleFeed::isFurther(double counter)
{
    const float metres = View3d::roundToCentimetres(float(counter));
    if (!(metres > m_furthest))
        return false;
    m_furthest = metres;
    return true;
}

void VehicleFeed::take(const Reading& reading)
{
    auto& proxy = SystemControlProxy::instance();
    proxy.setSectionDistanceCounter(float(reading.counter));
    if (!reading.sensor || !isMeasuring())
        return;
    if (!m_pipe && findPipe()) {
        // It has come to stand after the measurement began, and takes no points until it hears of that.
        m_furthest = nowhere;
        SceneEntities::instance().enable3dMeasurement(true);
    }
    if (!isFurther(reading.counter))
        return;
    if (std::exchange(m_opening, false))
        MeasurementQueue::settleWithin(untilAnsweredMs);
    emit proxy.latestCameraSensorPositionChanged(m_frame.positionOf(*reading.sensor), float(reading.counter));
}

void VehicleFeed::setMeasuring(bool measuring)
{
    GlobalNav::instance()->setRealTimeEnabled(measuring);
}

bool VehicleFeed::isMeasuring() const
{
    return GlobalNav::instance()->realTimeEnabled();
}

} // namespace Torvik::Vehicle
