#pragma once

#include "interaction/RayMath.h"
#include "scene/KxView3dExport.h"

#include <QMatrix4x4>
#include <QObject>
#include <QPointF>
#include <QQuaternion>
#include <QVariant>
#include <QVector3D>
#include <Qt3DRender/QCamera>

namespace Torvik::View3d {

/** The view's geometry toolbox: rays from pixels, pixels of points, and the elementary moves of a camera.
 *
 *  Frame: the scene (y up, ground at y = 0, metres); screen positions are pixels from the upper left corner; angles are
 *  degrees. The class holds no state; the one instance exists so that QML can reach the invokable operations, under the
 *  context name "Utils3D". Main thread only. */
class KXVIEW3D_EXPORT Utils3d : public QObject {
    Q_OBJECT

public:
    /** QML may make one of its own; it serves as well as the shared one. */
    Utils3d() = default;
    static Utils3d& instance();

    /** Where the ray through a pixel meets the plane through the scene's origin with the given normal, also behind the
     *  camera. (0,-1,0), with a warning in the log, when it meets nowhere. */
    Q_INVOKABLE static QVector3D pointScreenToWorldGround(float mouseX, float mouseY, Qt3DRender::QCamera* camera,
                                                          double width, double height,
                                                          QVector3D planeNormal = QVector3D(0.0F, 1.0F, 0.0F));
    /** Pixel of the scene point `raySrc`; (0,0) for a null camera. */
    Q_INVOKABLE static QPointF pointWorldToScreen(Qt3DRender::QCamera* camera, QVector3D raySrc, float width,
                                                  float height);
    /** The point as a QVector3D, or an invalid variant (`undefined` in QML) for a ray parallel to the plane. */
    Q_INVOKABLE static QVariant rayPlaneIntersec(QVector3D raySource, QVector3D rayDirection,
                                                 QVector3D pointOnPlane = QVector3D(0.0F, 0.0F, 0.0F),
                                                 QVector3D planeNormal = QVector3D(0.0F, 1.0F, 0.0F));
    /** Turned and scaled by the matrix, not moved. */
    Q_INVOKABLE static QVector3D mapVector(QMatrix4x4 matrix, QVector3D vec);
    /** Position from which the camera looks level at the same centre from the same distance; (0,0,200) when it stands
     *  straight above the centre. */
    Q_INVOKABLE static QVector3D camFrontPosition(QVector3D cameraPosition, QVector3D viewCenter);

    /** Distance of a camera from its view centre, as it would be with a 20 degree lens for the same picture: the
     *  camera's property "viewVectorLenToFovScale" tells its lens. 0 for a null camera. */
    static float lensDistance(const Qt3DRender::QCamera* camera);
    /** Rounded to seven decimals. */
    static float roundToFloat(double value);
    /** Edges of the picture on the near plane, in the order left, right, top, bottom. */
    static RayMath::RetinaLimits cameraRetinaLimits(Qt3DRender::QCamera* camera);
    /** Leaves `out` untouched and gives false for a ray parallel to the plane. A plane behind the source is hit, too.
     */
    static bool rayPlaneIntersection(QVector3D raySource, QVector3D rayDirection, QVector3D& out,
                                     QVector3D pointOnPlane, QVector3D planeNormal);
    /** Move camera and view centre such that the ground point under the finger goes from `newPoint` to `oldPoint`; the
     *  first keeps their heights. */
    static void translateHorizontally(Qt3DRender::QCamera* camera, const QVector3D& newPoint,
                                      const QVector3D& oldPoint);
    static void translateVertically(Qt3DRender::QCamera* camera, const QVector3D& newPoint, const QVector3D& oldPoint);
    /** Turns the camera about its view centre, and the vertical, by the angle from `a` to `b`. */
    static void rotateAroundCenter(Qt3DRender::QCamera* camera, QVector3D a, QVector3D b);
    /** Tilts by 0.2 degrees a pixel. A step beyond a limit ends exactly on it; limits are degrees below the horizon. */
    static void tiltCamera(Qt3DRender::QCamera* camera, double delta, float minAngle, float maxAngle);
    /** Moves the camera, not its view centre, by 2 % of their distance a pixel. A step that would reach or pass a limit
     *  is dropped. `x` is not used. */
    static void zoomTranslatingAlongViewVector(Qt3DRender::QCamera* camera, double x, double y, double lastY,
                                               double minDist, double maxDist);
    static QMatrix4x4 cameraToWorldRotation(Qt3DRender::QCamera* camera);
    /** Direction of the ray through the middle of a pixel, not normalised; its source is the camera's position. */
    static QVector3D cameraToScreenRay(float x, float y, Qt3DRender::QCamera* camera, float width, float height);
    /** The zero vector and 0 for a quaternion that turns nothing. */
    static void getAxisAndAngle(const QQuaternion& q, QVector3D& axis, float& angle);
};

} // namespace Torvik::View3d
