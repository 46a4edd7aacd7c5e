#pragma once

#include "domain/boundary/Vector3D.h"
#include "host/vehicle/Reading.h"

#include <QMatrix4x4>
#include <QVector3D>

namespace Torvik::Vehicle {

/** Where a vehicle's sensor stands in the frame in which the view takes its positions: that of the pipe's chain, with z
 *  up. Pure, any thread. */
class SensorFrame {
public:
    SensorFrame() = default;
    /** @param begin      of the pipe, in the frame of its chain
     *  @param chainToScene  Pipe::worldMatrix() */
    SensorFrame(const QVector3D& begin, const QMatrix4x4& chainToScene);

    View3d::Vector3D<double> positionOf(const SensorPlace& place) const;

private:
    QVector3D m_begin;
    QMatrix4x4 m_sceneToChain;
};

} // namespace Torvik::Vehicle
