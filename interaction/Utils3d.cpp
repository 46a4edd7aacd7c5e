#include "interaction/Utils3d.h"

#include "domain/boundary/CLogger.h"

#include <QSizeF>

namespace Torvik::View3d {

using Logging::CLogger;
using Qt3DRender::QCamera;

namespace {

const QString logCategory = QStringLiteral("View3d::Utils3d");
const QVector3D noGroundPoint(0.0F, -1.0F, 0.0F);

RayMath::Eye eyeOf(QCamera* camera)
{
    RayMath::Eye eye;
    eye.position = camera->position();
    eye.up = camera->upVector();
    eye.view = camera->viewVector();
    eye.nearPlane = camera->nearPlane();
    eye.retina = RayMath::retinaLimits(camera->projectionMatrix(), camera->nearPlane());
    return eye;
}

} // namespace

Utils3d& Utils3d::instance()
{
    static Utils3d utils;
    return utils;
}

QVector3D Utils3d::pointScreenToWorldGround(float mouseX, float mouseY, QCamera* camera, double width, double height,
                                            QVector3D planeNormal)
{
    if (camera) {
        const RayMath::Eye eye = eyeOf(camera);
        const QVector3D ray = RayMath::screenRay(eye, mouseX, mouseY, QSizeF(width, height));
        if (const auto hit = RayMath::linePlaneIntersection(eye.position, ray, QVector3D(), planeNormal))
            return *hit;
    }
    CLogger::logMessage(Logging::LogWarning, logCategory, QStringLiteral("Intersection failed."));
    return noGroundPoint;
}

QPointF Utils3d::pointWorldToScreen(QCamera* camera, QVector3D raySrc, float width, float height)
{
    if (!camera)
        return QPointF();
    return RayMath::screenPoint(eyeOf(camera), raySrc, QSizeF(static_cast<qreal>(width), static_cast<qreal>(height)));
}

QVariant Utils3d::rayPlaneIntersec(QVector3D raySource, QVector3D rayDirection, QVector3D pointOnPlane,
                                   QVector3D planeNormal)
{
    const auto hit = RayMath::linePlaneIntersection(raySource, rayDirection, pointOnPlane, planeNormal);
    return hit ? QVariant(*hit) : QVariant();
}

QVector3D Utils3d::mapVector(QMatrix4x4 matrix, QVector3D vec)
{
    return matrix.mapVector(vec);
}

QVector3D Utils3d::camFrontPosition(QVector3D cameraPosition, QVector3D viewCenter)
{
    return RayMath::levelPosition(cameraPosition, viewCenter);
}

float Utils3d::lensDistance(const Qt3DRender::QCamera* camera)
{
    if (!camera)
        return 0.0F;
    const QVariant scale = camera->property("viewVectorLenToFovScale");
    return camera->viewVector().length() * (scale.isValid() ? scale.toFloat() : 1.0F);
}

float Utils3d::roundToFloat(double value)
{
    return RayMath::roundedToSevenDecimals(value);
}

RayMath::RetinaLimits Utils3d::cameraRetinaLimits(QCamera* camera)
{
    return RayMath::retinaLimits(camera->projectionMatrix(), camera->nearPlane());
}

bool Utils3d::rayPlaneIntersection(QVector3D raySource, QVector3D rayDirection, QVector3D& out, QVector3D pointOnPlane,
                                   QVector3D planeNormal)
{
    const auto hit = RayMath::linePlaneIntersection(raySource, rayDirection, pointOnPlane, planeNormal);
    if (hit)
        out = *hit;
    return hit.has_value();
}

void Utils3d::translateHorizontally(QCamera* camera, const QVector3D& newPoint, const QVector3D& oldPoint)
{
    const QVector3D way = oldPoint - newPoint;
    camera->translateWorld(QVector3D(way.x(), 0.0F, way.z()), QCamera::TranslateViewCenter);
}

void Utils3d::translateVertically(QCamera* camera, const QVector3D& newPoint, const QVector3D& oldPoint)
{
    camera->translateWorld(oldPoint - newPoint, QCamera::TranslateViewCenter);
}

void Utils3d::rotateAroundCenter(QCamera* camera, QVector3D a, QVector3D b)
{
    const float angle = RayMath::headingDifference(camera->viewCenter(), a, b);
    camera->rotateAboutViewCenter(camera->rotation(-angle, QVector3D(0.0F, 1.0F, 0.0F)));
}

void Utils3d::tiltCamera(QCamera* camera, double delta, float minAngle, float maxAngle)
{
    camera->tiltAboutViewCenter(RayMath::tiltStep(camera->viewVector(), delta, minAngle, maxAngle));
}

void Utils3d::zoomTranslatingAlongViewVector(QCamera* camera, double /*x*/, double y, double lastY, double minDist,
                                             double maxDist)
{
    if (const auto shift = RayMath::zoomShift(camera->viewVector(), y, lastY, minDist, maxDist))
        camera->translateWorld(*shift, QCamera::DontTranslateViewCenter);
}

QMatrix4x4 Utils3d::cameraToWorldRotation(QCamera* camera)
{
    return RayMath::retinaToWorldRotation(camera->upVector(), camera->viewVector());
}

QVector3D Utils3d::cameraToScreenRay(float x, float y, QCamera* camera, float width, float height)
{
    return RayMath::screenRay(eyeOf(camera), x, y, QSizeF(static_cast<qreal>(width), static_cast<qreal>(height)));
}

void Utils3d::getAxisAndAngle(const QQuaternion& q, QVector3D& axis, float& angle)
{
    const RayMath::AxisAngle turn = RayMath::axisAndAngle(q);
    axis = turn.axis;
    angle = turn.angleDeg;
}

} // namespace Torvik::View3d
