#include "network/Connection.h"

#include "network/JointMath.h"
#include "scene/SharedComponents.h"

#include <Qt3DExtras/QCylinderMesh>

namespace Torvik::View3d {

namespace {

constexpr float usualLength = 0.3F;
constexpr float lengthToPipeDiameter = 1.2F;

} // namespace

Connection::Connection(Observation* observation)
    : JointMark(observation)
{
    init();
    refreshData();
    setVisualLength(usualLength);
}

Qt3DCore::QComponent* Connection::unitMesh() const
{
    return SharedComponents::instance().unitCylinder();
}

void Connection::setVisualLength(float length)
{
    m_length = length;
    resize();
    calculateTransform();
}

float Connection::scaleRadius(float diameter) const
{
    return JointMath::stubRadius(diameter);
}

void Connection::setDiameter(float diameter)
{
    m_radius = scaleRadius(diameter);
    resize();
}

void Connection::onPipeDiameterChanged(float diameter)
{
    setVisualLength(diameter * lengthToPipeDiameter);
}

void Connection::resize()
{
    scaleMesh({m_radius, m_length, m_radius});
}

} // namespace Torvik::View3d
