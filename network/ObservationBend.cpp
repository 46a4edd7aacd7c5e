#include "network/ObservationBend.h"

#include "domain/ObservationAdapter.h"
#include "network/Section.h"
#include "scene/Fuzzy.h"

#include <cmath>

namespace Torvik::View3d {

ObservationBend::ObservationBend(Section* section, ObservationAdapter* adapter, bool fromDB)
    : Observation(section, adapter)
{
    if (!fromDB)
        section->addBend(static_cast<float>(getBendClock()), getJointAngle(), m_distance);
}

void ObservationBend::performCleanup()
{
    if (m_section)
        m_section->removeBend(m_distance);
}

Observation* ObservationBend::modify()
{
    const float distance = m_adapter->distanceMeters();
    if (!m_section || std::isnan(distance))
        return this;
    if (!hasType(bendBits) || !Fuzzy::equalBiased(distance, m_distance)) {
        performCleanup();
        return replacement();
    }
    const QVariant clockValue = m_adapter->bendClock();
    const QVariant angleValue = m_adapter->jointAngle();
    bool clockKnown = false;
    bool angleKnown = false;
    const int clock = clockValue.toInt(&clockKnown);
    const float angle = angleValue.toFloat(&angleKnown);
    if (!clockKnown || !angleKnown || clockValue.isNull() || angleValue.isNull())
        return this;
    if (!Fuzzy::equalBiased(static_cast<float>(clock), m_bendClock) || !Fuzzy::equalBiased(angle, m_jointAngle)) {
        m_section->modifyBend(static_cast<float>(clock), angle, distance);
        setBendClock(clock);
        // With its sign: only what is read anew counts without.
        m_jointAngle = angle;
    }
    readObsDiameter();
    return this;
}

} // namespace Torvik::View3d
