#pragma once

#include "network/EntitySegment.h"
#include "scene/SharedComponents.h"

namespace Qt3DRender {
class QMaterial;
}

namespace Torvik::View3d {

/** A segment drawn as a cylinder, with a ball that rounds the joint to the segment before.
 *
 *  Mesh and material are shared with all other segments: the mesh has radius and length 1 and is scaled by the mesh
 *  entity's transform, the material is swapped to change the colour. So a segment is four nodes, six with its joint. */
class KXVIEW3D_EXPORT CylinderSegment : public EntitySegment {
    Q_OBJECT

public:
    CylinderSegment(Qt3DCore::QNode* parent, EntitySegment* prev, const QVector3D& begin, const QVector3D& end);

    void setColor(QColor color) override;
    /** The warm tone of the drawing. */
    QColor color() const { return m_look.warm; }
    void createConnectionJoint() override;
    void removeConnectionJoint() override;
    void calcMeshLength(float length) override;
    void calcMeshRotation(const QQuaternion& rotation) override;

    /** Metres; 1 until it is set. The balls follow. */
    void setRadius(float radius);
    float radius() const { return m_radius; }
    /** Places and scales the mesh in the segment: along +z from 0 to the length. */
    Qt3DCore::QTransform* cylinderTransform() const { return m_meshTransform; }

private:
    struct Ball {
        QPointer<Qt3DCore::QEntity> entity;
        Qt3DCore::QTransform* transform = nullptr;
    };

    void init();
    Qt3DRender::QMaterial* createMaterial() const;
    void initTransform();
    void createJoint();
    Ball createBall(const QVector3D& position);
    void transformFromPoints();
    void calcLocalTransform();
    void replaceMaterial(Qt3DRender::QMaterial* material);

    Qt3DCore::QEntity* m_meshEntity = nullptr;
    Qt3DCore::QTransform* m_meshTransform = nullptr;
    Qt3DRender::QMaterial* m_material = nullptr; ///< of the pool
    Ball m_prevJoint;
    Ball m_joint;
    GoochLook m_look;
    float m_radius = 1.0F;
    float m_meshLength = 1.0F;
};

} // namespace Torvik::View3d
