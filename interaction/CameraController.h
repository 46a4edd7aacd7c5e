#pragma once

#include "scene/KxView3dExport.h"

#include <QElapsedTimer>
#include <QPointF>
#include <QQmlParserStatus>
#include <QVector3D>
#include <Qt3DCore/QEntity>
#include <Qt3DInput/QMouseEvent>
#include <Qt3DRender/QCamera>

namespace Qt3DInput {
class QAction;
class QActionInput;
class QLogicalDevice;
class QMouseDevice;
class QMouseHandler;
} // namespace Qt3DInput

namespace Qt3DLogic {
class QFrameAction;
} // namespace Qt3DLogic

namespace Torvik::View3d {

/** Turns one finger's press, drag and release into moves of one camera, and tells short taps.
 *
 *  Frame: screen positions are pixels of the 3D item, from its upper left corner; points are in the scene (metres, y
 * up, ground at y = 0). Input events only note where the finger is; the camera moves once a frame, while the entity is
 *  enabled. A mode changed during a gesture counts from the next frame on. Camera and scene item are not owned. Main
 *  thread only.
 *
 *  minDist, maxDist, sceneWidth and sceneHeight have no value of their own: whoever creates a controller gives them. */
class KXVIEW3D_EXPORT CameraController : public Qt3DCore::QEntity, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(Qt3DRender::QCamera* camera READ camera WRITE setCamera NOTIFY cameraChanged)
    Q_PROPERTY(ControlModes mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(ControlPlanes controlPlanes READ controlPlanes WRITE setControlPlanes NOTIFY controlPlanesChanged)
    Q_PROPERTY(double maxDist READ maxDist WRITE setMaxDist NOTIFY maxDistChanged)
    Q_PROPERTY(double minDist READ minDist WRITE setMinDist NOTIFY minDistChanged)
    Q_PROPERTY(QObject* scene READ scene WRITE setScene NOTIFY sceneChanged)
    Q_PROPERTY(double sceneWidth READ sceneWidth WRITE setSceneWidth NOTIFY sceneWidthChanged)
    Q_PROPERTY(double sceneHeight READ sceneHeight WRITE setSceneHeight NOTIFY sceneHeightChanged)
    Q_PROPERTY(ViewTypes viewType READ viewType WRITE setViewType NOTIFY viewTypeChanged)

public:
    /** What a drag does. */
    enum ControlModes { None = 0, Translate = 1, Rotate = 2, Tilt = 3, Zoom = 4 };
    Q_ENUM(ControlModes)

    /** How the camera looks at the scene. Undefined while it rides along with something. */
    enum ViewTypes { View3d = 0, View2dTop = 1, View2dFront = 2, ViewUndefined = 3 };
    Q_ENUM(ViewTypes)

    /** What a translation moves: the camera, or the map that lies under the scene. */
    enum ControlPlanes { All = 0, Map = 1 };
    Q_ENUM(ControlPlanes)

    explicit CameraController(Qt3DCore::QNode* parent = nullptr);
    ~CameraController() override;

    Qt3DRender::QCamera* camera() const { return m_camera; }
    ControlModes mode() const { return m_mode; }
    ControlPlanes controlPlanes() const { return m_controlPlanes; }
    double maxDist() const { return m_maxDist; }
    double minDist() const { return m_minDist; }
    double sceneWidth() const { return m_sceneWidth; }
    double sceneHeight() const { return m_sceneHeight; }
    ViewTypes viewType() const { return m_viewType; }

    void classBegin() override;
    /** Makes the controller known to GlobalNav. */
    void componentComplete() override;
    /** An object, or a second finger, has taken the finger over, whose release never comes here. */
    Q_INVOKABLE void abandonGesture();

    void _onPositionChanged(Qt3DInput::QMouseEvent* mouse);
    /** With `reset` notes where the finger came down and gives true; otherwise whether it is still within 40 pixels of
     *  that place. There is one such place in the process, whichever controller asks. */
    bool shortTapInPlace(Qt3DInput::QMouseEvent* mouse, bool reset);
    void frameTriggered(float dt);
    /** Applies the mode for a finger that has come to pixel (x, y), under which lies the scene point `point`. */
    void apply3dMovement(QVector3D point, double x, double y);
    /** Turns the camera about the vertical through its view centre by 0.2 degrees a pixel since the last frame. */
    void rotateAroundCenter(double x);

public slots:
    QObject* scene() const { return m_scene; }
    void setCamera(Qt3DRender::QCamera* camera);
    void setMode(ControlModes mode);
    void setControlPlanes(ControlPlanes planes);
    /** Limits of the zoom's distance; a change below the precision of double is none. */
    void setMaxDist(double maxDist);
    void setMinDist(double minDist);
    /** Emit at every call. */
    void setSceneWidth(double sceneWidth);
    void setSceneHeight(double sceneHeight);
    void setViewType(Torvik::View3d::CameraController::ViewTypes viewType);
    void setScene(QObject* scene);
    void _onPressed(Qt3DInput::QMouseEvent* mouse);
    void _onReleased(Qt3DInput::QMouseEvent* mouse);

signals:
    void cameraChanged(Qt3DRender::QCamera* camera);
    void modeChanged(ControlModes mode);
    void controlPlanesChanged(ControlPlanes mode);
    void maxDistChanged(double maxDist);
    void minDistChanged(double minDist);
    void sceneChanged(QObject* scene);
    void sceneWidthChanged(double sceneWidth);
    void sceneHeightChanged(double sceneHeight);
    /** Kept for the sake of their listeners; the item's place is never told. */
    void sceneXChanged(double sceneX);
    void sceneYChanged(double sceneY);
    void mousePress(QPointF position);
    /** With control planes `Map`: the way that the ground under the finger went in this frame. */
    void mapTranslation(QVector3D trans);
    void mapTranslationFinished();
    void translationFinished();
    /** At a release soon after the press and near it, whatever the camera did in between. */
    void shortTap(Qt3DInput::QMouseEvent* mouse);
    void viewTypeChanged(Torvik::View3d::CameraController::ViewTypes type);

private:
    void connectInput();
    void finishMapTranslation();
    void findPointUnderFinger(double x, double y, QVector3D& target) const;

    Qt3DRender::QCamera* m_camera = nullptr;
    Qt3DLogic::QFrameAction* m_frameAction = nullptr;
    Qt3DInput::QMouseDevice* m_mouseDevice = nullptr;
    Qt3DInput::QMouseHandler* m_mouseHandler = nullptr;
    Qt3DInput::QLogicalDevice* m_logicalDevice = nullptr;
    Qt3DInput::QAction* m_leftButtonAction = nullptr;
    Qt3DInput::QActionInput* m_leftButtonInput = nullptr;
    QElapsedTimer m_tapTimer;
    ControlModes m_mode = Translate;
    ControlPlanes m_controlPlanes = All;
    bool m_mapTranslationActive = false;
    double m_maxDist = 0.0;
    double m_minDist = 0.0;
    double m_lastX = 0.0;
    double m_lastY = 0.0;
    QVector3D m_grabPoint;
    double m_sceneWidth = 0.0;
    double m_sceneHeight = 0.0;
    double m_currentX = 0.0;
    double m_currentY = 0.0;
    bool m_pressed = false;
    QObject* m_scene = nullptr;
    ViewTypes m_viewType = View2dTop;
};

} // namespace Torvik::View3d
