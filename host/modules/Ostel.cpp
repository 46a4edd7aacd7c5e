#include "host/modules/Ostel.h"

#include "scene/GlobalNav.h"

namespace Torvik::Viewer {

void GpsData::set(const QString& status, double latitude, double longitude)
{
    m_status = status;
    m_latitude = latitude;
    m_longitude = longitude;
    emit changed();
}

DeviceSystem::DeviceSystem(QObject* parent)
    : QObject(parent)
    , m_gpsData(new GpsData(this))
{
}

void DeviceSystem::setGpsEnabled(bool enabled)
{
    if (m_gpsEnabled == enabled) {
        return;
    }
    m_gpsEnabled = enabled;
    emit gpsEnabledChanged();
}

void UiHelper::stopInclinationMeasurement() const
{
    View3d::GlobalNav::instance()->setRealTimeEnabled(false);
}

Ostel::Ostel(QObject* parent)
    : QObject(parent)
    , m_system(new DeviceSystem(this))
    , m_uiHelper(new UiHelper(this))
{
}

} // namespace Torvik::Viewer
