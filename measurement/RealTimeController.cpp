#include "measurement/RealTimeController.h"

#include "domain/boundary/AppState.h"
#include "measurement/MeasurementPointsHandler.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

namespace Torvik::View3d {

void RealTimeController::enableMeasurement(bool enabled)
{
    if (enabled)
        startMeasurement();
    else
        emit stop3dRealTimeMeasurements();
}

void RealTimeController::startMeasurement()
{
    QVector3D place;
    float distance = 0.0F;
    const Section* const section = SceneEntities::instance().getActiveSectionEntity();
    if (const Pipe* const pipe = section ? section->pipe() : nullptr) {
        distance = static_cast<float>(m_crawlerDistance);
        place = (pipe->getTransformMatrixAtDistance(distance) * pipe->worldMatrix().inverted()).map(QVector3D());
    }
    // The sensor's frame has z up.
    const Vector3D<double> zUp(QVector3D(place.x(), -place.z(), place.y()));
    emit start3dRealTimeMeasurements(Vector3D<double>(zUp, 1.0), QVector3D(), distance);
    if (const CDomainObjectPointer inspection = AppState::instance().getActiveInspection())
        MeasurementPointsHandler::instance()->createNewSecMes(inspection->id());
}

} // namespace Torvik::View3d
