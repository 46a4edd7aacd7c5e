#pragma once

#include "network/EntitySegment.h"
#include "scene/SharedComponents.h"

#include <QVector>

#include <optional>

namespace Qt3DRender {
class QMaterial;
}

namespace Torvik::View3d {

/** A segment drawn as a cylinder, with a ball that rounds the joint to the segment before.
 *
 *  Mesh and material are shared with all other segments: the mesh has radius and length 1 and is scaled by the mesh
 *  entity's transform, the material is swapped to change the colour. So a segment is four nodes, six with its joint.
 *
 *  Short segments that lie in a row are drawn by the first of them, as one cylinder (a stroke): a measured pipe has one
 * a centimetre. The others have no nodes of their own then, and null for transform() and cylinderTransform(). Whatever
 *  changes a single one of them gives all their own drawing back. */
class KXVIEW3D_EXPORT CylinderSegment : public EntitySegment {
    Q_OBJECT

public:
    enum class Drawing { AtOnce, Later };

    CylinderSegment(Qt3DCore::QNode* parent, EntitySegment* prev, const QVector3D& begin, const QVector3D& end,
                    Drawing drawing = Drawing::AtOnce);
    ~CylinderSegment() override;

    void setColor(QColor color) override;
    /** The warm tone of the drawing. */
    QColor color() const { return look().warm; }
    void createConnectionJoint() override;
    void removeConnectionJoint() override;
    void calcMeshLength(float length) override;
    void calcMeshRotation(const QQuaternion& rotation) override;

    /** Metres; 1 until it is set. The balls follow. */
    void setRadius(float radius);
    float radius() const { return m_radius; }
    /** The same for a whole pipe, segment by segment: those that are drawn together stay so. */
    void setColorAlong(QColor color);
    void setRadiusAlong(float radius);

    /** Whether it has nodes of its own. */
    bool isDrawn() const { return m_meshEntity != nullptr; }
    /** Makes the nodes of one that has none. */
    void draw();
    /** Leaves the drawing to the segment before, or to the one that draws that. False when they wouldn't look the same
     *  together; then nothing changes. Only for one that has another behind it: the end of a chain still changes. */
    bool letPreviousDraw();
    /** Gives all that are drawn together with this one their own drawing. */
    void drawAlone();
    /** For one that is removed: those drawn together with it are drawn without it. */
    void leaveStroke();

    /** Places and scales the mesh in the segment: along +z from 0 to the length, for a stroke to the stroke's end. */
    Qt3DCore::QTransform* cylinderTransform() const { return m_meshTransform; }

private:
    struct Ball {
        QPointer<Qt3DCore::QEntity> entity;
        Qt3DCore::QTransform* transform = nullptr;
    };

    GoochLook look() const;
    void init();
    Qt3DRender::QMaterial* createMaterial() const;
    void initTransform();
    void createJoint();
    Ball createBall(const QVector3D& position);
    void transformFromPoints();
    void calcLocalTransform();
    void replaceMaterial(Qt3DRender::QMaterial* material);
    void eraseNodes();
    bool canAlsoDraw(const CylinderSegment& next) const;
    bool hasGuests() const;

    Qt3DCore::QEntity* m_meshEntity = nullptr;
    Qt3DCore::QTransform* m_meshTransform = nullptr;
    Qt3DRender::QMaterial* m_material = nullptr; ///< of the pool
    Ball m_prevJoint;
    Ball m_joint;
    std::optional<QColor> m_color; ///< none for the usual look, of which there are thousands
    float m_radius = 1.0F;
    float m_meshLength = 1.0F;
    CylinderSegment* m_drawnBy = nullptr;  ///< the stroke's first, in all others of it
    QVector<CylinderSegment*> m_alsoDrawn; ///< in the stroke's first: the others, in their order
};

} // namespace Torvik::View3d
