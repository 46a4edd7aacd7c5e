#pragma once

#include "scene/KxView3dExport.h"
#include "scene/Renderable.h"

#include <QPointer>

namespace Qt3DCore {
class QComponent;
class QTransform;
} // namespace Qt3DCore
namespace Qt3DRender {
class QMaterial;
}

namespace Torvik::View3d {

class Observation;

/** What marks a joint on the pipe of a connection observation, whose child it is: turned to the observation's clock
 *  position and joint angle, and drawn by a unit mesh that its transform scales. Clock positions are hours, angles
 *  degrees, lengths and radii metres, diameters millimetres. Main thread only. */
class KXVIEW3D_EXPORT JointMark : public Renderable {
    Q_OBJECT

public:
    ~JointMark() override;

    QString renderableType() const override;
    /** In the scene: the observation's, and the joint's in it. */
    QQuaternion orientation() const override;

    virtual void setVisualLength(float length) = 0;
    virtual void setDiameter(float diameter) = 0;
    virtual void onPipeDiameterChanged(float diameter) = 0;
    /** Reads diameter, clock and angle of the observation. */
    void refreshData();
    void setClock(int clock);
    void setJointAngle(float jointAngle);
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);

    Observation* observation() const { return m_observation; }
    /** The entity that is drawn. */
    Qt3DCore::QEntity* entity() const { return m_entity; }

protected:
    explicit JointMark(Observation* observation);

    /** A mesh that has room for one more entity. */
    virtual Qt3DCore::QComponent* unitMesh() const = 0;
    void init();
    void calculateTransform();
    void scaleMesh(const QVector3D& scale);
    /** Draws with this material from now on. */
    void showMaterial(Qt3DRender::QMaterial* material);

private:
    Observation* m_observation;
    Qt3DCore::QEntity* m_entity = nullptr;
    Qt3DCore::QTransform* m_meshTransform = nullptr;
    QPointer<Qt3DCore::QComponent> m_mesh;
    QPointer<Qt3DRender::QMaterial> m_shownMaterial;
    bool m_visible = true;
    int m_clock = 0;
    float m_jointAngle = 90.0F;
};

} // namespace Torvik::View3d
