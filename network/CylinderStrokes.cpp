// Short segments in a row, drawn as one cylinder by the first of them.
#include "network/CylinderSegment.h"
#include "network/StrokeMath.h"
#include "scene/Fuzzy.h"

#include <Qt3DCore/QTransform>

#include <utility>

namespace Torvik::View3d {

CylinderSegment::~CylinderSegment()
{
    if (m_drawnBy)
        m_drawnBy->m_alsoDrawn.removeOne(this);
    for (CylinderSegment* segment : qAsConst(m_alsoDrawn))
        segment->m_drawnBy = nullptr;
}

/** Something beside the own nodes hangs on the segment and needs its place. */
bool CylinderSegment::hasGuests() const
{
    const int own = (m_segmentTransform ? 1 : 0) + (m_meshEntity ? 1 : 0) + (m_prevJoint.entity ? 1 : 0);
    return childNodes().size() > own;
}

bool CylinderSegment::canAlsoDraw(const CylinderSegment& next) const
{
    const EntitySegment* const end = m_alsoDrawn.isEmpty() ? this : m_alsoDrawn.last();
    const bool same = next.look() == look() && Fuzzy::equal(next.m_radius, m_radius);
    if (!isDrawn() || !same || next.prevSegment() != end || !next.m_alsoDrawn.isEmpty() || next.m_drawnBy)
        return false;
    if (next.hasGuests() || m_joint.entity)
        return false;
    QVector<QVector3D> points {beginPoint(), endPoint()};
    for (const CylinderSegment* segment : m_alsoDrawn)
        points.append(segment->endPoint());
    points.append(next.endPoint());
    return StrokeMath::looksStraight(points);
}

bool CylinderSegment::letPreviousDraw()
{
    if (m_drawnBy)
        return true;
    auto* const previous = qobject_cast<CylinderSegment*>(prevSegment());
    if (!previous)
        return false;
    CylinderSegment* const first = previous->m_drawnBy ? previous->m_drawnBy : previous;
    if (!first->canAlsoDraw(*this))
        return false;
    eraseNodes();
    m_drawnBy = first;
    first->m_alsoDrawn.append(this);
    first->initTransform();
    return true;
}

void CylinderSegment::drawAlone()
{
    CylinderSegment* const first = m_drawnBy ? m_drawnBy : this;
    if (first->m_alsoDrawn.isEmpty())
        return;
    const auto others = std::exchange(first->m_alsoDrawn, {});
    for (CylinderSegment* segment : others) {
        segment->m_drawnBy = nullptr;
        segment->draw();
    }
    first->initTransform();
}

void CylinderSegment::leaveStroke()
{
    if (!m_drawnBy || m_drawnBy->m_alsoDrawn.last() != this) {
        drawAlone();
        return;
    }
    CylinderSegment* const first = std::exchange(m_drawnBy, nullptr);
    first->m_alsoDrawn.removeLast();
    first->initTransform();
}

void CylinderSegment::eraseNodes()
{
    delete m_meshEntity;
    delete m_prevJoint.entity;
    delete m_segmentTransform;
    m_meshEntity = nullptr;
    m_meshTransform = nullptr;
    m_segmentTransform = nullptr;
    m_prevJoint = Ball();
}

} // namespace Torvik::View3d
