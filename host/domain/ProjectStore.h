#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/domain/BulkWriter.h"
#include "host/domain/ProjectLoader.h"
#include "host/domain/SqlConnection.h"

#include <QObject>
#include <QVariantMap>

#include <functional>

namespace Torvik::Database {

/** A project that was opened, or why it was not: one line that names file and cause. */
struct OpenedProject {
    QSharedPointer<CProjectObject> project;
    QString error;
};

/** An object that was added, or why it was not. */
struct InsertedObject {
    CDomainObjectPointer object;
    QString error;
};

/** Projects on disk, for the host. Main thread only unless said otherwise. Column names are those of
 *  docs/project-format.md. */
class ProjectStore : public QObject {
    Q_OBJECT

public:
    enum Mode { ReadWrite, ReadOnly };
    using Fill = std::function<StoreStatus(BulkWriter&)>;

    static ProjectStore& instance();

    /** The database inside a project's folder. */
    static QString databaseFile(const QString& folder);

    /** Makes a project in a folder that is not there yet or empty, with its sub-folders, and lets `fill` add objects.
     * It is built aside and moved into place when all has gone well, so a failure leaves nothing. Any thread.
     *  @param values  columns of the project, e.g. PRJ_Name and PRJ_ProjectionWKT */
    static StoreStatus create(const QString& folder, const QVariantMap& values = {}, const Fill& fill = {});

    /** Opens a project. A database that is damaged, locked, read-only (unless opened as such), of another program or of
     *  a newer version gives an error and is left untouched. */
    OpenedProject open(const QString& folder, Mode mode = ReadWrite, const LoadProgress& progress = {});
    /** The same with the reading on another thread. `done` is called later, on the main thread, unless `context` has
     *  been destroyed by then; `progress` on the reading thread. */
    void openInBackground(const QString& folder, Mode mode, QObject* context,
                          std::function<void(const OpenedProject&)> done, const LoadProgress& progress = {});
    /** Announces the end (projectUnloading while all is valid, then AppState without the project, then notification 6
     * for the project), then closes the database and makes the objects invalid. Nothing for one that is not open. */
    void close(const QSharedPointer<CProjectObject>& project);

    /** Adds an object below the project, a pipe or an inspection, stores it and notifies. */
    InsertedObject insertObject(const CDomainObjectPointer& parent, ObjectType type, const QVariantMap& values);
    /** Deletes an object with all below it, in the database too, and notifies. Not for the project. */
    StoreStatus deleteObject(const CDomainObjectPointer& object);
    /** Writes what is changed in the object, once; the outcome is the caller's business.
     *  @param waitMs  how long to wait for another program that is writing */
    StoreStatus writeObject(const CDomainObjectPointer& object, int origin, int waitMs = SqlConnection::busyTimeoutMs);

    /** A job is an object of its own, for AppState::setActiveJob. */
    InsertedObject insertJob(const QSharedPointer<CProjectObject>& project, const QVariantMap& values);
    QVector<CDomainObjectPointer> jobs(const QSharedPointer<CProjectObject>& project);

signals:
    /** A write that the view asked for has failed; for the user. */
    void writeFailed(const QString& message);

private:
    ProjectStore() = default;
    static QSharedPointer<CProjectObject> read(const QString& folder, Mode mode, const LoadProgress& progress,
                                               StoreStatus& status);
    OpenedProject connectProject(const QSharedPointer<CProjectObject>& project, Mode mode, const StoreStatus& status);
};

} // namespace Torvik::Database
