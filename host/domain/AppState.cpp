#include "domain/boundary/AppState.h"

#include "domain/boundary/CProjectObject.h"
#include "host/domain/ActiveDatabase.h"
#include "host/domain/HostSettings.h"
#include "host/domain/ProjectStore.h"

#include <QMutex>
#include <QMutexLocker>

namespace Torvik {

namespace {

struct ActiveFile {
    QMutex mutex;
    QString path;
};

ActiveFile& activeFile()
{
    static ActiveFile file;
    return file;
}

} // namespace

QString Database::ActiveDatabase::file()
{
    QMutexLocker lock(&activeFile().mutex);
    return activeFile().path;
}

void Database::ActiveDatabase::setFile(const QString& file)
{
    QMutexLocker lock(&activeFile().mutex);
    activeFile().path = file;
}

AppState::AppState() = default;

AppState& AppState::instance()
{
    static AppState state;
    return state;
}

CDomainObjectPointer AppState::getActiveProject() const
{
    return m_project;
}

CDomainObjectPointer AppState::getActiveInspection() const
{
    return m_inspection;
}

CDomainObjectPointer AppState::getActiveStructure() const
{
    return m_structure;
}

CDomainObjectPointer AppState::getActiveJob() const
{
    return m_job;
}

bool AppState::is3dProjectActive() const
{
    const auto project = Database::CDomainObject::projectFromObject(m_project);
    return project && project->is3dProject();
}

void AppState::setActiveProject(const CDomainObjectPointer& project)
{
    if (m_project == project) {
        return;
    }
    setActiveInspection({});
    setActiveStructure({});
    m_job.reset();
    m_project = project;
    const auto opened = Database::CDomainObject::projectFromObject(project);
    Database::ActiveDatabase::setFile(opened ? Database::ProjectStore::databaseFile(opened->projectPath()) : QString());
    if (opened) {
        Base::HostSettings::setDistanceUnit(opened->readValue(QStringLiteral("PRJ_DistanceUnit")).toInt());
    }
    emit activeProjectChanged(project);
}

void AppState::setActiveInspection(const CDomainObjectPointer& inspection)
{
    if (m_inspection != inspection) {
        m_inspection = inspection;
        emit activeInspectionChanged(inspection);
    }
}

void AppState::setActiveStructure(const CDomainObjectPointer& structure)
{
    if (m_structure != structure) {
        m_structure = structure;
        emit activeStructureChanged(structure);
    }
}

void AppState::setActiveJob(const CDomainObjectPointer& job)
{
    m_job = job;
}

} // namespace Torvik
