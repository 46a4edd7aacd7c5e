#include "measurement/SystemControlProxy.h"

namespace Torvik::View3d {

SystemControlProxy& SystemControlProxy::instance()
{
    static SystemControlProxy proxy;
    return proxy;
}

void SystemControlProxy::setSectionDistanceCounter(float distance)
{
    const bool same = !(distance < m_sectionDistanceCounter) && !(distance > m_sectionDistanceCounter);
    if (same)
        return;
    m_sectionDistanceCounter = distance;
    emit sectionDistanceCounterChanged();
}

} // namespace Torvik::View3d
