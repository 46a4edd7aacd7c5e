#include "domain/boundary/CQmlDomainObject.h"

#include "domain/boundary/CPipeObjects.h"
#include "domain/boundary/CProjectObject.h"

namespace Torvik::QmlWrapper {

namespace {

using namespace Database;

CDomainObjectPointer validOrNull(const CDomainObjectPointer& object)
{
    return object && object->isValid() ? object : CDomainObjectPointer();
}

/** Street, city and country of the nearest object upwards that has an address of its own. */
QVariantList addressOf(CDomainObjectPointer object)
{
    while (object && object->objectType() >= PipeInspectionObjectType && object->objectType() != NodeObjectType) {
        object = object->parentObject().toStrongRef();
    }
    if (!object || object->objectType() == ProjectObjectType) {
        return {};
    }
    return {object->readValue(QStringLiteral("OBJ_Street")).toString(),
            object->readValue(QStringLiteral("OBJ_City")).toString(),
            object->readValue(QStringLiteral("OBJ_Country")).toString()};
}

CDomainObjectPointer startNodeOf(const CDomainObjectPointer& object)
{
    if (object->objectType() == PipeInspectionObjectType) {
        return object.staticCast<CPipeInspectionObject>()->startNode();
    }
    const auto project = CDomainObject::projectFromObject(object);
    const QString id = object->readValue(QStringLiteral("OBJ_FromNode_REF")).toString();
    return project ? project->findChildObjectById(NodeObjectType, id) : CDomainObjectPointer();
}

} // namespace

CQmlDomainObject::CQmlDomainObject(const CDomainObjectPointer& object)
    : m_object(object)
{
}

bool CQmlDomainObject::isValid() const
{
    return m_object && m_object->isValid();
}

QString CQmlDomainObject::id() const
{
    return m_object ? m_object->id() : QString();
}

int CQmlDomainObject::objectType() const
{
    return m_object ? int(m_object->objectType()) : 0;
}

CQmlDomainObject CQmlDomainObject::getStartNode() const
{
    const CDomainObjectPointer object = validOrNull(m_object);
    if (!object || object->objectType() != PipeInspectionObjectType) {
        return {};
    }
    return CQmlDomainObject(object.staticCast<CPipeInspectionObject>()->startNode());
}

QString CQmlDomainObject::queryName() const
{
    if (!m_object) {
        return {};
    }
    switch (m_object->objectType()) {
    case ProjectObjectType:
        return m_object->readValue(QStringLiteral("PRJ_Name")).toString();
    case PipeObservationObjectType:
        return m_object->readValue(QStringLiteral("OBS_Code")).toString();
    case PipeInspectionObjectType: {
        const QString own = m_object->readValue(QStringLiteral("INS_Key")).toString();
        return own.isEmpty() ? CQmlDomainObject(m_object->parentObject().toStrongRef()).queryName() : own;
    }
    default:
        return m_object->readValue(QStringLiteral("OBJ_Key")).toString();
    }
}

QString CQmlDomainObject::queryTemplateId() const
{
    switch (objectType()) {
    case ProjectObjectType:
        return QStringLiteral("PROJECT");
    case SectionObjectType:
        return QStringLiteral("SECTION");
    case LateralObjectType:
        return QStringLiteral("LATERAL");
    case PipeInspectionObjectType:
        return QStringLiteral("SECINSP");
    case PipeObservationObjectType:
        return QStringLiteral("SECOBS");
    case NodeObjectType:
        return QStringLiteral("NODE");
    default:
        return {};
    }
}

QVariantList CQmlDomainObject::queryAddressDetails() const
{
    return addressOf(validOrNull(m_object));
}

QVariantList CQmlDomainObject::queryAddressDetailsOfStartingNode() const
{
    const CDomainObjectPointer object = validOrNull(m_object);
    return object ? addressOf(startNodeOf(object)) : QVariantList();
}

} // namespace Torvik::QmlWrapper
