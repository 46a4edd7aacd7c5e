#pragma once

#include "host/drawing/DrawingMeshes.h"

#include <QBasicTimer>
#include <Qt3DCore/QEntity>

namespace Qt3DRender {
class QEffect;
class QMaterial;
} // namespace Qt3DRender

namespace Torvik::DXF {

/** The root of a drawing's entities. A large drawing shows pictures from afar and its lines from near by; whoever moves
 *  the camera tells it how much of the drawing a pixel of the screen shows. Until that is told it is seen from afar. */
class DrawingTree : public Qt3DCore::QEntity {
    Q_OBJECT

public:
    explicit DrawingTree(DrawingMeshes meshes);

    /** Makes the next entity of what is seen from afar; false when all of that is there. The rest is made once it is
     *  wanted, in pieces that the graphics card takes without holding up a frame. */
    bool makeNext();

    /** In the drawing's unit. Has no effect on a drawing without pictures. */
    Q_INVOKABLE void setUnitsPerPixel(float units);
    /** What is shown: a level of the pictures, or pictureLevels for the lines. */
    int shownLevel() const { return m_shown; }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void makeMesh(DrawingMesh& mesh);
    void makePicture(const DrawingPicture& picture);
    bool makeMoreOf(int level);
    bool makePictureOf(int level);
    bool makeMeshOf(bool always);
    int levelFor(float unitsPerPixel) const;
    void show(int level);

    DrawingMeshes m_meshes;
    Qt3DRender::QMaterial* m_materials[3] = {};
    Qt3DRender::QEffect* m_pictureEffect = nullptr;
    Qt3DCore::QEntity* m_levels[pictureLevels + 1] = {}; ///< the last one has the lines
    int m_madePictures[pictureLevels] = {};
    int m_nextMesh[2] = {}; ///< of those that are always drawn, and of the others
    int m_madeBytes = 0;    ///< since the timer last came
    int m_shown = 0;
    int m_wanted = 0;
    QBasicTimer m_timer;
};

} // namespace Torvik::DXF
