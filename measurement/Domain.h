#pragma once

#include "domain/boundary/CDomainObject.h"

namespace Torvik::View3d {

/** Something that stands for a record of the project. */
class Domain {
public:
    virtual ~Domain() = default;

    /** Id of the record. */
    virtual QString getDomainObjectId() const = 0;
    /** Null when there is none. */
    virtual QSharedPointer<Database::CDomainObject> getDomainObject() const = 0;

protected:
    Domain() = default;
    Domain(const Domain&) = default;
    Domain& operator=(const Domain&) = default;
};

} // namespace Torvik::View3d
