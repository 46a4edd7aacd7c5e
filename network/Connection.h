#pragma once

#include "network/JointMark.h"

namespace Torvik::View3d {

/** A short stub that leaves the pipe's axis at a joint: the direction in which a lateral begins. A pipe that really
 *  runs there takes its place. */
class KXVIEW3D_EXPORT Connection : public JointMark {
    Q_OBJECT

public:
    explicit Connection(Observation* observation);

    /** The stub stays centred where one of 0.3 is: a longer one grows to both sides. */
    void setVisualLength(float length) override;
    void setDiameter(float diameter) override;
    void onPipeDiameterChanged(float diameter) override;
    /** Radius for a diameter in millimetres. */
    float scaleRadius(float diameter) const;

    float radius() const { return m_radius; }
    float visualLength() const { return m_length; }

protected:
    Qt3DCore::QComponent* unitMesh() const override;

private:
    void resize();

    float m_radius = 1.0F;
    float m_length = 0.3F;
};

} // namespace Torvik::View3d
