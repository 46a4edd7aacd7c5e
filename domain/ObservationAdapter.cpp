#include "domain/ObservationAdapter.h"

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/Notifications.h"

namespace Torvik::View3d {

namespace {

constexpr int feet = 2;
constexpr float metresPerFoot = 0.3048F;

} // namespace

ObservationAdapter::ObservationAdapter(Database::CDomainObjectProxy* proxy, QObject* parent)
    : QObject(parent)
    , m_object(proxy->domainObject())
    , m_proxy(proxy)
    , m_metresPerUnit(Base::CLocaleSupport::getDistanceUnit() == feet ? metresPerFoot : 1.0F)
{
}

QSharedPointer<Database::CPipeObservationObject> ObservationAdapter::observation() const
{
    return qSharedPointerDynamicCast<Database::CPipeObservationObject>(m_object.toStrongRef());
}

QVariant ObservationAdapter::value(const char* key) const
{
    const auto object = m_object.toStrongRef();
    return object ? object->readValue(QLatin1String(key)) : QVariant();
}

unsigned ObservationAdapter::codeTypeFlags() const
{
    const auto object = observation();
    return object ? object->codeTypeFlags() : 0U;
}

QString ObservationAdapter::code() const
{
    const auto object = observation();
    return object ? object->code() : QString();
}

QString ObservationAdapter::observationId() const
{
    const auto object = m_object.toStrongRef();
    return object ? object->id() : QString();
}

float ObservationAdapter::distanceMeters() const
{
    return value("OBS_Distance").toFloat() * m_metresPerUnit;
}

QVariant ObservationAdapter::lateralSectionRef() const
{
    return value("OBS_LateralSection_REF");
}

QVariant ObservationAdapter::bendClock() const
{
    return value("OBS_BendClkH");
}

QVariant ObservationAdapter::jointAngle() const
{
    return value("OBS_JointAngle");
}

QVariant ObservationAdapter::q1Value() const
{
    return value("OBS_Q1_Value");
}

QVariant ObservationAdapter::clockPos1() const
{
    return value("OBS_ClockPos1");
}

} // namespace Torvik::View3d
