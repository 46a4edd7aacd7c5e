#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/app/AppDesk.h"
#include "host/app/CameraPose.h"
#include "host/app/InspectionDesk.h"
#include "host/app/ObjectListModel.h"
#include "host/app/ObservationPage.h"
#include "host/app/PlanWork.h"
#include "host/app/SceneLoader.h"
#include "host/app/SceneSelection.h"
#include "host/app/VehicleDesk.h"

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QUrl>
#include <QVector3D>

#include <optional>

namespace Torvik::Database {
struct OpenedProject;
}

namespace Torvik::Viewer {

/** What the window does with projects: opens and closes them, lists what they hold, and says where the camera should
 *  stand. QML has it as `viewer`. Main thread only; the database is read on another thread, so the window answers. */
class ViewerController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString projectName READ projectName NOTIFY projectChanged)
    Q_PROPERTY(bool projectOpen READ projectOpen NOTIFY projectChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)
    Q_PROPERTY(QString currentId READ currentId NOTIFY currentIdChanged)
    Q_PROPERTY(QStringList currentIds READ currentIds NOTIFY currentIdsChanged)
    Q_PROPERTY(bool sceneOnly READ sceneOnly CONSTANT)
    Q_PROPERTY(QObject* nodesModel READ nodesModel CONSTANT)
    Q_PROPERTY(QObject* sectionsModel READ sectionsModel CONSTANT)
    Q_PROPERTY(QObject* inspectionsModel READ inspectionsModel CONSTANT)
    Q_PROPERTY(QObject* observations READ observations CONSTANT)
    Q_PROPERTY(QObject* vehicle READ vehicle CONSTANT)
    Q_PROPERTY(QObject* desk READ desk CONSTANT)
    Q_PROPERTY(QObject* plans READ plans CONSTANT)
    Q_PROPERTY(QObject* inspections READ inspections CONSTANT)
    Q_PROPERTY(QQuickItem* view READ view WRITE setView NOTIFY viewChanged)

public:
    /** From where a project is seen when it has opened. */
    struct OpeningView {
        StandardView view = StandardView::Top;
        std::optional<double> distance;
        /** Empty for the whole project. */
        QString goToKey;
        /** Of the inspection that becomes the active one; empty for none. */
        QString inspectKey;
    };

    explicit ViewerController(QObject* parent = nullptr);
    ~ViewerController() override;

    QString projectName() const { return m_projectName; }
    /** Of the open project; empty without one. */
    QString projectFolder() const { return m_project ? m_project->projectPath() : QString(); }
    bool projectOpen() const { return !m_project.isNull(); }
    /** A project is being opened. */
    bool busy() const { return m_busy; }
    /** Of the opening, 0 to 1. */
    double progress() const { return m_progress; }
    QString progressText() const { return m_progressText; }
    /** What the user should know; stays until it is dismissed or the next project opens. What keeps changes from being
     *  stored goes by itself when it is over. */
    QString errorText() const;
    /** The object that was gone to or selected last. */
    QString currentId() const { return m_currentId; }
    /** All that the lists mark: that object, and what is selected in the scene. */
    QStringList currentIds() const;

    /** Only the scene is to be shown, for a picture without lists and buttons. Set before QML is loaded. */
    bool sceneOnly() const { return m_sceneOnly; }
    void setSceneOnly(bool only) { m_sceneOnly = only; }
    void setOpeningView(const OpeningView& view) { m_openingView = view; }

    ObjectListModel* nodesModel() { return &m_nodes; }
    ObjectListModel* sectionsModel() { return &m_sections; }
    ObjectListModel* inspectionsModel() { return &m_inspections; }
    /** Of the inspection that was selected last, or the active one before any was. */
    ObservationPage* observations() { return &m_observations; }
    /** In the pipe of the active inspection. */
    VehicleDesk* vehicle() { return &m_vehicle; }
    AppDesk* desk() { return &m_desk; }
    PlanWork* plans() { return &m_plans; }
    InspectionDesk* inspections() { return &m_inspectionDesk; }
    /** The scene with its controls, of which no object of a fitted project lies under one. May be missing. */
    QQuickItem* view() const { return m_view; }
    void setView(QQuickItem* view);

    /** Opens the project in a folder; the one before is closed first. Ends in opened() or in an errorText. */
    Q_INVOKABLE void openFolder(const QString& folder);
    /** Looks from one of the standard directions at the object with this id (all of the project if empty). */
    void lookAt(const QString& id, StandardView view, std::optional<double> distance, bool animated);
    /** Id of the object with this key: a node, else a pipe; empty if there is none. */
    QString idOfKey(const QString& key) const;
    /** Of the open project; null if there is none such. */
    QSharedPointer<Database::CPipeInspectionObject> inspectionOfKey(const QString& key) const;

    /** openFolder with the folder of a file dialog. Nothing while busy. */
    Q_INVOKABLE void openProject(const QUrl& folder);
    Q_INVOKABLE void closeProject();
    /** Brings an object into view, by its id, and selects it; the direction of view stays. */
    Q_INVOKABLE void goTo(const QString& id);
    /** Brings the whole project into view; the direction of view stays. */
    Q_INVOKABLE void fit();
    /** In the window's bar, until it is dismissed. */
    void showError(const QString& text) { setError(text); }
    Q_INVOKABLE void dismissError();
    /** Filters all lists. */
    Q_INVOKABLE void setFilter(const QString& filter);

signals:
    void projectChanged();
    void busyChanged();
    void progressChanged();
    void errorTextChanged();
    void currentIdChanged();
    void currentIdsChanged();
    void viewChanged();
    /** The project is read and stands in the scene; its first pose has been requested. */
    void opened();
    /** Opening has come to nothing; errorText says why. */
    void openingFailed();
    /** The camera should stand here; viewType as in CameraController.ViewTypes. */
    void requestPose(const QVector3D& position, const QVector3D& center, const QVector3D& up, int viewType,
                     bool animated);
    /** The camera should look from a standard direction; as in CameraController.ViewTypes. */
    void requestView(int viewType);

private:
    void onRead(const Database::OpenedProject& opened);
    void onSceneFilled();
    /** Hears of what is wrong with the plan that the project has; before the first is loaded. */
    void followPlan();
    void takeOpeningView();
    void followCamera();
    void adaptLens();
    void bringIntoView(const Bounds& bounds);
    void fillLists();
    /** All texts of the lists, after a change of language or unit. */
    void writeAnew();
    void setBusy(bool busy);
    void setProgress(double progress, const QString& text);
    void setError(const QString& text);
    void setPlanTrouble(const QString& text);
    void addPlanTrouble(const QString& text);
    void setTrouble(const QString& text);
    void setCurrentId(const QString& id);
    void onSelectionChanged();
    void showObservationsOf(const QString& id);

    QSharedPointer<Database::CProjectObject> m_project;
    SceneLoader m_loader;
    SceneSelection m_selection;
    ObjectListModel m_nodes;
    ObjectListModel m_sections;
    ObjectListModel m_inspections;
    ObservationPage m_observations;
    VehicleDesk m_vehicle;
    InspectionDesk m_inspectionDesk {m_observations, m_vehicle};
    AppDesk m_desk;
    PlanWork m_plans;
    QPointer<QQuickItem> m_view;
    OpeningView m_openingView;
    Bounds m_bounds;
    QString m_projectName;
    QString m_progressText;
    QString m_errorText;
    QString m_planText;
    QString m_troubleText;
    QString m_currentId;
    double m_progress = 0;
    bool m_busy = false;
    bool m_sceneOnly = false;
    bool m_planFollowed = false;
    bool m_cameraFollowed = false;
};

} // namespace Torvik::Viewer
