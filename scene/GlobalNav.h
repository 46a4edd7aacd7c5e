#pragma once

#include "domain/boundary/CQmlDomainObject.h"
#include "interaction/CameraController.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QVector3D>
#include <Qt3DCore/QTransform>

namespace Torvik::View3d {

/** The modes of the 3D view: along which axes and how objects are dragged, what is shown, how the camera looks.
 *
 *  QML writes into it under the context name "GlobalNav", scene objects read it, and neither holds a pointer to the
 *  other. It lives to the end of the process and keeps its modes from project to project. Setters store and emit on a
 *  change only. Main thread only. */
class KXVIEW3D_EXPORT GlobalNav : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool axisX READ axisX WRITE setAxisX NOTIFY axisXChanged)
    Q_PROPERTY(bool axisY READ axisY WRITE setAxisY NOTIFY axisYChanged)
    Q_PROPERTY(bool axisZ READ axisZ WRITE setAxisZ NOTIFY axisZChanged)
    Q_PROPERTY(bool objectsMovingDisabled READ objectsMovingDisabled WRITE setObjectsMovingDisabled NOTIFY
                   objectsMovingDisabledChanged)
    Q_PROPERTY(bool translateMode READ translateMode WRITE setTranslateMode NOTIFY translateModeChanged)
    Q_PROPERTY(bool realTimeEnabled READ realTimeEnabled WRITE setRealTimeEnabled NOTIFY realTimeEnabledChanged)
    Q_PROPERTY(QPointF pipeProximityPos READ pipeProximityPos WRITE setPipeProximityPos NOTIFY pipeProximityPosChanged)
    Q_PROPERTY(bool obsVisible READ obsVisible WRITE setObsVisible NOTIFY obsVisibleChanged)
    Q_PROPERTY(bool labelsVisible READ labelsVisible WRITE setLabelsVisible NOTIFY labelsVisibleChanged)
    Q_PROPERTY(bool manholeFullInfoVisible READ manholeFullInfoVisible WRITE setManholeFullInfoVisible NOTIFY
                   manholeFullInfoVisibleChanged)
    Q_PROPERTY(bool cameraFollow READ cameraFollow WRITE setCameraFollow NOTIFY cameraFollowChanged)
    Q_PROPERTY(float minStartOSMTileDist READ minStartOSMTileDist CONSTANT)
    Q_PROPERTY(
        Torvik::View3d::CameraController::ViewTypes viewType READ viewType WRITE setViewType NOTIFY viewTypeChanged)
    Q_PROPERTY(bool connectionMode READ connectionMode WRITE setConnectionMode NOTIFY connectionModeChanged)

public:
    /** Metres from the ground from which the street map is loaded in any case. */
    static constexpr float distanceAtWhichOSMapIsAlwaysLoaded = 350.0F;

    static GlobalNav* instance();

    bool axisX() const;
    bool axisY() const;
    bool axisZ() const;
    /** 1 where a drag may move along the axis, 0 where not. */
    QVector3D axisLock() const { return m_axisLock; }
    bool objectsMovingDisabled() const { return m_objectsMovingDisabled; }
    /** Dragging an object moves it; false: it turns it. */
    bool translateMode() const { return m_translateMode; }
    bool realTimeEnabled() const { return m_realTimeEnabled; }
    /** How often real time has been switched, on or off. */
    int realTimeSwitches() const { return m_realTimeSwitches; }
    /** Screen position of the lateral that the crawler has come to. */
    QPointF pipeProximityPos() const { return m_pipeProximityPos; }
    bool obsVisible() const { return m_obsVisible; }
    bool labelsVisible() const { return m_labelsVisible; }
    bool manholeFullInfoVisible() const { return m_manholeFullInfoVisible; }
    bool cameraFollow() const { return m_cameraFollow; }
    float minStartOSMTileDist() const { return distanceAtWhichOSMapIsAlwaysLoaded; }
    CameraController::ViewTypes viewType() const { return m_viewType; }
    bool connectionMode() const { return m_connectionMode; }

    /** Takes over the controller's short taps and view type. The controller is not owned. */
    void registerCameraController(CameraController* controller);
    /** With true an object under the finger takes the gestures from the camera. Nothing without a controller. */
    void setActiveObjectTransformControl(bool active);

    /** Of the active inspection's section; false without one. */
    bool hasUpstreamNode() const;
    bool hasDownstreamNode() const;

    /** Take the view to where the distance counter stands in the active section, or to one of its nodes. Nothing
     *  without an active section or such a node. */
    Q_INVOKABLE void goToCurrentSection();
    Q_INVOKABLE void goToUpstreamNode();
    Q_INVOKABLE void goToDownstreamNode();
    /** Fills the view with the surroundings (15 m) of a scene point, looking in the present direction; the view centre
     *  comes to lie on the ground, as far as the ground is in that direction. The distance changes nothing. */
    Q_INVOKABLE void cameraGoTo(QVector3D newViewCenter,
                                float distToNewViewCenter = distanceAtWhichOSMapIsAlwaysLoaded);
    /** Puts every label back above its object, for good. */
    Q_INVOKABLE void resetLabelsPositions();

public slots:
    void setAxisX(bool free);
    void setAxisY(bool free);
    void setAxisZ(bool free);
    void setObjectsMovingDisabled(bool disabled);
    void setTranslateMode(bool translate);
    void setRealTimeEnabled(bool enabled);
    void setPipeProximityPos(QPointF position);
    void setObsVisible(bool visible);
    void setLabelsVisible(bool visible);
    void setManholeFullInfoVisible(bool visible);
    void setCameraFollow(bool follow);
    void setViewType(Torvik::View3d::CameraController::ViewTypes viewType);
    void setConnectionMode(bool connectionMode);
    /** Stores the height in the settings and takes the stored value for the labels. */
    void setLabelLineHeight(float lineHeight);
    /** The crawler has come to a lateral: pipeProximityPos follows the crawler on the screen from now on. `entity` is
     *  the section's transform; its changes are when to look again. */
    void onLateralInProximity(const QString& lateralId, Qt3DCore::QTransform* entity);
    void onLateralNotInProximity();
    /** The argument is not used. */
    void calculateProximityScreenPos(QVector3D translation);

signals:
    void axisXChanged(bool free);
    void axisYChanged(bool free);
    void axisZChanged(bool free);
    void objectsMovingDisabledChanged();
    void translateModeChanged(bool translate);
    void realTimeEnabledChanged(bool enabled);
    void pipeProximityPosChanged(QPointF position);
    void obsVisibleChanged(bool visible);
    void labelsVisibleChanged(bool visible);
    void manholeFullInfoVisibleChanged(bool visible);
    void cameraFollowChanged(bool follow);
    void viewTypeChanged(Torvik::View3d::CameraController::ViewTypes viewType);
    void connectionModeChanged(bool connectionModeEnabled);

    void axisLockChanged(QVector3D axisLock);
    void entityMoved();
    /** Never emitted by the view: it carries an object that only the host can name. */
    void lateralInProximity(Torvik::QmlWrapper::CQmlDomainObject qmlDomainObject, Qt3DCore::QTransform* entity);
    void lateralNotInProximity();
    void shortTap(Qt3DInput::QMouseEvent* mouseEvent);

private:
    GlobalNav() = default;

    void unsetProximityConn();
    /** Whether the component of the axis lock has changed. */
    bool setAxis(int axis, bool free);

    CameraController::ViewTypes m_viewType = CameraController::View2dTop;
    QPointer<CameraController> m_cameraController;
    QVector3D m_axisLock {1.0F, 0.0F, 1.0F};
    bool m_translateMode = true;
    bool m_realTimeEnabled = false;
    int m_realTimeSwitches = 0;
    QPointF m_pipeProximityPos;
    QPointer<Qt3DCore::QTransform> m_proximityTransform;
    QPointer<Qt3DRender::QCamera> m_proximityCamera;
    bool m_objectsMovingDisabled = true;
    bool m_labelsVisible = true;
    bool m_obsVisible = true;
    bool m_manholeFullInfoVisible = false;
    bool m_cameraFollow = false;
    bool m_connectionMode = false;
};

} // namespace Torvik::View3d
