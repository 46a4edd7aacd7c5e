#include "host/vehicle/SensorFrame.h"

namespace Torvik::Vehicle {

SensorFrame::SensorFrame(const QVector3D& begin, const QMatrix4x4& chainToScene)
    : m_begin(chainToScene.map(begin))
    , m_sceneToChain(chainToScene.inverted())
{
}

View3d::Vector3D<double> SensorFrame::positionOf(const SensorPlace& place) const
{
    // The scene's x is west, its y up, its z north.
    const QVector3D scene = m_begin + QVector3D(float(-place.x), float(place.z), float(place.y));
    const QVector3D chain = m_sceneToChain.map(scene);
    return View3d::Vector3D<double>(QVector3D(chain.x(), -chain.z(), chain.y()));
}

} // namespace Torvik::Vehicle
