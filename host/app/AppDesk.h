#pragma once

#include "domain/boundary/CDomainObject.h"
#include "host/app/PhotoDesk.h"

#include <QObject>

namespace Torvik::Viewer {

/** What the window offers around the view. QML has it as `viewer.desk`. Main thread only. */
class AppDesk : public QObject {
    Q_OBJECT
    Q_PROPERTY(QObject* photos READ photos CONSTANT)

public:
    explicit AppDesk(QObject* parent = nullptr);

    PhotoDesk* photos() { return &m_photos; }

    /** What the user is asked before an object of the project is deleted; empty for one that cannot be. */
    Q_INVOKABLE QString questionBeforeDeleting(const QString& id) const;
    /** Deletes it with all that belongs to it; why that is not possible, empty when it was. */
    Q_INVOKABLE QString deleteObject(const QString& id);

signals:
    /** The project has fewer objects than before. */
    void deleted();

private:
    PhotoDesk m_photos;
};

} // namespace Torvik::Viewer
