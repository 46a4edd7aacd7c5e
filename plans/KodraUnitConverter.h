#pragma once

#include "domain/boundary/Vector3D.h"
#include "scene/KxView3dExport.h"

#include <QVector3D>

namespace Torvik::View3d {

/** Between the coordinates of plan.xml and those of the scene. The file has z upward and x the other way round, and its
 *  horizontal lengths carry no scale; heights are equal. The scale is the projector's, 1 without a tie. No state; main
 *  thread only, as the projector. */
class KXVIEW3D_EXPORT KodraUnitConverter {
public:
    enum class CoordinateSystem { PlanFile = 0, Scene = 1 };

    QVector3D getRotationOrScaleInCoordinateSystem(const QVector3D& v, CoordinateSystem from,
                                                   CoordinateSystem to) const;
    QVector3D getTranslationInCoordinateSystem(const QVector3D& v, CoordinateSystem from, CoordinateSystem to) const;
    Vector3D<double> getPlanReferencePointInCoordinateSystem(const Vector3D<double>& v, CoordinateSystem from,
                                                             CoordinateSystem to) const;
};

} // namespace Torvik::View3d
