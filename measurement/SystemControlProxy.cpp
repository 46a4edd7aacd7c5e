#include "measurement/SystemControlProxy.h"

#include <cmath>

namespace Torvik::View3d {

SystemControlProxy& SystemControlProxy::instance()
{
    static SystemControlProxy proxy;
    return proxy;
}

void SystemControlProxy::setSectionDistanceCounter(float distance)
{
    // A counter that counts nothing would end up in the pipe's stored length.
    if (!std::isfinite(distance))
        return;
    const bool same = !(distance < m_sectionDistanceCounter) && !(distance > m_sectionDistanceCounter);
    if (same)
        return;
    m_sectionDistanceCounter = distance;
    emit sectionDistanceCounterChanged();
}

} // namespace Torvik::View3d
