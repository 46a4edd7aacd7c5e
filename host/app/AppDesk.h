#pragma once

#include "domain/boundary/CDomainObject.h"
#include "host/app/ObjectDetails.h"
#include "host/app/PhotoDesk.h"
#include "host/app/ProjectTree.h"
#include "host/app/RecentProjects.h"

#include <QObject>

namespace Torvik::Viewer {

/** What the window offers around the view. QML has it as `viewer.desk`. Main thread only. */
class AppDesk : public QObject {
    Q_OBJECT
    Q_PROPERTY(QObject* photos READ photos CONSTANT)
    Q_PROPERTY(QObject* recent READ recent CONSTANT)
    Q_PROPERTY(QObject* tree READ tree CONSTANT)
    Q_PROPERTY(QObject* details READ details CONSTANT)

public:
    explicit AppDesk(QObject* parent = nullptr);

    PhotoDesk* photos() { return &m_photos; }
    RecentProjects* recent() { return &m_recent; }
    ProjectTree* tree() { return &m_tree; }
    ObjectDetails* details() { return &m_details; }

    /** Tree and details, after a change of the project, the language or the unit. */
    void writeAnew();
    /** Of the open project; the details are this object's. */
    void setCurrentId(const QString& id);
    /** Of an observation its inspection is what can be gone to. */
    Q_INVOKABLE void goTo(const QString& id);

    /** What the user is asked before an object of the project is deleted; empty for one that cannot be. */
    Q_INVOKABLE QString questionBeforeDeleting(const QString& id) const;
    /** Deletes it with all that belongs to it; why that is not possible, empty when it was. */
    Q_INVOKABLE QString deleteObject(const QString& id);

signals:
    /** The project has fewer objects than before. */
    void deleted();
    /** The object should come into view. */
    void goToWanted(const QString& id);

private:
    PhotoDesk m_photos;
    RecentProjects m_recent;
    ProjectTree m_tree;
    ObjectDetails m_details;
};

} // namespace Torvik::Viewer
