#pragma once

#include "domain/boundary/CPipeObjects.h"

namespace Torvik::Database {

/** An open project. Indexes run from 0 to count - 1; an index outside gives null. */
class CProjectObject : public CDomainObject {
public:
    using CDomainObject::CDomainObject;
    ~CProjectObject() override;

    int nodeCount() const;
    CDomainObjectPointer node(int index) const;
    int sectionCount() const;
    QSharedPointer<CGenericPipeObject> section(int index) const;
    int lateralCount() const;
    QSharedPointer<CGenericPipeObject> lateral(int index) const;

    /** Any object of the project by id; null when unknown. */
    CDomainObjectPointer lookupObject(const QString& id) const;
    /** Folder of the project on disk; ends in a separator, so that names are simply appended. */
    QString projectPath() const;
    /** The project's coordinate system as WKT; empty when none is stored. */
    QString projectionWKT() const;
    /** Changes the coordinate system in memory; stored by updateObject of the project. */
    void setProjectionWKT(const QString& wkt);
    /** True when this project is shown in the 3D view. */
    bool is3dProject() const;
};

} // namespace Torvik::Database
