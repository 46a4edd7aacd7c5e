#pragma once

#include "scene/KxView3dExport.h"

#include <QRectF>
#include <QString>
#include <QVector3D>
#include <Qt3DCore/QEntity>

namespace Qt3DExtras {
class QExtrudedTextMesh;
}

namespace Torvik::View3d {

/** A text as geometry that lies on the ground: seen from above, north at the top, it reads from left to right. Its
 *  point of reference is the parent's place. Nothing of it follows the camera. Main thread only. */
class KXVIEW3D_EXPORT VertexText : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    struct Params {
        QString text;
        int horizontalAlignment = 0; ///< what lies on the point: 2 the text's end, 1 and 4 its middle, others its begin
        int verticalAlignment = 1;   ///< 3 the upper edge, 0 and 2 the middle, others the lower edge
        float rotationDeg = 0;       ///< counter-clockwise as seen from above
        float scale = 1;             ///< 1: letters of about a metre
    };

    VertexText(Qt3DCore::QEntity* parent, Params const& params);

    /** Extremes of x and y among the mesh's vertices; a null rectangle for a text that shows nothing. */
    static QRectF getTextRectF(Qt3DExtras::QExtrudedTextMesh* mesh);
    /** How far the text is shifted on the ground, before it is scaled and turned, so that it is aligned: x to the west
     *  and z to the north of an unturned text. */
    QVector3D getTextAlignOffset(Params const& params) const;

private:
    Qt3DExtras::QExtrudedTextMesh* m_mesh;
};

} // namespace Torvik::View3d
