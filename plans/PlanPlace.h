#pragma once

#include "domain/boundary/Vector3D.h"
#include "scene/KxView3dExport.h"

#include <QMatrix4x4>

namespace Torvik::View3d {

/** Where a plan's anchor corner lies and how the plan is turned and scaled about it, with all digits that its file
 *  holds. Axes of the scene. */
struct PlanPlace {
    Vector3D<double> position;
    /** Degrees about y. */
    double turnDeg = 0.0;
    QVector3D scale {1.0F, 1.0F, 1.0F};
};

/** A drawing in the coordinates of a country has its origin thousands of kilometres from what it shows. A float steps
 * by half a metre there, and a turn in floats misses by as much. So such a drawing is moved by where its middle lies,
 * and the place of its origin follows from that in double precision. Pure functions. */
namespace PlanPlaces {

/** From here on a float steps by more than a millimetre. */
constexpr double farAway = 8192.0;

/** `matrix` times a translation by `offset`. */
KXVIEW3D_EXPORT QMatrix4x4 shifted(const QMatrix4x4& matrix, const Vector3D<double>& offset);

/** Where the origin lies when `matrix` carries what is at `offset` from it. The turn is rounded to what the file holds
 *  of it, and the position goes with the rounded one. */
KXVIEW3D_EXPORT PlanPlace originOf(const QMatrix4x4& matrix, const Vector3D<double>& offset);

/** The way back: the matrix that carries what is at `offset` from the origin. */
KXVIEW3D_EXPORT QMatrix4x4 matrixAt(const PlanPlace& place, const Vector3D<double>& offset);

} // namespace PlanPlaces

} // namespace Torvik::View3d
