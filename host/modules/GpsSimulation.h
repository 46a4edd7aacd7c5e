#pragma once

#include "host/modules/GpsTrack.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace Torvik::Viewer {

class DeviceSystem;

/** Stands in for the device's receiver of satellites: off, standing at a place, or walking along a track, from whose
 * end it begins again. Main thread only. */
class GpsSimulation : public QObject {
    Q_OBJECT

public:
    explicit GpsSimulation(DeviceSystem& system, QObject* parent = nullptr);

    /** What "--gps" says: a choice of GpsChoice, or a track's file. One line when that cannot be done, or not all of
     *  it, else empty. */
    QString choose(const QString& text);
    /** Where a choice without a place of its own is to stand; nothing for any other. */
    void setPlace(double latitude, double longitude);
    /** Off, or with something to tell. */
    bool isChosen() const { return m_chosen; }
    void stand(const GpsChoice& choice);
    void walk(const GpsTrack& track);

private:
    void step();
    void tell(const GpsFix& fix);

    DeviceSystem& m_system;
    GpsChoice m_waiting;
    bool m_chosen = false;
    GpsTrack m_track;
    QElapsedTimer m_clock;
    QTimer m_timer;
};

} // namespace Torvik::Viewer
