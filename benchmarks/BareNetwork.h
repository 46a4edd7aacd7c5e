#pragma once

#include <QVector>

namespace Qt3DCore {
class QEntity;
class QTransform;
} // namespace Qt3DCore
namespace Qt3DRender {
class QGeometryRenderer;
class QMaterial;
} // namespace Qt3DRender

namespace Torvik::Bench {

/** How bare Qt 3D entities of the same kinds as those of a network are built. */
struct BareOptions {
    int pipes = 1000;         ///< also the number of manholes
    int usersPerShare = 500;  ///< entities that share one mesh and one material; 0: every entity owns both
    bool detached = true;     ///< each object is built without a parent and hung into the scene last
    bool withSignals = false; ///< connect the change signals of the transforms as scene objects do
    bool withTimers = false;  ///< a QTimer member and its connection in every object
    bool disabled = false;    ///< built with their top entities disabled
};

/** Nothing but Qt 3D: as many entities, transforms, meshes and materials as a network of the same size has, with 1, 2
 * or 3 segments a pipe in turn. The yardstick for what opening and closing a project may cost. */
class BareNetwork {
public:
    /** Builds into @p root, which owns what is built. */
    void build(Qt3DCore::QEntity* root, const BareOptions& options);

    const QVector<Qt3DCore::QEntity*>& nodes() const { return m_nodes; }
    const QVector<Qt3DCore::QEntity*>& sections() const { return m_sections; }
    /** Entities, components and what else has a counterpart in the renderer. */
    int nodeCount() const;

private:
    struct Share {
        Qt3DRender::QGeometryRenderer* mesh = nullptr;
        Qt3DRender::QMaterial* material = nullptr;
        int users = 0;
    };
    void dress(Qt3DCore::QEntity* entity, Share& share);
    Qt3DCore::QEntity* makeNode(int index);
    Qt3DCore::QEntity* makeSection(int index);
    Qt3DCore::QTransform* addTransform(Qt3DCore::QEntity* entity);

    BareOptions m_options;
    Qt3DCore::QEntity* m_root = nullptr;
    Share m_nodeShare;
    Share m_segmentShare;
    QVector<Qt3DCore::QEntity*> m_nodes;
    QVector<Qt3DCore::QEntity*> m_sections;
};

} // namespace Torvik::Bench
