#include "interaction/CameraController.h"

#include "interaction/CameraGesture.h"
#include "interaction/Utils3d.h"
#include "scene/Fuzzy.h"
#include "scene/GlobalNav.h"

#include <Qt3DInput/QAction>
#include <Qt3DInput/QActionInput>
#include <Qt3DInput/QLogicalDevice>
#include <Qt3DInput/QMouseDevice>
#include <Qt3DInput/QMouseHandler>
#include <Qt3DLogic/QFrameAction>

#include <limits>

namespace Torvik::View3d {

namespace {

constexpr int kLeftButton = 1;

QPointF positionOf(const Qt3DInput::QMouseEvent* mouse)
{
    return {static_cast<double>(mouse->x()), static_cast<double>(mouse->y())};
}

} // namespace

CameraController::CameraController(Qt3DCore::QNode* parent)
    : Qt3DCore::QEntity(parent)
    , m_frameAction(new Qt3DLogic::QFrameAction(this))
    , m_mouseDevice(new Qt3DInput::QMouseDevice(this))
    , m_mouseHandler(new Qt3DInput::QMouseHandler(this))
    , m_logicalDevice(new Qt3DInput::QLogicalDevice(this))
    , m_leftButtonAction(new Qt3DInput::QAction(this))
    , m_leftButtonInput(new Qt3DInput::QActionInput(this))
{
    connectInput();
    addComponent(m_mouseHandler);
    addComponent(m_logicalDevice);
    addComponent(m_frameAction);
}

CameraController::~CameraController() = default;

void CameraController::connectInput()
{
    m_mouseHandler->setSourceDevice(m_mouseDevice);
    connect(m_mouseHandler, &Qt3DInput::QMouseHandler::positionChanged, this, &CameraController::_onPositionChanged);
    connect(m_mouseHandler, &Qt3DInput::QMouseHandler::pressed, this, &CameraController::_onPressed);
    connect(m_mouseHandler, &Qt3DInput::QMouseHandler::released, this, &CameraController::_onReleased);

    m_leftButtonInput->setButtons({kLeftButton});
    m_leftButtonInput->setSourceDevice(m_mouseDevice);
    m_leftButtonAction->addInput(m_leftButtonInput);
    m_logicalDevice->addAction(m_leftButtonAction);

    connect(m_frameAction, &Qt3DLogic::QFrameAction::triggered, this, &CameraController::frameTriggered);
    connect(this, &Qt3DCore::QNode::enabledChanged, m_logicalDevice, &Qt3DCore::QNode::setEnabled);
    connect(this, &Qt3DCore::QNode::enabledChanged, m_mouseHandler, &Qt3DCore::QNode::setEnabled);
}

void CameraController::classBegin() {}

void CameraController::abandonGesture()
{
    m_pressed = false;
    finishMapTranslation();
}

void CameraController::finishMapTranslation()
{
    if (m_controlPlanes == Map && m_mapTranslationActive) {
        m_mapTranslationActive = false;
        emit mapTranslationFinished();
    }
}

void CameraController::componentComplete()
{
    GlobalNav::instance()->registerCameraController(this);
}

void CameraController::_onPositionChanged(Qt3DInput::QMouseEvent* mouse)
{
    const QPointF position = positionOf(mouse);
    m_currentX = position.x();
    m_currentY = position.y();
}

void CameraController::_onPressed(Qt3DInput::QMouseEvent* mouse)
{
    m_pressed = true;
    _onPositionChanged(mouse);
    m_lastX = m_currentX;
    m_lastY = m_currentY;
    m_tapTimer.start();
    shortTapInPlace(mouse, true);
    findPointUnderFinger(m_currentX, m_currentY, m_grabPoint);
    if (m_controlPlanes == Map) {
        m_mapTranslationActive = true;
    }
    emit mousePress(QPointF(m_lastX, m_lastY));
}

void CameraController::_onReleased(Qt3DInput::QMouseEvent* mouse)
{
    // A release whose press went elsewhere finds the timer not running; it ends no tap.
    const qint64 elapsedMs = m_tapTimer.isValid() ? m_tapTimer.restart() : std::numeric_limits<qint64>::max();
    if (CameraGesture::isShort(elapsedMs)) {
        if (shortTapInPlace(mouse, false)) {
            emit shortTap(mouse);
        } else {
            m_tapTimer.invalidate();
        }
    }
    finishMapTranslation();
    m_pressed = false;
    if (m_mode == Translate) {
        emit translationFinished();
    }
}

bool CameraController::shortTapInPlace(Qt3DInput::QMouseEvent* mouse, bool reset)
{
    static QPointF tapPress(m_lastX, m_lastY);
    if (reset) {
        tapPress = positionOf(mouse);
        return true;
    }
    return CameraGesture::isInPlace(tapPress, positionOf(mouse));
}

void CameraController::findPointUnderFinger(double x, double y, QVector3D& target) const
{
    if (!m_camera) {
        return;
    }
    const QVector3D ray =
        Utils3d::cameraToScreenRay(static_cast<float>(x), static_cast<float>(y), m_camera,
                                   static_cast<float>(m_sceneWidth), static_cast<float>(m_sceneHeight));
    CameraGesture::findPoint(m_viewType, m_camera->position(), ray, m_camera->viewVector(), m_grabPoint, target);
}

void CameraController::frameTriggered(float dt)
{
    Q_UNUSED(dt)
    if (!m_pressed || !isEnabled() || !m_camera) {
        return;
    }
    QVector3D point;
    findPointUnderFinger(m_currentX, m_currentY, point);
    apply3dMovement(point, m_currentX, m_currentY);
    m_lastX = m_currentX;
    m_lastY = m_currentY;
}

void CameraController::apply3dMovement(QVector3D point, double x, double y)
{
    const CameraGesture::Moves moves = CameraGesture::movesOf(m_mode, m_controlPlanes, m_viewType);
    if (moves.translateInView) {
        Utils3d::translateVertically(m_camera, point, m_grabPoint);
    }
    if (moves.translateOnGround) {
        Utils3d::translateHorizontally(m_camera, point, m_grabPoint);
    }
    if (moves.translateMap) {
        emit mapTranslation(m_grabPoint - point);
        m_grabPoint = point;
    }
    if (moves.tilt) {
        Utils3d::tiltCamera(m_camera, y - m_lastY, CameraGesture::kMinTiltDeg, CameraGesture::kMaxTiltDeg);
    }
    if (moves.rotate) {
        rotateAroundCenter(x);
    }
    if (moves.zoom) {
        Utils3d::zoomTranslatingAlongViewVector(m_camera, x, y, m_lastY, m_minDist, m_maxDist);
    }
}

void CameraController::rotateAroundCenter(double x)
{
    m_camera->panAboutViewCenter(CameraGesture::rotationDeg(x, m_lastX), QVector3D(0.0F, 1.0F, 0.0F));
}

void CameraController::setCamera(Qt3DRender::QCamera* camera)
{
    if (m_camera == camera) {
        return;
    }
    m_camera = camera;
    emit cameraChanged(camera);
}

void CameraController::setMode(ControlModes mode)
{
    if (m_mode == mode) {
        return;
    }
    m_mode = mode;
    emit modeChanged(mode);
}

void CameraController::setControlPlanes(ControlPlanes planes)
{
    if (m_controlPlanes == planes) {
        return;
    }
    m_controlPlanes = planes;
    emit controlPlanesChanged(planes);
}

void CameraController::setMaxDist(double maxDist)
{
    if (Fuzzy::equal(m_maxDist, maxDist)) {
        return;
    }
    m_maxDist = maxDist;
    emit maxDistChanged(maxDist);
}

void CameraController::setMinDist(double minDist)
{
    if (Fuzzy::equal(m_minDist, minDist)) {
        return;
    }
    m_minDist = minDist;
    emit minDistChanged(minDist);
}

void CameraController::setSceneWidth(double sceneWidth)
{
    m_sceneWidth = sceneWidth;
    emit sceneWidthChanged(sceneWidth);
}

void CameraController::setSceneHeight(double sceneHeight)
{
    m_sceneHeight = sceneHeight;
    emit sceneHeightChanged(sceneHeight);
}

void CameraController::setViewType(CameraController::ViewTypes viewType)
{
    if (m_viewType == viewType) {
        return;
    }
    m_viewType = viewType;
    emit viewTypeChanged(viewType);
}

void CameraController::setScene(QObject* scene)
{
    if (m_scene == scene) {
        return;
    }
    m_scene = scene;
    emit sceneChanged(scene);
}

} // namespace Torvik::View3d
