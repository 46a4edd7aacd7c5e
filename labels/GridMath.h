#pragma once

#include "scene/KxView3dExport.h"

#include <QMap>
#include <QVector3D>
#include <QVector>

/** Which spacing of the ground's grid suits which distance, and where the grid lies. Square sizes count in tenths of a
 *  metre: 1 is a square of 10 cm. */
namespace Torvik::View3d::GridMath {

/** Distance, in metres as seen through a lens of 20 degrees, to the square size from there on. */
KXVIEW3D_EXPORT const QMap<float, float>& scales(bool imperial);
/** The square size nearer than every one of the scales. */
KXVIEW3D_EXPORT float baseSquareSize(bool imperial);
/** Side of a square in metres. */
KXVIEW3D_EXPORT double stepMetres(float squareSize);

/** The square size for a distance, found from the current one. A current size that is neither the base nor one of the
 *  scales stays, and so does every size without scales. */
KXVIEW3D_EXPORT float squareSizeForDistance(float distance, float current, float base,
                                            const QMap<float, float>& scales);

/** The point moved towards the axes onto a corner of the lattice; its height stays. */
KXVIEW3D_EXPORT QVector3D onLattice(const QVector3D& point, float squareSize);

/** Width of the mesh before it is scaled. */
constexpr float meshSide = 0.1F;
constexpr int floatsPerVertex = 6;
/** Black lines in the plane z = 0 around the origin, as many in either direction: two vertices a line, each position
 *  and colour. At least two lines. */
KXVIEW3D_EXPORT QVector<float> wireframe(unsigned linesPerDirection);

} // namespace Torvik::View3d::GridMath
