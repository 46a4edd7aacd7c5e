#include "labels/PaintedTextureText.h"

namespace Torvik::View3d {

namespace {

int g_paintings = 0;

} // namespace

PaintedTextureText::PaintedTextureText(Qt3DCore::QNode* parent)
    : Qt3DRender::QPaintedTextureImage(parent)
{
}

int PaintedTextureText::paintings()
{
    return g_paintings;
}

void PaintedTextureText::show(const LabelLook& look, const QSize& pixels)
{
    if (m_look == look && m_pixels == pixels)
        return;
    m_look = look;
    m_pixels = pixels;
    // A new size paints by itself.
    if (size() != pixels)
        setSize(pixels);
    else
        update();
}

void PaintedTextureText::paint(QPainter* painter)
{
    ++g_paintings;
    paintLabel(*painter, m_pixels, m_look);
}

} // namespace Torvik::View3d
