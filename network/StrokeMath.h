#pragma once

#include <QVector3D>
#include <QVector>

/** Which pieces of a chain look like a single straight one: a sensor lays a segment a centimetre, and none of them is
 *  seen for itself. Metres. */
namespace Torvik::View3d::StrokeMath {

/** Longest piece that may be drawn together with others. */
constexpr float longestPiece = 0.055F;
constexpr float longestStroke = 0.5F;
constexpr int mostPieces = 64;
/** How far a joint may lie beside the stroke: as much as lengths are rounded. */
constexpr float tolerance = 0.005F;

/** Distance of a point from the straight piece between two others. */
float distanceFromPiece(const QVector3D& point, const QVector3D& begin, const QVector3D& end);

/** Whether the pieces between these points look like one from the first point to the last. */
bool looksStraight(const QVector<QVector3D>& points);

} // namespace Torvik::View3d::StrokeMath
