#pragma once

#include "domain/boundary/CDomainObject.h"

#include <QObject>

namespace Torvik {

/** What the host is working on at present. Main thread only. */
class AppState : public QObject {
    Q_OBJECT

public:
    static AppState& instance();

    /** Each null when there is none. */
    CDomainObjectPointer getActiveProject() const;
    CDomainObjectPointer getActiveInspection() const;
    CDomainObjectPointer getActiveStructure() const;
    CDomainObjectPointer getActiveJob() const;
    bool is3dProjectActive() const;

    /** For the host: each stores and emits its signal when the object differs. A change of the project first clears
     *  the active inspection, structure and job, and the project's distance unit becomes the current one. A project in
     *  which was measured is to be closed before another becomes active: closing waits until all of it is stored, and
     *  what a measurement still asks the database for goes to the project that is active then. */
    void setActiveProject(const CDomainObjectPointer& project);
    void setActiveInspection(const CDomainObjectPointer& inspection);
    void setActiveStructure(const CDomainObjectPointer& structure);
    void setActiveJob(const CDomainObjectPointer& job);

signals:
    void activeProjectChanged(const CDomainObjectPointer& project);
    void activeInspectionChanged(const CDomainObjectPointer& inspection);
    void activeStructureChanged(const CDomainObjectPointer& structure);

private:
    AppState();

    CDomainObjectPointer m_project;
    CDomainObjectPointer m_inspection;
    CDomainObjectPointer m_structure;
    CDomainObjectPointer m_job;
};

} // namespace Torvik
