#pragma once

#include "domain/boundary/CDomainObject.h"

namespace Torvik::Database {

/** An observation made during an inspection of a pipe. */
class CPipeObservationObject : public CDomainObject {
public:
    using CDomainObject::CDomainObject;
    ~CPipeObservationObject() override;

    QString code() const;
    /** Kind of the observation, as bits: 0x400 bend, 0x4 end of inspection, 0x2018 connection (any of the three). */
    unsigned codeTypeFlags() const;
};

/** One inspection of a section or lateral. */
class CPipeInspectionObject : public CDomainObject {
public:
    using CDomainObject::CDomainObject;
    ~CPipeInspectionObject() override;

    /** Node at which the inspection starts, or null. */
    CDomainObjectPointer startNode() const;
    /** Node at which the inspection ends, or null. */
    CDomainObjectPointer endNode() const;
    /** 1 downstream, 2 upstream, anything else unknown. */
    int inspectionDirection() const;
    int observationCount() const;
    CDomainObjectPointer observation(int index) const;
};

/** A section or a lateral. */
class CGenericPipeObject : public CDomainObject {
public:
    using CDomainObject::CDomainObject;
    ~CGenericPipeObject() override;

    int inspectionCount() const;
    QSharedPointer<CPipeInspectionObject> inspection(int index) const;
};

/** A pipe with references to its two end nodes. Laterals are of this class too; objectType() tells them apart. */
class CSectionObject : public CGenericPipeObject {
public:
    using CGenericPipeObject::CGenericPipeObject;
    ~CSectionObject() override;
};

} // namespace Torvik::Database
