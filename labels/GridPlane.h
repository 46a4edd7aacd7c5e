#pragma once

#include "scene/KxView3dExport.h"

#include <QMap>
#include <QMutex>
#include <QVector3D>
#include <Qt3DCore/QEntity>

namespace Qt3DCore {
class QTransform;
}
namespace Qt3DRender {
class QBuffer;
class QGeometry;
class QGeometryRenderer;
class QMaterial;
} // namespace Qt3DRender

namespace Torvik::View3d {

/** The ruled ground. Its lines are built once; their distance changes by steps that suit the distance of the camera and
 *  the project's units, and the whole is moved by whole squares, so that it seems to stand still under a camera that
 *  moves. The material draws colours of vertices. Main thread only. */
class KXVIEW3D_EXPORT GridPlane : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    /** A material without a parent becomes the plane's. */
    GridPlane(Qt3DCore::QEntity* parent, Qt3DRender::QMaterial* material);

    /** Side of a square in tenths of a metre. */
    float squareSize() const { return m_squareSize; }
    /** The grid's middle, in scene coordinates. */
    QVector3D position() const;
    /** Whether the project's lengths are feet. */
    static bool imperialUnits();

    /** Brings the lines to the distance that the square size tells. */
    void resize();
    /** Moves the middle to the corner of the squares beside the point, at the point's height. */
    void reposition(const QVector3D& point);
    /** The square size for a distance in metres as seen through a lens of 20 degrees. */
    float calculateGridSquareSize(float distance) const;
    void resizeForDistance(float distance);

public slots:
    /** Takes the squares of the units that are set now. */
    void onLocaleChanged();

signals:
    void gridSquareSizeChanged(float gridSquareSize);
    void positionChanged();

private:
    static Qt3DRender::QGeometryRenderer* createWireframePlaneMesh(unsigned linesPerDirection);
    static void addPositionAttributeToGeometry(Qt3DRender::QGeometry* geometry, Qt3DRender::QBuffer* buffer,
                                               unsigned count);
    static void addColorAttributeToGeometry(Qt3DRender::QGeometry* geometry, Qt3DRender::QBuffer* buffer,
                                            unsigned count);

    Qt3DCore::QTransform* m_transform;
    float m_squareSize;
    int m_squaresPerSide = 25; ///< from the middle to an edge
    QMap<float, float> m_scales;
    float m_distance = 0;
    QMutex m_mutex;
};

} // namespace Torvik::View3d
