#pragma once

#include "labels/LabelLook.h"

#include <Qt3DRender/QPaintedTextureImage>

namespace Torvik::View3d {

/** The picture of a label's text. Painted once for each look or size that it is given. */
class PaintedTextureText : public Qt3DRender::QPaintedTextureImage {
    Q_OBJECT

public:
    explicit PaintedTextureText(Qt3DCore::QNode* parent = nullptr);

    /** Paints only what differs from the picture that is there. */
    void show(const LabelLook& look, const QSize& pixels);
    QSize pixels() const { return m_pixels; }
    /** Of all labels since the program's start. */
    static int paintings();

protected:
    void paint(QPainter* painter) override;

private:
    LabelLook m_look;
    QSize m_pixels;
};

} // namespace Torvik::View3d
