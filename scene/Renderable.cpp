#include "scene/Renderable.h"

#include "domain/boundary/GUID.h"

namespace Torvik::View3d {

namespace {

constexpr int changeFinishedMs = 750;

} // namespace

Renderable::Renderable(Qt3DCore::QEntity* parent)
    : Qt3DCore::QEntity(parent)
    , m_changeFinished(changeFinishedMs, [this] { emit editingFinished(); })
{
    initTransform();
}

Renderable::~Renderable() = default;

void Renderable::initTransform()
{
    m_transform = new FlaggedTransform(0);
    addComponent(m_transform);
    connect(m_transform, &FlaggedTransform::translationChanged, this, &Renderable::tellChange);
    connect(m_transform, &FlaggedTransform::rotationChanged, this, &Renderable::tellChange);
    connect(m_transform, &FlaggedTransform::flagsChanged, this, &Renderable::tellChange);
}

void Renderable::tellChange()
{
    m_changeFinished.start();
    emit transformChanged();
}

FlaggedTransform* Renderable::transform() const
{
    return m_transform;
}

QMatrix4x4 Renderable::transformMatrix() const
{
    return m_transform->matrix();
}

QVector3D Renderable::center() const
{
    return {};
}

QQuaternion Renderable::orientation() const
{
    return {};
}

QVector3D Renderable::connectionPoint(Renderable*)
{
    return position();
}

void Renderable::setSelectedMaterial() {}

void Renderable::setDefaultMaterial() {}

QString Renderable::guid()
{
    // Most objects go by the id of their record.
    if (m_guid.isEmpty())
        m_guid = QStringLiteral("rnd_") + Database::CGuidHelper::createGuid();
    return m_guid;
}

QString Renderable::name() const
{
    return QStringLiteral("");
}

void Renderable::setName(const QString&) {}

void Renderable::connectTo(Renderable*) {}

void Renderable::connectApply() {}

void Renderable::connectCancel() {}

void Renderable::move(QVector3D vector, MeasurementType flags)
{
    setPosition(position() + vector, flags);
}

void Renderable::move(QVector3D vector, TransformFlags::Flags flags)
{
    move(vector, static_cast<MeasurementType>(flags));
}

void Renderable::move(QVector3D vector)
{
    move(vector, MeasurementType(0));
}

void Renderable::doubleTapped() {}

QVector3D Renderable::position() const
{
    return m_transform->translation();
}

QQuaternion Renderable::rotation() const
{
    return m_transform->rotation();
}

void Renderable::setPosition(QVector3D position, MeasurementType flags)
{
    m_transform->setTranslation(position, flags);
}

void Renderable::setRotation(QQuaternion rotation, MeasurementType flags)
{
    m_transform->setRotation(rotation, flags);
}

void Renderable::setTransform(const FlaggedTransform* other)
{
    m_transform->setMatrix(other->matrix(), other->getFlags());
    tellChange();
}

int Renderable::transformFlags() const
{
    return m_transform->getFlags();
}

void Renderable::setTransformFlags(int flags)
{
    m_transform->resetFlags(flags);
}

void Renderable::setAsSelected()
{
    setSelectedMaterial();
    // From now on it must hear what a drag means.
    touchControl();
}

void Renderable::setAsDeselected()
{
    setDefaultMaterial();
    if (m_touchControl)
        m_touchControl->disableArrows();
}

void Renderable::setEnablePicker(bool enabled)
{
    m_pickable = enabled;
    if (!m_touchControl)
        return;
    if (enabled)
        m_touchControl->enablePick();
    else
        m_touchControl->disablePick();
}

void Renderable::allowTouchControl(bool allowed)
{
    if (touchControl())
        m_touchControl->allow(allowed);
}

bool Renderable::isTouchControlAllowed() const
{
    return m_touchControl && m_touchControl->isAllowed();
}

TouchControlBase* Renderable::createTouchControl()
{
    return nullptr;
}

TouchControlBase* Renderable::touchControl() const
{
    if (!m_touchControl)
        m_touchControl = const_cast<Renderable*>(this)->createTouchControl();
    return m_touchControl;
}

void Renderable::setTouchControl(TouchControlBase* touchControl)
{
    if (m_touchControl == touchControl)
        return;
    if (m_touchControl)
        m_touchControl->deleteLater();
    m_touchControl = touchControl;
}

} // namespace Torvik::View3d
