#pragma once

#include <QObject>
#include <QStringList>

namespace Torvik::View3d {
class Renderable;
}

namespace Torvik::Viewer {

/** What is selected in the scene, as the ids of the project's objects that the lists show, and the other way round. An
 *  inspected pipe stands in the lists twice, as inspection and as pipe. Main thread only. */
class SceneSelection : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /** The object's own id first; empty when nothing is selected. */
    QStringList ids() const { return m_ids; }
    /** Inspection of the selected pipe; empty for anything else. */
    QString inspectionId() const { return m_inspectionId; }

    /** Begins to follow the scene, once there is one. */
    void follow();
    /** Selects a node, pipe or inspection in the scene, as a further one while two are being connected; what cannot be
     *  selected leaves nothing selected. */
    void select(const QString& id);

signals:
    void changed();

private:
    void take(View3d::Renderable* renderable);

    QStringList m_ids;
    QString m_inspectionId;
    bool m_following = false;
};

} // namespace Torvik::Viewer
