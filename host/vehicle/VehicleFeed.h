#pragma once

#include "host/vehicle/Reading.h"
#include "host/vehicle/SensorFrame.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <limits>

namespace Torvik::View3d {
class Pipe;
}

namespace Torvik::Vehicle {

/** Feeds the view with what a vehicle tells: the counter always, the sensor's places while real time is on. Readings
 * are about the active inspection's pipe; where it lies is asked when real time goes on. Main thread only.
 *
 * Only a counter that is further than any before in this measurement, by a centimetre as the view counts, comes with a
 * place: a vehicle that stands, or whose counter trembles, would have the same stretch laid again and again, and the
 * pipe grow by what the sensor is ahead each time. So a counter of coarser steps gives a place a step, and going back
 * gives none; switching real time off and on begins anew, for a stretch that is to be measured again. */
class VehicleFeed : public QObject {
    Q_OBJECT

public:
    explicit VehicleFeed(QObject* parent = nullptr);

    void take(const Reading& reading);
    /** The view's real time: with it on, the pipe of the active inspection is drawn and stored as it is measured. */
    void setMeasuring(bool measuring);
    bool isMeasuring() const;

private:
    void onMeasuring();
    /** Has the points at hand again that an inspection measured earlier in this run got. */
    void continueMeasurement();
    bool findPipe();
    bool isFurther(double counter);

    static constexpr float nowhere = -std::numeric_limits<float>::infinity();

    SensorFrame m_frame;
    QPointer<const View3d::Pipe> m_pipe;
    QSet<QString> m_measuredInspections;
    /** Metres, of the counters that came with a place. */
    float m_furthest = nowhere;
    /** No place has been told in this measurement yet. */
    bool m_opening = false;
};

} // namespace Torvik::Vehicle
