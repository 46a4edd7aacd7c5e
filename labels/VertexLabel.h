#pragma once

#include "labels/Label.h"

namespace Qt3DExtras {
class QExtrudedTextMesh;
}
namespace Qt3DRender {
class QAttribute;
class QMaterial;
} // namespace Qt3DRender

namespace Torvik::View3d {

/** A label as geometry: its letters lie flat above the object and run along the direction that the object has on the
 *  ground. They keep their size in metres, so they are not readable at every zoom. Main thread only. */
class KXVIEW3D_EXPORT VertexLabel : public Label {
    Q_OBJECT

public:
    static VertexLabel* create(Renderable* parent, QString const& text);
    VertexLabel(Renderable* parent, QString const& text);

    /** The parent's. */
    QQuaternion orientation() const override;
    /** Takes the place of the material that it has now, which stays with its parent. */
    void setMaterial(Qt3DRender::QMaterial* material);
    void debugPrintVertices(Qt3DRender::QAttribute* attribute);

public slots:
    void onTextChanged(QString text) override;
    void onHeightChanged() override;
    void onFontChanged() override;

private:
    /** Of letters without depth the front is enough. */
    void removeRedundantVertices();
    void resizeAndReposition();

    Qt3DRender::QMaterial* m_material;
    Qt3DExtras::QExtrudedTextMesh* m_mesh;
    QVector3D m_shift; ///< by which the label was moved off its place
};

} // namespace Torvik::View3d
