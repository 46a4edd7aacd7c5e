#pragma once

#include "host/drawing/DrawingMeshes.h"

namespace Qt3DCore {
class QEntity;
class QNode;
} // namespace Qt3DCore
namespace Qt3DRender {
class QEffect;
class QMaterial;
} // namespace Qt3DRender

namespace Torvik::DXF {

/** Draws the colours of the vertices, unlit: a plan looks the same from everywhere. Fills lie behind lines of their own
 *  height and let through what their opacity leaves. */
Qt3DRender::QMaterial* makeDrawingMaterial(DrawingMesh::Kind kind, Qt3DCore::QNode* parent);

/** An entity that draws one mesh. The geometry knows its bounds, so that nobody searches the vertices for them. */
Qt3DCore::QEntity* makeMeshEntity(const DrawingMesh& mesh, Qt3DRender::QMaterial* material, Qt3DCore::QEntity* parent);

/** Draws a picture as it is. */
Qt3DRender::QEffect* makePictureEffect(Qt3DCore::QNode* parent);

/** An entity that shows a picture where its region lies. */
Qt3DCore::QEntity* makePictureEntity(const DrawingPicture& picture, const QVector3D& cropOffset,
                                     Qt3DRender::QEffect* effect, Qt3DCore::QEntity* parent);

} // namespace Torvik::DXF
