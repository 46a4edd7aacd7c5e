#include "network/Observation.h"

#include "domain/ObservationAdapter.h"
#include "domain/boundary/WktPoint.h"
#include "labels/ImageLabel.h"
#include "network/ObservationBend.h"
#include "network/ObservationConnection.h"
#include "network/ObservationEnd.h"
#include "network/Section.h"
#include "scene/Fuzzy.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <cmath>
#include <utility>

namespace Torvik::View3d {

namespace {

constexpr QRgb labelBackground = qRgb(63, 175, 249);

bool readNumber(const QVariant& value, float& number)
{
    bool ok = false;
    const float read = value.toFloat(&ok);
    if (value.isNull() || !ok)
        return false;
    number = read;
    return true;
}

void readHour(const QVariant& value, float& hour)
{
    bool ok = false;
    const int read = value.toInt(&ok);
    if (!value.isNull() && ok)
        hour = static_cast<float>(read);
}

} // namespace

Observation* Observation::create(Section* section, ObservationAdapter* adapter, bool fromDB)
{
    const unsigned flags = adapter->codeTypeFlags();
    if ((flags & bendBits) != 0)
        return new ObservationBend(section, adapter, fromDB);
    if ((flags & connectionBits) != 0)
        return new ObservationConnection(section, adapter, fromDB);
    if ((flags & endBits) != 0)
        return new ObservationEnd(section, adapter);
    return new Observation(section, adapter);
}

Observation::Observation(Section* section, ObservationAdapter* adapter)
    : Renderable(section->parentEntity())
    , m_section(section)
    , m_adapter(adapter)
    , m_shapeAccess(nullptr)
    , m_tag(*this, NameTag::OfObservation)
{
    connect(section, &QObject::destroyed, this, &QObject::deleteLater);
    m_adapter->setParent(this);
    init3d();
    init();
    resetPrev();
    followSection();
    followSwitches();
    storeShape();
}

Observation::~Observation()
{
    SceneEntities::instance().removeObject(this);
}

void Observation::followSection()
{
    connect(m_section, &Section::sectionGeometryChanged, this, [this] { onSectionGeometryChanged(); });
    // A section under the user's finger changes its place alone; what hangs on it goes along and is stored with it.
    connect(m_section, &Renderable::transformChanged, this, &Observation::refreshPosition);
    connect(m_section, &Renderable::editingFinished, this, &Observation::storeShape);
}

void Observation::followSwitches()
{
    const auto* const nav = GlobalNav::instance();
    connect(nav, &GlobalNav::labelsVisibleChanged, this, &Observation::tellVisibility);
    connect(nav, &GlobalNav::obsVisibleChanged, this, &Observation::tellVisibility);
}

void Observation::init3d()
{
    m_tag.leaveCommonSwitch();
    m_tag.setBackground(QColor(labelBackground));
    m_tag.setText(m_adapter ? m_adapter->code() : QStringLiteral("OBS"));
    tellVisibility();
}

void Observation::tellVisibility()
{
    const auto* const nav = GlobalNav::instance();
    const bool visible = nav->obsVisible() && nav->labelsVisible();
    m_tag.setOwnerVisible(visible);
    emit visibilityChanged(visible);
}

Label* Observation::getLabel()
{
    return m_tag.label();
}

Section* Observation::section() const
{
    return m_section;
}

int Observation::inspDir() const
{
    return m_section ? m_section->inspectionDirection() : InspectionDir::Unknown;
}

QString Observation::renderableType() const
{
    return QStringLiteral("observation");
}

QString Observation::guid()
{
    return m_adapter ? m_adapter->observationId() : Renderable::guid();
}

QQuaternion Observation::orientation() const
{
    return rotation();
}

QVector<QVector<QVector3D>> Observation::getShapePoints() const
{
    return {{transform()->translation()}};
}

QString Observation::getDomainObjectId() const
{
    const auto object = m_adapter ? m_adapter->getDomainObject().toStrongRef() : CDomainObjectPointer();
    return object ? object->id() : QString();
}

QString Observation::getInspectionObjectId() const
{
    return {};
}

QString Observation::wktPrefix() const
{
    return Database::ShapeWKTHelper::WKT_POINT_PREFIX;
}

void Observation::init()
{
    readObsDistance();
    readObsDiameter();
    readObsBendClock();
    readObsClock1();
    readObsJointAngle();
    refreshPosition();
}

void Observation::readObsDistance()
{
    const float distance = m_adapter->distanceMeters();
    if (!std::isnan(distance))
        m_distance = distance;
}

void Observation::readObsDiameter()
{
    readNumber(m_adapter->q1Value(), m_diameter);
}

void Observation::readObsBendClock()
{
    readHour(m_adapter->bendClock(), m_bendClock);
}

void Observation::readObsClock1()
{
    readHour(m_adapter->clockPos1(), m_clock1);
}

void Observation::readObsJointAngle()
{
    if (readNumber(m_adapter->jointAngle(), m_jointAngle))
        m_jointAngle = std::abs(m_jointAngle);
}

void Observation::refreshPosition()
{
    if (!m_section)
        return;
    Qt3DCore::QTransform place;
    place.setMatrix(m_section->pipeTransMatrixAtDistance(m_distance));
    transform()->setTranslation(place.translation(), 0);
    transform()->setRotation(place.rotation(), 0);
}

void Observation::onSectionGeometryChanged()
{
    refreshPosition();
    storeShape();
}

bool Observation::paramsChanged() const
{
    return !Fuzzy::equal(m_clock1, m_prevClock1) || !Fuzzy::equal(m_jointAngle, m_prevJointAngle) ||
           !Fuzzy::equal(m_bendClock, m_prevBendClock);
}

void Observation::resetPrev()
{
    m_prevClock1 = m_clock1;
    m_prevJointAngle = m_jointAngle;
    m_prevBendClock = m_bendClock;
}

bool Observation::hasType(unsigned bits) const
{
    return (m_adapter->codeTypeFlags() & bits) != 0;
}

Observation* Observation::replacement()
{
    if (!m_section)
        return this;
    // The record belongs to the other from here on, and the section speaks to that one alone.
    ObservationAdapter* const adapter = std::exchange(m_adapter, nullptr);
    disconnect(m_section, nullptr, this, nullptr);
    Observation* const next = create(m_section, adapter, false);
    // A finger may be on it: the view's own writing of the place makes each finding anew.
    next->m_tag.takeOver(m_tag);
    return next;
}

Observation* Observation::modify()
{
    return replacement();
}

void Observation::performCleanup() {}

} // namespace Torvik::View3d
