#pragma once

#include "host/vehicle/Reading.h"
#include "host/vehicle/SensorFrame.h"

#include <QObject>

namespace Torvik::Vehicle {

/** Feeds the view with what a vehicle tells: the counter always, the sensor's places while real time is on. Readings
 * are about the active inspection's pipe; where it lies is asked when real time goes on. Main thread only. */
class VehicleFeed : public QObject {
    Q_OBJECT

public:
    explicit VehicleFeed(QObject* parent = nullptr);

    void take(const Reading& reading);
    /** The view's real time: with it on, the pipe of the active inspection is drawn and stored as it is measured. */
    void setMeasuring(bool measuring);
    bool isMeasuring() const;

private:
    void findPipe();

    SensorFrame m_frame;
};

} // namespace Torvik::Vehicle
