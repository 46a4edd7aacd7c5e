#pragma once

#include "domain/NodeSectionIndex.h"
#include "domain/NotificationsReceiver.h"
#include "domain/boundary/CProjectObject.h"

#include <QObject>
#include <QVector>

#include <memory>

namespace Torvik::View3d {

/** Turns the state of the active project into a stream of signals: all objects at a load, then every change, so that
 *  the entity layer has one path for objects that exist and objects that appear. Also keeps the index from a node to
 *  the sections that touch it.
 *
 *  A load reads everything first and signals afterwards: nodes, section inspections, lateral inspections. What takes
 *  longer than a slice goes on in the next turn of the event loop, so that the window answers while a city opens; what
 *  the domain library notifies meanwhile is kept until the load is done. Main thread; all connections are direct. */
class DomainReader : public QObject {
    Q_OBJECT

public:
    explicit DomainReader(QObject* parent);
    ~DomainReader() override;

    /** Starts the reader, with the project that is active already. Called once. */
    void init();

    /** Ids of the sections at this node, each once, in no particular order. */
    QList<Base::GUID> getConnectedSections(const QString& nodeId) const;
    /** Brings the index up to date for one section. */
    void setNodeSectionMapping(const QSharedPointer<Database::CSectionObject>& section);
    /** Reads the number of inspections and does nothing else: a seam for hosts that fill inspections on demand. */
    void fillinInspPoints(const QSharedPointer<Database::CGenericPipeObject>& pipe) const;

    bool isLoading() const { return m_load != nullptr; }
    /** A load under way waits before its next object, until resumeLoad(). For the slot of loadingStarted. */
    void pauseLoad();
    void resumeLoad();

public slots:
    /** Loads a project; null, or an object without one, drops what is there. */
    void onProjectChanged(const CDomainObjectPointer& object);
    /** A copy of the index: node id to section id, one entry for each end of each section. */
    QMultiHash<Torvik::Base::GUID, Torvik::Base::GUID> nodeToPipeParentMapping() const;

signals:
    void objectRemoved(const QString& id);
    void allRowsRemoved();
    void nodeInserted(const CDomainObjectPointer& node);
    /** fromDB: from the load of a project; otherwise the user has just made it. */
    void observationInserted(const CDomainObjectPointer& observation, bool fromDB);
    void lateralInspectionInserted(const CDomainObjectPointer& inspection, bool fromDB);
    void sectionInspectionInserted(const CDomainObjectPointer& inspection);
    void nodeModified(const CDomainObjectPointer& node);
    void inspectionModified(const CDomainObjectPointer& inspection);
    void sectionModified(const CDomainObjectPointer& pipe);
    void observationModified(const CDomainObjectPointer& observation);
    void activeInspectionChanged(const CDomainObjectPointer& inspection);

    /** Progress of a load, in objects. loadingFinished follows the last of them, or a load that was given up. */
    void loadingStarted(int total);
    void loadingProgress(int done, int total);
    void loadingFinished();
    /** All objects of a project have been told, and what comes next is a change. */
    void projectRead(const QSharedPointer<Torvik::Database::CProjectObject>& project);

private:
    struct Load;
    using Project = QSharedPointer<Database::CProjectObject>;

    void populateObjects(const Project& project, bool announceActiveInspection);
    QVector<CDomainObjectPointer> loadNodes(const Project& project) const;
    QVector<CDomainObjectPointer> loadSectionInspection(const Project& project);
    QVector<CDomainObjectPointer> loadLateralInspection(const Project& project) const;
    void announceNext();
    void announce(int index);
    void finishLoad();
    void giveUpLoad();
    void dropProject();
    void updateProjectionString(const Project& project);

    void initConnections();
    void disconnectSignals();
    void onObjectCreated(const CDomainObjectPointer& object);
    void onInspectionCreated(const CDomainObjectPointer& inspection);
    void onObjectChanged(const CDomainObjectPointer& object, const QString& key);
    void onObjectRemoved(const CDomainObjectPointer& object);
    void onObjectUnloaded(const CDomainObjectPointer& object);

    NotificationsReceiver m_receiver;
    // Behind the receiver: its end takes the receiver off the list of those that hear of changes.
    Database::CAsyncNotificationMapper m_mapper;
    NodeSectionIndex m_index;
    std::unique_ptr<Load> m_load;
};

} // namespace Torvik::View3d
