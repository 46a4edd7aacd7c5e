#pragma once

#include <Qt3DCore/QEntity>
#include <Qt3DCore/QTransform>

namespace Torvik::View3d {

class Node;

namespace Geometry {

/** Something that looks different while it is selected. */
class Selectable {
public:
    virtual ~Selectable() = default;

    virtual void selected() = 0;
    virtual void unselected() = 0;
};

/** The mesh of a node, an entity under it. The node's position is the top of the mesh; metres. A change of the node's
 *  type means another geometry, a change of its size a call on this one. */
class NodeGeometry : public Qt3DCore::QEntity, public Selectable {
    Q_OBJECT

public:
    explicit NodeGeometry(Qt3DCore::QNode* parent);

    /** The geometry for the node's type: "CON", "BLD"; anything else is a manhole. */
    static NodeGeometry* create(Node* node);

    virtual void setLength(float length) = 0;
    virtual void setRadius(float radius) = 0;
    virtual void setVisible(bool visible) = 0;
    Qt3DCore::QTransform* transform() const { return m_transform; }

protected:
    Qt3DCore::QTransform* m_transform;
};

} // namespace Geometry
} // namespace Torvik::View3d
