#include "measurement/InspectionCommands.h"

#include "measurement/InspectionMath.h"
#include "network/EntitySegment.h"
#include "network/Pipe.h"
#include "scene/FlaggedTransform.h"
#include "scene/Renderable.h"
#include "scene/Rounding.h"

namespace Torvik::View3d {

namespace {

constexpr float lookAhead = 0.01F;

} // namespace

InspectionCommands::InspectionCommands(Pipe* pipe, Renderable* renderable)
    : m_pipe(pipe)
    , m_renderable(renderable)
{
}

void InspectionCommands::setDistance(float distance, bool extendPipe)
{
    m_currentDistance = roundToCentimetres(distance);
    if (!extendPipe)
        return;
    const float excess = m_currentDistance - totalDistance();
    EntitySegment* last = m_pipe->lastSegment();
    if (!(excess > 0.0F) || !last)
        return;
    last->setLength(last->length() + excess);
}

float InspectionCommands::totalDistance() const
{
    return m_pipe->length();
}

QMatrix4x4 InspectionCommands::crawlerTransformMatrix() const
{
    return m_pipe->getTransformMatrixAtDistance(m_currentDistance + lookAhead);
}

void InspectionCommands::addPoint(QVector3D point, float distance)
{
    if (realTime)
        m_pipe->addPoint(point, distance);
}

void InspectionCommands::addBend(float clock, float angle, float distance)
{
    bendPipe(clock, angle, distance);
}

void InspectionCommands::modifyBend(float clock, float angle, float distance)
{
    bendPipe(clock, angle, distance);
}

void InspectionCommands::removeBend(float distance)
{
    m_pipe->removeSegmentsRotation(distance);
}

void InspectionCommands::bendPipe(float clock, float angle, float distance)
{
    m_pipe->modifySegmentsRotation(rotationFromClockAndAngle(angle, clock), distance);
}

QVector3D InspectionCommands::direction()
{
    const EntitySegment* first = m_pipe->firstSegment();
    const QMatrix4x4 end = m_pipe->getTransformMatrixAtDistance(first ? first->length() : 0.0F);
    return m_renderable->position() - end.column(3).toVector3D();
}

float InspectionCommands::inclination()
{
    return InspectionMath::inclination(-direction());
}

void InspectionCommands::rotateToTargetInclination(float angle, int flags)
{
    FlaggedTransform* transform = m_renderable->transform();
    transform->setRotation(InspectionMath::rotationToInclination(direction(), angle) * transform->rotation(), flags);
}

QQuaternion InspectionCommands::rotationFromClockAndAngle(float angle, float clock)
{
    return InspectionMath::rotationFromClockAndAngle(angle, clock);
}

} // namespace Torvik::View3d
