#pragma once

namespace Torvik::Database {

/** Kinds of objects in a project. The values are part of the interface to the host. */
enum ObjectType : int {
    ProjectObjectType = 1,
    SectionObjectType = 3,
    LateralObjectType = 4,
    PipeInspectionObjectType = 5,
    PipeObservationObjectType = 6,
    NodeObjectType = 7
};

} // namespace Torvik::Database
