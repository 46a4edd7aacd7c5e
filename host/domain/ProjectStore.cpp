#include "host/domain/ProjectStore.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CLogger.h"
#include "host/domain/DatabaseCheck.h"
#include "host/domain/DomainObjectData.h"
#include "host/domain/NotificationManager.h"
#include "host/domain/ObservationCodes.h"
#include "host/domain/ProjectSchema.h"
#include "host/domain/ProjectSession.h"
#include "host/domain/StoreTrouble.h"
#include "host/domain/ThreadConnections.h"
#include "host/domain/WaitingObjects.h"

#include <QDir>
#include <QPointer>
#include <QThreadPool>

namespace Torvik::Database {

namespace {

/** A program that holds the database longer than this while it opens counts as having it locked. */
constexpr int openTimeoutMs = 1500;

class FunctionRunnable : public QRunnable {
public:
    explicit FunctionRunnable(std::function<void()> function)
        : m_function(std::move(function))
    {
    }
    void run() override { m_function(); }

private:
    std::function<void()> m_function;
};

QString projectPathOf(const QString& folder)
{
    return QDir(folder).absolutePath() + QLatin1Char('/');
}

ProjectSession* sessionOf(const CDomainObjectPointer& object, StoreStatus& status)
{
    const auto project = CDomainObject::projectFromObject(object);
    ProjectSession* const session = project ? ProjectData::of(project)->session.get() : nullptr;
    if (!session) {
        status = {QStringLiteral("The object belongs to no open project")};
    }
    return session;
}

bool isParentOf(ObjectType parent, ObjectType child)
{
    switch (child) {
    case NodeObjectType:
    case SectionObjectType:
    case LateralObjectType:
        return parent == ProjectObjectType;
    case PipeInspectionObjectType:
        return parent == SectionObjectType || parent == LateralObjectType;
    case PipeObservationObjectType:
        return parent == PipeInspectionObjectType;
    default:
        return false;
    }
}

} // namespace

ProjectStore& ProjectStore::instance()
{
    static ProjectStore store;
    return store;
}

QString ProjectStore::databaseFile(const QString& folder)
{
    return projectPathOf(folder) + QStringLiteral("project.db");
}

QSharedPointer<CProjectObject> ProjectStore::read(const QString& folder, Mode mode, const LoadProgress& progress,
                                                  StoreStatus& status)
{
    const QString file = databaseFile(folder);
    status = DatabaseCheck::header(file);
    if (status && mode == ReadWrite) {
        status = DatabaseCheck::writable(file);
    }
    if (status) {
        status = DatabaseCheck::content(file);
    }
    if (!status) {
        return nullptr;
    }
    const auto access = mode == ReadWrite ? SqlConnection::ReadWrite : DatabaseCheck::readAccess(file);
    const auto connection = SqlConnection::open(file, access, status, openTimeoutMs);
    if (!connection) {
        return nullptr;
    }
    if (mode == ReadWrite) {
        status = SqlTransaction(*connection).begun();
    }
    return status ? ProjectLoader::load(*connection, projectPathOf(folder), status, progress) : nullptr;
}

OpenedProject ProjectStore::connectProject(const QSharedPointer<CProjectObject>& project, Mode mode,
                                           const StoreStatus& status)
{
    if (!project) {
        return {nullptr, status.error};
    }
    const QString file = databaseFile(project->projectPath());
    const auto access = mode == ReadWrite ? SqlConnection::ReadWrite : DatabaseCheck::readAccess(file);
    StoreStatus opened;
    auto connection = SqlConnection::open(file, access, opened);
    if (connection && mode == ReadWrite) {
        opened = connection->execute(QStringLiteral("PRAGMA journal_mode = WAL"));
    }
    if (!connection || !opened) {
        return {nullptr, opened.error};
    }
    ProjectData& data = *ProjectData::of(project);
    data.session = std::make_unique<ProjectSession>(std::move(connection), data, mode == ReadOnly);
    const StoreStatus cut = mode == ReadWrite ? data.session->cutBackLog() : StoreStatus {};
    if (!cut) {
        Logging::CLogger::logMessage(Logging::LogWarning, QStringLiteral("Torvik::Database"),
                                     QStringLiteral("The log of changes stays long: %1").arg(cut.error));
    }
    const QString ownCodes = QDir(project->projectPath()).filePath(ObservationCodes::fileName());
    for (const QString& problem : ObservationCodes::useFiles({ObservationCodes::settingsFile(), ownCodes})) {
        Logging::CLogger::logMessage(Logging::LogWarning, QStringLiteral("Torvik::Database"), problem);
    }
    return {project, {}};
}

OpenedProject ProjectStore::open(const QString& folder, Mode mode, const LoadProgress& progress)
{
    StoreStatus status;
    const auto project = read(folder, mode, progress, status);
    return connectProject(project, mode, status);
}

void ProjectStore::openInBackground(const QString& folder, Mode mode, QObject* context,
                                    std::function<void(const OpenedProject&)> done, const LoadProgress& progress)
{
    const QPointer<QObject> guard(context);
    QThreadPool::globalInstance()->start(new FunctionRunnable([=] {
        StoreStatus status;
        const auto project = read(folder, mode, progress, status);
        QMetaObject::invokeMethod(
            this,
            [=] {
                if (guard) {
                    done(connectProject(project, mode, status));
                }
            },
            Qt::QueuedConnection);
    }));
}

void ProjectStore::close(const QSharedPointer<CProjectObject>& project)
{
    ProjectData* const data = ProjectData::of(project);
    if (!data || !data->session) {
        return;
    }
    StoreTrouble::instance().hurry();
    emit CDatabaseLibrary::dbAccessManager()->projectUnloading(project);
    WaitingObjects::instance().storeNow();
    AppState& state = AppState::instance();
    if (state.getActiveProject() == project) {
        state.setActiveProject({});
    }
    NotificationManager::instance().notify(CDomainNotification::ObjectUnloaded, project);
    data->session.reset();
    ThreadConnections::release();
    data->invalidateAll();
    StoreTrouble::instance().takeTime();
}

InsertedObject ProjectStore::insertObject(const CDomainObjectPointer& parent, ObjectType type,
                                          const QVariantMap& values)
{
    StoreStatus status;
    InsertedObject result;
    ProjectSession* const session = sessionOf(parent, status);
    if (session && !isParentOf(parent->objectType(), type)) {
        status = {QStringLiteral("An object of type %1 cannot hold one of type %2")
                      .arg(int(parent->objectType()))
                      .arg(int(type))};
    }
    if (status) {
        status = session->insert(parent, type, values, result.object);
    }
    result.error = status.error;
    return result;
}

StoreStatus ProjectStore::deleteObject(const CDomainObjectPointer& object)
{
    StoreStatus status;
    ProjectSession* const session = sessionOf(object, status);
    if (session && object->objectType() == ProjectObjectType) {
        status = {QStringLiteral("The project itself cannot be deleted")};
    }
    return status ? session->remove(object) : status;
}

StoreStatus ProjectStore::writeObject(const CDomainObjectPointer& object, int origin, int waitMs)
{
    StoreStatus status;
    ProjectSession* const session = sessionOf(object, status);
    return status ? session->update(object, origin, waitMs) : status;
}

InsertedObject ProjectStore::insertJob(const QSharedPointer<CProjectObject>& project, const QVariantMap& values)
{
    StoreStatus status;
    InsertedObject result;
    if (ProjectSession* const session = sessionOf(project, status)) {
        status = session->insertJob(values, result.object);
    }
    result.error = status.error;
    return result;
}

QVector<CDomainObjectPointer> ProjectStore::jobs(const QSharedPointer<CProjectObject>& project)
{
    StoreStatus status;
    ProjectSession* const session = sessionOf(project, status);
    return session ? session->jobs(status) : QVector<CDomainObjectPointer>();
}

} // namespace Torvik::Database
