#include "network/ObservationEnd.h"

#include "domain/ObservationAdapter.h"
#include "network/Section.h"
#include "scene/Fuzzy.h"

#include <cmath>

namespace Torvik::View3d {

ObservationEnd::ObservationEnd(Section* section, ObservationAdapter* adapter)
    : Observation(section, adapter)
{
    section->attachEndNode(m_distance);
    section->lockAsEnded();
    refreshPosition();
    storeShape();
}

void ObservationEnd::performCleanup()
{
    if (m_section)
        m_section->unlockEnded();
}

Observation* ObservationEnd::modify()
{
    if (!m_section)
        return this;
    if (!hasType(endBits)) {
        performCleanup();
        return replacement();
    }
    const float distance = m_adapter->distanceMeters();
    if (!std::isnan(distance) && !Fuzzy::equalBiased(distance, m_distance)) {
        m_section->attachEndNode(distance);
        init();
    }
    return this;
}

} // namespace Torvik::View3d
