#pragma once

#include "domain/boundary/Vector3D.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QVector3D>

namespace Torvik::View3d {

/** Opens and ends a 3D measurement of the active section, and remembers how far the crawler has come, so that a
 *  measurement begins there. What is stored stays open: a measurement that goes on later continues it. Whether one is
 * under way is GlobalNav's realTimeEnabled, not a state of this class. Main thread only. */
class KXVIEW3D_EXPORT RealTimeController : public QObject {
    Q_OBJECT

public:
    RealTimeController() = default;

    /** Metres along the active section. */
    void setCrawlerDistance(double distance) { m_crawlerDistance = distance; }
    /** Announces the begin at the crawler's place in the active section, at the origin and 0 m without one; or the end.
     *  Announces it each time, also what has been announced before. */
    void enableMeasurement(bool enabled);

signals:
    /** The start is the way from the section's place to the crawler, along the scene's axes but z up; the direction is
     *  always zero. */
    void start3dRealTimeMeasurements(Torvik::View3d::Vector3D<double> startingVector, QVector3D startingDirection,
                                     float startMeterValue);
    void stop3dRealTimeMeasurements();

private:
    void startMeasurement();

    double m_crawlerDistance = 0.0;
};

} // namespace Torvik::View3d
