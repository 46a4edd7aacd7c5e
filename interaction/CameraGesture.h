#pragma once

#include "interaction/CameraController.h"

#include <QPointF>
#include <QVector3D>

/** What a one-finger gesture means, decided from values alone. */
namespace Torvik::View3d::CameraGesture {

constexpr qint64 kShortTapLimitMs = 500;
constexpr double kShortTapRadiusPx = 40.0;
constexpr double kRotationDegPerPx = 0.2;
/** Limits of the tilt, in degrees below the horizon. */
constexpr float kMinTiltDeg = 10.1F;
constexpr float kMaxTiltDeg = 89.5F;

/** A press held for exactly the limit is no tap any more. */
bool isShort(qint64 elapsedMs);
/** Exactly the radius away still counts as in place. */
bool isInPlace(QPointF press, QPointF release);

/** The moves that one frame of a drag makes, in this order. */
struct Moves {
    bool translateOnGround = false;
    bool translateInView = false;
    bool translateMap = false;
    bool tilt = false;
    bool rotate = false;
    bool zoom = false;
};
Moves movesOf(CameraController::ControlModes mode, CameraController::ControlPlanes planes,
              CameraController::ViewTypes viewType);

/** Degrees to turn about the world's up axis. */
float rotationDeg(double x, double lastX);

/** Replaces `target` by the scene point that the ray meets: in the front view on the plane through `grabPoint` across
 *  the view vector, otherwise on the ground, or on that same plane when the ray runs along the ground. A ray that meets
 *  neither leaves `target` as it is. `target` may be `grabPoint` itself. */
void findPoint(CameraController::ViewTypes viewType, const QVector3D& source, const QVector3D& ray,
               const QVector3D& viewVector, const QVector3D& grabPoint, QVector3D& target);

} // namespace Torvik::View3d::CameraGesture
