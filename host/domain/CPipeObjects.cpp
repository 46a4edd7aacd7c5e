#include "domain/boundary/CPipeObjects.h"

#include "domain/boundary/CProjectObject.h"
#include "host/domain/DomainObjectData.h"
#include "host/domain/ObservationCodes.h"

namespace Torvik::Database {

namespace {

CDomainObjectPointer nodeOf(const CDomainObjectPrivate& inspection, const QString& column)
{
    const auto project = CDomainObject::projectFromObject(inspection.self.toStrongRef());
    const int index = inspection.layout->indexOf(column);
    if (!project || index < 0) {
        return {};
    }
    return project->findChildObjectById(NodeObjectType, inspection.values.value(index).toString());
}

} // namespace

CPipeObservationObject::~CPipeObservationObject() = default;

QString CPipeObservationObject::code() const
{
    return readValue(QStringLiteral("OBS_Code")).toString();
}

unsigned CPipeObservationObject::codeTypeFlags() const
{
    return ObservationCodes::flags(code(), readValue(QStringLiteral("OBS_Ch1")).toString(),
                                   readValue(QStringLiteral("OBS_Ch2")).toString());
}

CPipeInspectionObject::~CPipeInspectionObject() = default;

CDomainObjectPointer CPipeInspectionObject::startNode() const
{
    return nodeOf(*d, QStringLiteral("INS_StartNode_REF"));
}

CDomainObjectPointer CPipeInspectionObject::endNode() const
{
    return nodeOf(*d, QStringLiteral("INS_EndNode_REF"));
}

int CPipeInspectionObject::inspectionDirection() const
{
    return readValue(QStringLiteral("INS_InspectionDir")).toInt();
}

int CPipeInspectionObject::observationCount() const
{
    return d->children.size();
}

CDomainObjectPointer CPipeInspectionObject::observation(int index) const
{
    return d->children.value(index);
}

CGenericPipeObject::~CGenericPipeObject() = default;

int CGenericPipeObject::inspectionCount() const
{
    return d->children.size();
}

QSharedPointer<CPipeInspectionObject> CGenericPipeObject::inspection(int index) const
{
    return d->children.value(index).staticCast<CPipeInspectionObject>();
}

CSectionObject::~CSectionObject() = default;

} // namespace Torvik::Database
