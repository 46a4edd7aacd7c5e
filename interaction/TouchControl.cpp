#include "interaction/TouchControl.h"

#include "interaction/AxisControlArrows.h"
#include "interaction/CustomPicker.h"
#include "interaction/ObjectPicker.h"
#include "interaction/RotationRing.h"
#include "interaction/TouchInput.h"
#include "network/ConnectionPoint.h"
#include "scene/GlobalNav.h"
#include "scene/Renderable.h"
#include "scene/SceneRoot.h"
#include "scene/SelectionAwareness.h"

#include <utility>

namespace Torvik::View3d {

namespace {

constexpr int doubleTapMs = 400;
constexpr float arrowSize = 0.1F;
const QString topLayout = QStringLiteral("top");
const QString frontLayout = QStringLiteral("front");

TouchControlBase::Mode modeOfNavigation()
{
    return GlobalNav::instance()->translateMode() ? TouchControlBase::Translation : TouchControlBase::Rotation;
}

} // namespace

TouchControl::TouchControl(Renderable* parent, bool enabled)
    : TouchControlBase(parent)
    , m_renderable(parent)
    , m_customPicker(new CustomPicker(parent))
    , m_axisLock(GlobalNav::instance()->axisLock())
    , m_axisArrowMode(topLayout)
{
    if (!parent->isPickable())
        m_customPicker->disablePick();
    // The selection comes before the drag.
    connect(m_customPicker, &CustomPicker::pressed, this, &TouchControl::selectOnPress);
    connect(GlobalNav::instance(), &GlobalNav::translateModeChanged, this, [this] {
        if (SceneRoot::instance() && SceneRoot::instance()->isSelected(m_renderable->guid()))
            setMode(modeOfNavigation());
    });
    setEnabled(enabled);
    connect(m_customPicker, &CustomPicker::pressed, this, &TouchControl::onPressedObject);
    setupMouseHandler();
    m_doubleTapTimer.setSingleShot(true);
    m_doubleTapTimer.setInterval(doubleTapMs);
    connect(GlobalNav::instance(), &GlobalNav::axisLockChanged, this,
            [this](const QVector3D& axisLock) { m_axisLock = axisLock; });
    createHelperTorus();
    connect(this, &Qt3DCore::QNode::enabledChanged, this, &TouchControl::onEnabledChanged);
}

TouchControl::~TouchControl()
{
    giveCameraBack();
    for (const auto& arrows : qAsConst(m_axisArrows)) {
        if (arrows)
            arrows->deleteLater();
    }
    if (m_customPicker)
        m_customPicker->deleteLater();
}

void TouchControl::setupMouseHandler()
{
    if (SceneRoot::instance())
        m_input = SceneRoot::instance()->touchInput();
}

bool TouchControl::isLabel() const
{
    return m_renderable->renderableType() == QLatin1String("label");
}

void TouchControl::selectOnTap()
{
    selectOnPress();
    m_selectedByTap = true;
}

void TouchControl::selectOnPress()
{
    // The renderer may tell of a quick tap's press when the tap has selected already.
    const bool again = std::exchange(m_selectedByTap, false) && SelectionAwareness::instance().selectionInProgress();
    SceneRoot* const root = SceneRoot::instance();
    const QString guid = m_renderable->guid();
    if (guid.startsWith(ConnectionPoint::guidPrefix())) {
        if (GlobalNav::instance()->connectionMode())
            root->selectNextByDomainGuid(guid);
        return;
    }
    if (isLabel()) {
        GlobalNav::instance()->setCameraFollow(false);
        setMode(ScreenTranslation);
        return;
    }
    if (root->maxSelection() < 2)
        root->selectOneByDomainGuid(guid);
    else if (!again || SelectionAwareness::instance().lastSelected() != guid)
        root->selectNextByDomainGuid(guid);
    setMode(modeOfNavigation());
}

void TouchControl::onEnabledChanged(bool enabled)
{
    createHelperTorus();
    if (m_ring && m_mode == Rotation)
        m_ring->setShown(enabled);
}

void TouchControl::createHelperTorus()
{
    if (m_ring || !isEnabled())
        return;
    m_ring = new RotationRing(this);
    m_ring->setShown(false);
    connect(m_ring->picker(), &ObjectPicker::pressed, this, &TouchControl::torusPicked);
}

float TouchControl::calculateRotationTorusRadius() const
{
    return RotationRing::radiusInView();
}

void TouchControl::disableArrows()
{
    setEnabled(false);
    enablePick();
}

void TouchControl::enablePick()
{
    m_customPicker->enablePick();
}

void TouchControl::disablePick()
{
    m_customPicker->disablePick();
}

bool TouchControl::containsMouse() const
{
    return m_customPicker->containsMouse();
}

void TouchControl::allow(bool allowed)
{
    if (m_allowed == allowed)
        return;
    m_allowed = allowed;
    updateAxisControlArrows();
    emit allowedChanged(allowed);
}

void TouchControl::setMode(Mode const& mode)
{
    if (!isEnabled())
        setEnabled(true);
    if (m_mode == ScreenTranslation)
        return;
    switch (mode) {
    case Rotation:
        setRotationMode();
        break;
    case ScreenTranslation:
        setScreenTranslationMode();
        break;
    case Translation:
        setTranslationMode();
        break;
    }
    m_mode = mode;
}

void TouchControl::setRotationMode()
{
    m_ring->setShown(true);
    // Only the ring can be picked now.
    disablePick();
}

void TouchControl::setTranslationMode()
{
    m_ring->setShown(false);
    enablePick();
}

void TouchControl::setScreenTranslationMode()
{
    setTranslationMode();
}

void TouchControl::setAxisArrowVisible(bool visible)
{
    if (m_axisArrowVisible == visible)
        return;
    m_axisArrowVisible = visible;
    updateAxisControlArrows();
    emit axisArrowVisibleChanged(visible);
}

void TouchControl::setAxisArrowMode(QString const& mode)
{
    if (m_axisArrowMode == mode)
        return;
    m_axisArrowMode = mode;
    updateAxisControlArrows();
    emit axisArrowModeChanged();
}

void TouchControl::updateAxisControlArrows()
{
    if (m_allowed && m_axisArrowVisible)
        addAxisControlArrows(arrowSize);
    else
        clearAxisControlArrows();
}

void TouchControl::addAxisControlArrows(float size)
{
    if (!m_axisArrows.isEmpty())
        return;
    if (m_axisArrowMode == topLayout) {
        createAxisControlArrowsForOneAxis({0.0F, 1.0F, 0.0F}, {1.0F, 0.0F, 0.0F}, size);
        createAxisControlArrowsForOneAxis({0.0F, 1.0F, 0.0F}, {0.0F, 0.0F, 1.0F}, size);
    } else if (m_axisArrowMode == frontLayout) {
        createAxisControlArrowsForOneAxis({0.0F, 0.0F, -1.0F}, {0.0F, 1.0F, 0.0F}, size);
    }
}

void TouchControl::createAxisControlArrowsForOneAxis(const QVector3D& normal, const QVector3D& axis, float size)
{
    auto* const arrows = new AxisControlArrows(m_renderable, normal, axis, size);
    connect(arrows->picker(), &ObjectPicker::pressed, this, &TouchControl::onPressedObject);
    connect(arrows, &AxisControlArrows::controlAxisSelected, this, &TouchControl::setControlAxis);
    connect(arrows, &AxisControlArrows::controlAxisDeselected, this, &TouchControl::resetControlAxis);
    m_axisArrows.append(arrows);
}

void TouchControl::clearAxisControlArrows()
{
    // One that is pressed will not tell of its release any more.
    resetControlAxis();
    // Later: one of them may be telling of a press right now.
    for (const auto& arrows : qAsConst(m_axisArrows)) {
        arrows->setEnabled(false);
        arrows->deleteLater();
    }
    m_axisArrows.clear();
}

void TouchControl::setControlAxis(QVector3D controlAxis)
{
    m_controlAxis = controlAxis;
}

void TouchControl::resetControlAxis()
{
    m_controlAxis = {};
}

} // namespace Torvik::View3d
