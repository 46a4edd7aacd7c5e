#pragma once

#include "scene/KxView3dExport.h"

#include <Qt3DCore/QEntity>

#include <QColor>
#include <QMatrix4x4>
#include <QVector3D>

namespace Qt3DCore {
class QTransform;
}
namespace Qt3DRender {
class QGeometryRenderer;
}

namespace Torvik::View3d {

class ObjectPicker;
class Renderable;

/** A pair of green handles beside an object, drawn over everything: a press on one limits the object's drag to their
 *  axis until the release. */
class KXVIEW3D_EXPORT AxisControlArrows : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    /** The arrows lie along `axis` and face `normal`; `size` scales their distance from the object. */
    AxisControlArrows(Renderable* parent, QVector3D normal, QVector3D axis, float size);

    Renderable* renderable() const { return m_renderable; }

    ObjectPicker* picker() const { return m_objectPicker; }
    QVector3D axis() const { return m_axis; }

signals:
    void controlAxisSelected(QVector3D controlAxis);
    void controlAxisDeselected();

private:
    void createArrows();
    void followView();
    void createPad(Qt3DCore::QEntity* parent);
    void createArrow(const QColor& color, Qt3DCore::QEntity* parent, const QMatrix4x4& matrix);
    Qt3DRender::QGeometryRenderer* createArrowMesh();

    Renderable* m_renderable;
    Qt3DCore::QTransform* m_transform;
    QVector3D m_normal;
    QVector3D m_axis;
    float m_size;
    ObjectPicker* m_objectPicker = nullptr;
};

} // namespace Torvik::View3d
