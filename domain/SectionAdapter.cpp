#include "domain/SectionAdapter.h"

#include "domain/boundary/Notifications.h"

namespace Torvik::View3d {

SectionAdapter::SectionAdapter(const QSharedPointer<Database::CPipeInspectionObject>& inspection,
                               Database::CDomainObjectProxy* proxy)
    : m_pipeObject(proxy->domainObject())
    , m_proxy(proxy)
    , m_inspection(inspection)
{
}

SectionAdapter::~SectionAdapter()
{
    delete m_proxy;
}

QVariant SectionAdapter::value(const char* key) const
{
    const auto pipe = m_pipeObject.toStrongRef();
    return pipe ? pipe->readValue(QLatin1String(key)) : QVariant();
}

int SectionAdapter::pipeType() const
{
    const auto pipe = m_pipeObject.toStrongRef();
    return pipe ? pipe->objectType() : 0;
}

QString SectionAdapter::sectionId()
{
    return getSectionObjectId();
}

QString SectionAdapter::inspectionId()
{
    return getInspectionObjectId();
}

bool SectionAdapter::isLateral()
{
    return pipeType() == Database::LateralObjectType;
}

bool SectionAdapter::isSection()
{
    return pipeType() == Database::SectionObjectType;
}

QString SectionAdapter::name()
{
    return value("OBJ_Key").toString();
}

int SectionAdapter::inspectionDir()
{
    return m_inspection->inspectionDirection();
}

QString SectionAdapter::startNodeId()
{
    const auto node = m_inspection->startNode();
    return node ? node->id() : QString();
}

QString SectionAdapter::endNodeId()
{
    const auto node = m_inspection->endNode();
    return node ? node->id() : QString();
}

QVariant SectionAdapter::fromNodeDepth()
{
    return value("OBJ_FromNodeDepth").toFloat();
}

QVariant SectionAdapter::toNodeDepth()
{
    return value("OBJ_ToNodeDepth").toFloat();
}

QVariant SectionAdapter::diameter()
{
    return value("OBJ_Size1").toFloat();
}

QVariant SectionAdapter::offset()
{
    return value("OBJ_Offset");
}

QVariant SectionAdapter::sectionLength()
{
    return value("OBJ_Length");
}

QString SectionAdapter::getSectionObjectId() const
{
    const auto pipe = m_pipeObject.toStrongRef();
    return pipe ? pipe->id() : QString();
}

QString SectionAdapter::getInspectionObjectId() const
{
    return m_inspection->id();
}

} // namespace Torvik::View3d
