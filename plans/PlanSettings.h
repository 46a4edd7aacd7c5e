#pragma once

#include "domain/boundary/Vector3D.h"

#include <QString>
#include <QVector3D>

namespace Torvik::View3d {

/** Where a background plan lies, in the axes and metres of the scene, and which file it is. A plain value. */
struct PlanSettings {
    /** To which the translation is relative: cartesian * scale, comparable with the projector's origin. */
    Vector3D<double> referencePoint;
    /** Where the plan's anchor corner lies, from the reference point. */
    QVector3D translation;
    QVector3D scale {1.0F, 1.0F, 1.0F};
    /** Degrees about the axes; a plan turns about y only. */
    QVector3D rotation;
    /** What the translation and the turn have lost to single precision. */
    Vector3D<double> translationRest;
    double turnRest = 0.0;
    /** As it was given, without blanks around it. */
    QString projectPath;
    /** Full path of the plan's file; empty without a plan. */
    QString planPath;
};

} // namespace Torvik::View3d
