#pragma once

#include <Qt3DCore/QEntity>

namespace Qt3DExtras {
class QCylinderMesh;
}

namespace Torvik::View3d {

class ObjectPicker;

/** The disc around an object by which it is turned about the vertical; of the same size on the screen at any distance.
 */
class RotationRing : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    explicit RotationRing(Qt3DCore::QEntity* parent);

    ObjectPicker* picker() const { return m_picker; }
    /** Hidden at first. A hidden ring has no mesh: the renderer's picking would still hit it. */
    void setShown(bool shown);
    float radius() const;
    /** Radius that a ring has at the camera's present distance. */
    static float radiusInView();

private:
    void followView();

    Qt3DExtras::QCylinderMesh* m_mesh;
    bool m_shown = false;
    ObjectPicker* m_picker;
};

} // namespace Torvik::View3d
