#pragma once

#include "network/LowestCandidates.h"
#include "scene/KxView3dExport.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>

namespace Qt3DCore {
class QNode;
}

namespace Torvik::View3d {

class Node;
class SceneRoot;
class Section;

/** Keeps the lowest height that the bottom of a node or an end of a section reaches, so that a background plan can lie
 *  below everything. Scene metres; never above 0, the ground. A dip in the middle of a pipe does not count.
 *
 *  Only children of the scene's root count. An object that is destroyed is missed at the next signal of another one and
 *  not before. Each update looks at the object that has changed and not at the whole scene. Lives to the end of the
 *  process; main thread only. */
class KXVIEW3D_EXPORT LowestManholeTracker : public QObject {
    Q_OBJECT

public:
    static LowestManholeTracker* instance();

    /** Follows the object from now on; null does nothing. */
    void registerNode(Node* node);
    void registerSection(Section* section);
    /** Follows it no longer. The height stays as it is until another object changes. */
    void unregisterNode(Node* node);
    void unregisterSection(Section* section);
    /** Looks at an object that has been hung into the scene after its registration. */
    void lookAt(QObject* object);
    /** The object's geometry has changed without a signal that is followed here: looks at it in the next update. */
    void markStale(QObject* object);

    float getCurrentLowestY() const { return m_lowestY; }
    /** The largest float where there is none. */
    float getLowestManholeElevation();
    float getLowestSectionElevation();

public slots:
    /** Called by a registered object's signal it looks at that object, otherwise at all. */
    void updateLowestObject();

signals:
    void lowestObjectChanged(float y);

private:
    LowestManholeTracker();

    void follow(Qt3DCore::QNode* object);
    void unfollow(Qt3DCore::QNode* object);
    void onParentChanged();
    void refresh(QObject* object);
    void refreshAll();
    void refreshUnfollowed();
    void refreshOutside();
    void catchUp();
    void publish();

    LowestCandidates<const QObject*> m_nodes;
    LowestCandidates<const QObject*> m_sections;
    QSet<QObject*> m_followed;
    QSet<QObject*> m_stale;
    // Followed, but no child of the root: QML may hang it there later without a signal.
    QSet<QObject*> m_outside;
    // What is followed no longer still counts as long as it lives.
    QHash<const QObject*, QPointer<QObject>> m_unfollowed;
    SceneRoot* m_root = nullptr;
    float m_lowestY = 0.0F;
};

} // namespace Torvik::View3d
