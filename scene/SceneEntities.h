#pragma once

#include "domain/PipeEntities.h"
#include "domain/PipeEntityBuilder.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "measurement/RealTimeController.h"
#include "measurement/ShapeAccess.h"
#include "scene/EntityRegistry.h"
#include "scene/KxView3dExport.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QVariant>

class QJSEngine;
class QQmlEngine;

namespace Torvik::View3d {

class Crawler;
class IBackgroundPlan;
class Node;
class Observation;
class ObservationConnection;
class Section;

/** Registry of what stands in the scene for the current project, and the coordinator of the active inspection. Holds
 *  no ownership of the objects: they are children of the scene's root and take themselves out when they go. Lives to
 *  the end of the process and outlives every project. Main thread only. */
class KXVIEW3D_EXPORT SceneEntities : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool planLoaded READ planLoaded NOTIFY planLoadedChanged)
    Q_PROPERTY(bool planToConfirmLoaded READ planToConfirmLoaded NOTIFY planToConfirmLoadedChanged)
    Q_PROPERTY(QVariant planRenderable READ getBackgroundPlanVariant NOTIFY planLoadedChanged)

public:
    static SceneEntities& instance();
    /** For the QML singleton; the engine never deletes it. */
    static QObject* qmlSingletonInstance(QQmlEngine* engine, QJSEngine* scriptEngine);

    PipeEntities& getPipeEntities() { return m_pipeEntities; }
    /** By domain id; a virtual node that QML made by its guid. */
    EntityRegistry<Node>& getNodes() { return m_nodes; }
    /** By domain id. */
    EntityRegistry<Observation>& getObservations() { return m_observations; }
    /** The connection that carries a lateral, by the lateral's id. */
    EntityRegistry<ObservationConnection>& getLateralConnections() { return m_lateralConnections; }
    ShapeAccess& shapeAccess() { return m_shapeAccess; }

    /** Follows the application's active inspection and structure. Called once, by the scene's root. */
    void initConnections();

    /** Section of the active inspection, or null. */
    Section* getActiveSectionEntity() const;
    /** The scene's inspection vehicle, or null; not owned. */
    Crawler* getCrawler() const;
    void setCrawler(Crawler* crawler);
    /** Puts the crawler into the active section, and tells whether a lateral is near. */
    void attachCrawlerToSection();
    /** Begins or ends a 3D measurement of the active section. */
    void enable3dMeasurement(bool enabled);
    /** The same, once for each switch of real time: every section calls it, and each announcement reaches all of them.
     */
    void announceRealTime(bool enabled);
    /** Folder of the active project; empty without one. */
    QString getProjectPathOrEmptyString() const;
    /** Position of the section's upstream node, else of its downstream node, as a QVector3D; invalid when neither has
     *  one. */
    QVariant getPositionOfAnyNodeFromSection(const QString& sectionId) const;
    /** A section has been made. One of the active inspection gets what activating it would have given it. */
    void onSectionArrived(const Section* section);
    /** Takes an object that is being destroyed out of every registry; an unknown one is ignored. */
    void removeObject(QObject* object);
    /** While a project's objects come, the section of the active inspection may not stand yet: what its activation does
     *  waits for the end. */
    void setLoading(bool loading);
    /** The distance counter has a new value, in metres along the active section. */
    void onCrawlerPositionChanged(double distance);
    /** The 3D sensor has seen a point of the active section: z up, at a distance of the cable in metres. */
    void onLatestCameraSensorPositionChanged(Torvik::View3d::Vector3D<double> position, float distance);

    /** The plan under the network, or null. */
    IBackgroundPlan* getBackgroundPlan() const;
    /** The same for QML; invalid without one. */
    QVariant getBackgroundPlanVariant() const;
    /** A plan that waits for the user's confirmation, or null; not owned. */
    IBackgroundPlan* getBackgroundPlanToConfirm() const;
    bool planLoaded() const;
    bool planToConfirmLoaded() const;
    /** Lays the plan just below the lowest object, keeps it there, and stores it in the project. An earlier plan is
     *  deleted later. */
    Q_INVOKABLE void setBackgroundPlan(Torvik::View3d::IBackgroundPlan* plan);
    Q_INVOKABLE void setBackgroundPlanToConfirm(Torvik::View3d::IBackgroundPlan* plan);
    /** Stores where the plan lies. Nothing without a project or a plan. */
    Q_INVOKABLE void saveBackgroundPlan() const;
    /** Whether the last storing succeeded. */
    bool backgroundPlanStored() const { return m_storedWell; }
    void deleteBackgroundPlan();

public slots:
    void onActiveInspectionChanged(Torvik::QmlWrapper::CQmlDomainObject inspection);
    void onActiveStructureChanged(Torvik::QmlWrapper::CQmlDomainObject section);

signals:
    void start3dRealTimeMeasurements(Torvik::View3d::Vector3D<double> startingVector, QVector3D startingDirection,
                                     float startMeterValue);
    void stop3dRealTimeMeasurements();
    void planLoadedChanged();
    void planToConfirmLoadedChanged();

private:
    SceneEntities();

    void follow(IBackgroundPlan* plan);
    void letGo(IBackgroundPlan* plan);
    static void showAsTheViewDoes(IBackgroundPlan* plan);

    void onInspReady();
    void showDirectionArrowIfNeeded();

    PipeEntities m_pipeEntities;
    EntityRegistry<Node> m_nodes;
    EntityRegistry<Observation> m_observations;
    EntityRegistry<ObservationConnection> m_lateralConnections;
    CDomainObjectPointer m_activeInspection;
    QPointer<Crawler> m_crawler;
    int m_announcedSwitch = 0;
    bool m_inspectionReady = false;
    bool m_structureReady = false;
    bool m_loading = false;
    bool m_readyWhileLoading = false;
    ShapeAccess m_shapeAccess;
    RealTimeController m_realTimeController;
    QPointer<IBackgroundPlan> m_backgroundPlan;
    QString m_planProjectPath;
    QElapsedTimer m_planStored; ///< since the plan last followed the lowest object into its file
    mutable bool m_storedWell = true;
    QPointer<IBackgroundPlan> m_backgroundPlanToConfirm;
    PipeEntityBuilder m_pipeEntityBuilder;
};

} // namespace Torvik::View3d
