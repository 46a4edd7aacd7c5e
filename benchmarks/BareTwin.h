#pragma once

#include <QMatrix4x4>
#include <QVector>

namespace Qt3DCore {
class QEntity;
class QNode;
} // namespace Qt3DCore
namespace Qt3DRender {
class QGeometryRenderer;
class QMaterial;
} // namespace Qt3DRender

namespace Torvik::Bench {

/** What a scene looks like to Qt 3D alone: the same tree of entities with the same kinds of components, without the
 *  classes, signals and values around it. The yardstick for what opening and closing a project may cost. */
class BareTwin {
public:
    /** Remembers every entity among the children of `root`, as deep as they go. */
    void remember(const Qt3DCore::QEntity& root);
    /** Builds the remembered entities below `root` as Qt 3D does it best: each tree is put together first and hung
     *  into the scene last; meshes and materials are shared by 500. */
    void build(Qt3DCore::QEntity* root);

    /** The topmost entities that were built. */
    const QVector<Qt3DCore::QEntity*>& built() const { return m_built; }
    /** Remembered entities and transforms, which the renderer knows one by one. */
    int nodeCount() const { return m_nodeCount; }
    /** Remembered components of other kinds, which the twin leaves out. */
    int leftOut() const { return m_leftOut; }

private:
    struct Plan {
        bool hasTransform = false;
        bool hasMesh = false;
        bool hasMaterial = false;
        QMatrix4x4 matrix;
        QVector<Plan> children;
    };
    struct Pool {
        Qt3DRender::QGeometryRenderer* mesh = nullptr;
        int meshUsers = 0;
        Qt3DRender::QMaterial* material = nullptr;
        int materialUsers = 0;
    };

    Plan planOf(const Qt3DCore::QEntity& entity);
    Qt3DCore::QEntity* make(const Plan& plan, Qt3DCore::QNode* parent);
    void dress(const Plan& plan, Qt3DCore::QEntity* entity);

    QVector<Plan> m_plans;
    QVector<Qt3DCore::QEntity*> m_built;
    Pool m_pool;
    Qt3DCore::QEntity* m_root = nullptr;
    int m_nodeCount = 0;
    int m_leftOut = 0;
};

} // namespace Torvik::Bench
