#include "domain/boundary/CProjectObject.h"

#include "host/domain/DomainObjectData.h"

namespace Torvik::Database {

namespace {

const QString projectionColumn = QStringLiteral("PRJ_ProjectionWKT");
const QString is3dColumn = QStringLiteral("PRJ_Is3d");

const ProjectData& dataOf(const std::unique_ptr<CDomainObjectPrivate>& d)
{
    return static_cast<const ProjectData&>(*d);
}

} // namespace

CProjectObject::~CProjectObject() = default;

int CProjectObject::nodeCount() const
{
    return dataOf(d).nodes.size();
}

CDomainObjectPointer CProjectObject::node(int index) const
{
    return dataOf(d).nodes.value(index);
}

int CProjectObject::sectionCount() const
{
    return dataOf(d).sections.size();
}

QSharedPointer<CGenericPipeObject> CProjectObject::section(int index) const
{
    return dataOf(d).sections.value(index).staticCast<CGenericPipeObject>();
}

int CProjectObject::lateralCount() const
{
    return dataOf(d).laterals.size();
}

QSharedPointer<CGenericPipeObject> CProjectObject::lateral(int index) const
{
    return dataOf(d).laterals.value(index).staticCast<CGenericPipeObject>();
}

CDomainObjectPointer CProjectObject::lookupObject(const QString& id) const
{
    return id == d->id ? d->self.toStrongRef() : dataOf(d).index.value(id);
}

QString CProjectObject::projectPath() const
{
    return dataOf(d).path;
}

QString CProjectObject::projectionWKT() const
{
    return readValue(projectionColumn).toString();
}

void CProjectObject::setProjectionWKT(const QString& wkt)
{
    updateValue(projectionColumn, wkt);
}

bool CProjectObject::is3dProject() const
{
    return readValue(is3dColumn).toBool();
}

} // namespace Torvik::Database
