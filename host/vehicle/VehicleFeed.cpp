#include "host/vehicle/VehicleFeed.h"

#include "measurement/SystemControlProxy.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

namespace Torvik::Vehicle {

using View3d::GlobalNav;
using View3d::SystemControlProxy;

VehicleFeed::VehicleFeed(QObject* parent)
    : QObject(parent)
{
    if (isMeasuring())
        findPipe();
    connect(GlobalNav::instance(), &GlobalNav::realTimeEnabledChanged, this, [this](bool enabled) {
        if (enabled)
            findPipe();
    });
}

void VehicleFeed::findPipe()
{
    const View3d::Section* const section = View3d::SceneEntities::instance().getActiveSectionEntity();
    const View3d::Pipe* const pipe = section ? section->pipe() : nullptr;
    m_frame = pipe ? SensorFrame(pipe->firstPoint(), pipe->worldMatrix()) : SensorFrame();
}

void VehicleFeed::take(const Reading& reading)
{
    auto& proxy = SystemControlProxy::instance();
    proxy.setSectionDistanceCounter(float(reading.counter));
    if (reading.sensor && isMeasuring())
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
