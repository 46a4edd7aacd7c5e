#include "network/NodeGeometry.h"

#include "domain/NodeAdapter.h"
#include "network/BuildingGeometry.h"
#include "network/ConnectionGeometry.h"
#include "network/ManholeGeometry.h"
#include "network/Node.h"
#include "network/NodeMaterials.h"
#include "scene/SceneRoot.h"

namespace Torvik::View3d::Geometry {

namespace {

QString typeOf(const Node* node)
{
    if (node->isVirtual())
        return node->nodeType();
    return node->getProps() ? node->getProps()->type() : QString();
}

/** Without a scene's root there is nothing to draw with. */
template <typename Mesh>
void giveMaterials(Mesh* mesh)
{
    const SceneRoot* const root = SceneRoot::instance();
    if (!root)
        return;
    mesh->setSelectedMaterial(root->materialNodeSelected());
    mesh->setUnselectedMaterial(NodeMaterials::standInFor(root->materialNode()));
}

NodeGeometry* createCylinder(Node* node)
{
    auto* const geometry = new ManholeGeometry(node);
    geometry->setRadius(node->radius());
    geometry->setLength(node->depth());
    giveMaterials(geometry);
    return geometry;
}

NodeGeometry* createBuilding(Node* node)
{
    auto* const geometry = new BuildingGeometry(node);
    geometry->setRadius(node->radius());
    giveMaterials(geometry);
    return geometry;
}

NodeGeometry* createConnection(Node* node)
{
    return new ConnectionGeometry(node);
}

} // namespace

NodeGeometry::NodeGeometry(Qt3DCore::QNode* parent)
    : Qt3DCore::QEntity(parent)
    , m_transform(new Qt3DCore::QTransform)
{
    addComponent(m_transform);
}

NodeGeometry* NodeGeometry::create(Node* node)
{
    const QString type = typeOf(node);
    if (type == QLatin1String("CON"))
        return createConnection(node);
    if (type == QLatin1String("BLD"))
        return createBuilding(node);
    return createCylinder(node);
}

} // namespace Torvik::View3d::Geometry
