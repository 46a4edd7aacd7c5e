#pragma once

#include "domain/boundary/CProjectObject.h"

#include <QObject>

namespace Torvik::Database {

class IDomainNotificationManager;

/** Writes changed objects to the project's database. */
class CProjectDBAccessManager : public QObject {
    Q_OBJECT

public:
    /** Writes every changed value of the object in one transaction and has each change notified with this origin.
     *  Without a change nothing happens. When the write fails the values stay changed in memory, the reason is logged
     * at level 1, and the next call tries again; so does the library itself while a failure may pass, as a lock does.
     */
    virtual void updateObject(const CDomainObjectPointer& object, int origin) = 0;

signals:
    /** Fires before a project is unloaded; its objects are still valid. */
    void projectUnloading(const QSharedPointer<Torvik::Database::CProjectObject>& project);
};

/** The two services of the domain library, which live as long as the process. */
class CDatabaseLibrary {
public:
    static IDomainNotificationManager& notificationManager();
    static CProjectDBAccessManager* dbAccessManager();
};

} // namespace Torvik::Database
