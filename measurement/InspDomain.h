#pragma once

#include "measurement/ShapePoints.h"

#include <QString>

namespace Torvik::View3d {

/** A scene object whose shape is kept in a record of the project; what ShapeAccess needs to know of it. */
class InspDomain : public ShapePoints {
public:
    /** Id of the inspection record that mirrors the shape; empty where there is none. */
    virtual QString getInspectionObjectId() const = 0;
    /** Id of the record whose column holds the shape. */
    virtual QString getDomainObjectId() const = 0;
    /** Keyword with which the shape is written. */
    virtual QString wktPrefix() const = 0;
};

} // namespace Torvik::View3d
