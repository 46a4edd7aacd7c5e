#include "interaction/CameraGesture.h"

#include "interaction/Utils3d.h"

#include <cmath>

namespace Torvik::View3d::CameraGesture {

bool isShort(qint64 elapsedMs)
{
    return elapsedMs < kShortTapLimitMs;
}

bool isInPlace(QPointF press, QPointF release)
{
    return std::hypot(release.x() - press.x(), release.y() - press.y()) <= kShortTapRadiusPx;
}

Moves movesOf(CameraController::ControlModes mode, CameraController::ControlPlanes planes,
              CameraController::ViewTypes viewType)
{
    Moves moves;
    switch (mode) {
    case CameraController::Translate:
        moves.translateMap = planes == CameraController::Map;
        moves.translateInView = !moves.translateMap && viewType == CameraController::View2dFront;
        moves.translateOnGround = !moves.translateMap && !moves.translateInView;
        break;
    case CameraController::Rotate:
        moves.tilt = viewType == CameraController::View3d;
        moves.rotate = true;
        break;
    case CameraController::Tilt:
        moves.tilt = viewType == CameraController::View3d;
        break;
    case CameraController::Zoom:
        moves.zoom = true;
        break;
    case CameraController::None:
        break;
    }
    return moves;
}

float rotationDeg(double x, double lastX)
{
    return static_cast<float>(-(x - lastX) * kRotationDegPerPx);
}

void findPoint(CameraController::ViewTypes viewType, const QVector3D& source, const QVector3D& ray,
               const QVector3D& viewVector, const QVector3D& grabPoint, QVector3D& target)
{
    const QVector3D up(0.0F, 1.0F, 0.0F);
    if (viewType != CameraController::View2dFront &&
        Utils3d::rayPlaneIntersection(source, ray, target, QVector3D(), up)) {
        return;
    }
    Utils3d::rayPlaneIntersection(source, ray, target, grabPoint, viewVector);
}

} // namespace Torvik::View3d::CameraGesture
