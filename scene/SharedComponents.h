#pragma once

#include <Qt3DCore/QNode>

#include <QColor>
#include <QPointer>
#include <QVector>

namespace Qt3DExtras {
class QCylinderMesh;
class QGoochMaterial;
class QSphereMesh;
} // namespace Qt3DExtras
namespace Qt3DRender {
class QEffect;
class QParameter;
} // namespace Qt3DRender

namespace Torvik::View3d {

/** Colours and shading of a gooch material. */
struct GoochLook {
    QColor cool;
    QColor warm;
    float alpha = 0.12F;
    float beta = 1.0F;
    float shininess = 0.1F;
    QColor diffuse = Qt::black;
    QColor specular = Qt::black;

    bool operator==(const GoochLook& other) const;
};

/** Meshes and materials that many entities have in common, so that an object of the scene is cheap to make and, above
 *  all, cheap to delete: the time of a deletion grows with the square of the nodes that leave.
 *
 *  The pool owns what it hands out; an entity adds it as a component and neither deletes nor changes it (to look
 *  different it swaps the component). Because adding one component to thousands of entities is slow as well, the pool
 *  goes over to a fresh one after some hundred users: ask again for every entity. Main thread only. */
class SharedComponents {
public:
    static SharedComponents& instance();

    SharedComponents(const SharedComponents&) = delete;
    SharedComponents& operator=(const SharedComponents&) = delete;

    /** Puts the pool under the scene's root, without which nothing that uses it is drawn. When the root dies, so does
     *  what was handed out, and the pool starts afresh. */
    void setHome(Qt3DCore::QNode* home);

    /** Radius 1, length 1 along y around the centre. */
    Qt3DExtras::QCylinderMesh* unitCylinder();
    /** Radius 1. */
    Qt3DExtras::QSphereMesh* unitSphere();
    Qt3DExtras::QGoochMaterial* goochMaterial(const GoochLook& look);
    /** Warm as given, cool three tenths of it, the rest as every pipe has it. */
    Qt3DExtras::QGoochMaterial* goochMaterial(const QColor& warm);
    static GoochLook lookFromWarm(const QColor& warm);
    /** The effect by which the pool's materials draw, and others may (scene/ReadableEffect.h). */
    Qt3DRender::QEffect* readableEffect();
    /** Metres that a pixel shows at the view's centre; thin things are drawn wider from far away. */
    void setMetresPerPixel(float metresPerPixel);

    /** Least width on the screen. */
    static constexpr float pipePixels = 1.5F;
    static constexpr float nodePixels = 5.0F;

    /** Entities that one component serves before the next is made. */
    static constexpr int usersPerComponent = 120;

private:
    struct Materials {
        GoochLook look;
        QVector<Qt3DExtras::QGoochMaterial*> items;
    };

    SharedComponents() = default;
    Qt3DCore::QNode* holder();

    QPointer<Qt3DCore::QNode> m_holder;
    Qt3DRender::QEffect* m_readableEffect = nullptr;
    float m_metresPerPixel = 0.0F;
    QVector<Qt3DExtras::QCylinderMesh*> m_cylinders;
    QVector<Qt3DExtras::QSphereMesh*> m_spheres;
    QVector<Materials> m_materials;
};

} // namespace Torvik::View3d
