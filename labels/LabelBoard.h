#pragma once

#include "labels/LabelFace.h"
#include "labels/LabelPlacement.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QSize>
#include <QTimer>
#include <QVector>

#include <deque>
#include <optional>

namespace Qt3DCore {
class QEntity;
}
namespace Qt3DRender {
class QCamera;
}

namespace Torvik::View3d {

class ImageLabel;
class NameTag;
class SceneRoot;

/** All labels of the scene: decides which of them are drawn, and lends those a face.
 *
 *  It is the only one that listens to the camera. While that moves all faces are hidden at once; when it has come to
 *  rest the board looks at each tag's place on the screen, gives room to those that it meets first - labels that were
 *  moved by hand, the latest first, then nodes, sections, observations - and draws at most maxDrawn of them, a slice in
 *  each turn of the event loop. One that has room before another lies over it. What is off the screen costs that look
 * and nothing else. One for the process; main thread only. */
class KXVIEW3D_EXPORT LabelBoard : public QObject {
    Q_OBJECT

public:
    static LabelBoard& instance();

    /** Labels that are drawn at a time; so many textures there are at most. */
    static constexpr int maxDrawn = 400;

    /** The scene that labels stand in, when it gets its camera. */
    void watch(SceneRoot* root, Qt3DRender::QCamera* camera);
    SceneRoot* root() const;
    /** Whether an object belongs to the scene that is watched. */
    bool isInScene(const QObject* object) const;
    /** Nothing without a scene and its camera. */
    std::optional<LabelPlacement::View> view() const;
    /** Where faces stand, in metres before the camera. */
    float depth() const;
    /** Size of a label's texture: as many pixels as the device shows of it. */
    QSize texturePixels(const QSizeF& screenPixels) const;
    /** Nearest place on the screen at which texture and device have the same pixels. */
    QPointF onDevicePixels(const QPointF& pixel) const;

    void add(NameTag* tag);
    void remove(NameTag* tag);
    /** The second, which was added last, stands where the first one stood; that one is removed. */
    void replace(NameTag* before, NameTag* tag);
    /** A label that hangs in the scene. */
    void enter(ImageLabel* label);
    /** It goes; takes back what it was lent. */
    void leave(ImageLabel* label);
    /** Looks at all tags again soon. */
    void schedule();
    /** The same at once. */
    void arrange();
    /** Labels are hidden, or some are still to come. */
    bool isBusy() const { return m_hidden || m_soon.isActive() || m_drawNext.isActive(); }
    /** The view moves. */
    bool isHidden() const { return m_hidden; }

    /** The label under a finger that touches the screen there: the uppermost, which from now on is kept and lies over
     *  all others. Null when there is none. */
    ImageLabel* labelAt(const QPointF& pixel);
    int tagCount() const { return m_tags.size() - m_gaps; }
    int drawnCount() const { return m_drawn.size(); }
    /** Faces that were ever needed at a time; none is given back to the renderer. */
    int faceCount() const { return m_faceCount; }

private:
    LabelBoard();

    void leaveRoot();
    void closeGaps();
    void hideLabels();
    void showLabels();
    QVector<NameTag*> chosen(const LabelPlacement::View& view) const;
    void raise(NameTag* tag);
    void layFaces();
    void release(NameTag* tag);
    void takeFaceFrom(ImageLabel* label);
    void drawSome();
    LabelFace* takeFace();
    void putBack(LabelFace* face);
    LabelFaceParts makeParts();

    QPointer<SceneRoot> m_root;
    QPointer<Qt3DRender::QCamera> m_camera;
    QVector<NameTag*> m_tags; ///< in the order of their coming; null where one has gone
    int m_gaps = 0;
    QVector<NameTag*> m_drawn; ///< the uppermost first
    QSet<ImageLabel*> m_labels;
    std::deque<NameTag*> m_waiting; ///< for a face
    QPointer<Qt3DCore::QEntity> m_overlay;
    LabelFaceParts m_parts;
    QVector<QPointer<LabelFace>> m_freeFaces;
    int m_faceCount = 0;
    QTimer m_soon;
    QTimer m_drawNext;
    unsigned m_round = 0;
    unsigned m_touches = 0;
    bool m_hidden = false;
};

} // namespace Torvik::View3d
