#pragma once

#include "network/JointMark.h"

namespace Torvik::View3d {

/** A sphere at a joint, which the user can pick in connection mode to tie a new lateral to it. */
class KXVIEW3D_EXPORT ConnectionPoint : public JointMark {
    Q_OBJECT
    Q_PROPERTY(float radius READ radius WRITE setRadius)

public:
    /** How the guid of each begins; it tells touch control that a pick is a connection point. */
    static QString guidPrefix();

    explicit ConnectionPoint(Observation* observation);

    QString guid() override;
    /** The observation's place on the pipe. */
    QVector3D connectionPoint(Renderable* other) override;
    void setSelectedMaterial() override;
    void setDefaultMaterial() override;

    /** The sphere becomes what it must be around a stub of this radius. */
    void setVisualLength(float radius) override;
    void setDiameter(float diameter) override;
    void onPipeDiameterChanged(float diameter) override;
    float scaleRadius(float radius) const;
    /** Runs from the saved radius to `radius`, in a second. */
    void startResizeRadiusAnim(float radius);
    /** In connection mode all spheres swell by half and change their colour. */
    void handleConnectionMode(bool on);

    float radius() const { return m_radius; }
    void setRadius(float radius);
    /** The radius to which the sphere returns. */
    float savedRadius() const { return m_savedRadius; }

protected:
    Qt3DCore::QComponent* unitMesh() const override;
    TouchControlBase* createTouchControl() override;

private:
    QPointer<Qt3DRender::QMaterial> m_materialSelected;
    QPointer<Qt3DRender::QMaterial> m_materialDefault;
    QPointer<Qt3DRender::QMaterial> m_materialConnecting;
    float m_radius = 0.5F;
    float m_savedRadius = 0.0F;
};

} // namespace Torvik::View3d
