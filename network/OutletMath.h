#pragma once

#include <QMatrix4x4>
#include <QQuaternion>
#include <QVector3D>

/** Where a pipe leaves its node, how thick it is and whither it points: values in, values out. Scene frame: metres, y
 * up, +z north, +x west. */
namespace Torvik::View3d::OutletMath {

/** A pipe without a size counts as one of 300 mm. Millimetres. */
double effectiveDiameter(double diameterMm);
/** Metres; never below 0.05, so that a thin pipe stays visible. */
float pipeRadius(double diameterMm);

/** Metres by which a pipe lies below its node: what the record says, or half the node's depth if it says nothing
 *  (|recorded| at most 1e-5). */
float depthBelowNode(float recorded, float nodeDepth);

/** Horizontal shift of an outlet.
 *  @param direction  from the pipe towards its start, any length; zero gives no shift
 *  @param offset     metres */
QVector3D outletOffset(const QVector3D& direction, float offset);
/** The outlet of a node: lowered by `depth`, shifted against `offset`. */
QVector3D outletPosition(const QVector3D& node, float depth, const QVector3D& offset);

/** Place of a node that ends a pipe. A stored position beats the pipe's end, in the horizontal only if both of its
 *  ordinates are there (above 1e-5), and in the height on its own.
 *  @param pipeEnd      scene position of the pipe's end
 *  @param depthOffset  metres from the pipe's end up to the node
 *  @param stored       the stored ordinates as they stand, in cartesian order
 *  @param storedScene  the same point in the scene */
QVector3D endNodePosition(const QVector3D& pipeEnd, float depthOffset, const QVector3D& stored,
                          const QVector3D& storedScene);

/** True for a pipe that is still too short to show by itself which way it will grow. */
bool tooShortToShowDirection(float length);

/** Degrees from the scene's +z of the way from `start` to `ahead`, seen from above: +90 along -x, -90 along +x. */
float northRotation(const QVector3D& start, const QVector3D& ahead);

/** Turn about the vertical through `start` that brings `end` into the direction of `target`. */
QMatrix4x4 turnTowardsPoint(const QVector3D& start, const QVector3D& end, const QVector3D& target);

} // namespace Torvik::View3d::OutletMath
