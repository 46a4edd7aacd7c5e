#pragma once

#include "host/vehicle/Reading.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>

namespace Torvik::Vehicle {

/** Plays a recording: hands its readings out as the clock goes on. Positions are seconds from the first reading. The
 *  thread that made it only. */
class Replay : public QObject {
    Q_OBJECT

public:
    /** Milliseconds; never goes back. */
    using Clock = std::function<qint64()>;

    /** The speed that waits for nothing: one reading a turn of the event loop. */
    static constexpr double fastest = 0;

    /** Without a clock, the machine's. */
    explicit Replay(QObject* parent = nullptr, Clock clock = {});

    /** Stops, and stands before the first of these. They are in the order of time. */
    void load(const QVector<Reading>& readings);
    bool isLoaded() const { return !m_readings.isEmpty(); }

    bool isPlaying() const { return m_playing; }
    double speed() const { return m_speed; }
    double position() const { return m_position; }
    double duration() const;
    /** Every reading has been handed out. */
    bool atEnd() const { return m_next >= m_readings.size(); }

    /** Goes on; from the begin if it stands at the end. */
    void play();
    void pause();
    /** Times as fast as it was, or `fastest`. */
    void setSpeed(double factor);
    /** Goes to a position, back or forward, and hands out the reading that was true there. What lies between is left
     *  out. */
    void seek(double position);
    /** Hands out what is due. Its own timer calls this; a test may. */
    void tick();

signals:
    void reading(const Torvik::Vehicle::Reading& reading);
    void loaded();
    void playingChanged();
    void speedChanged();
    void positionChanged();
    /** The last reading has been handed out while playing. */
    void finished();

private:
    double timeOf(int index) const;
    void setPlaying(bool playing);
    void setPosition(double position);
    void handOutUpTo(double position);
    void handOutNext();
    void endIfDone();
    void startTimer();

    Clock m_clock;
    QTimer m_timer;
    QVector<Reading> m_readings;
    /** Of the reading that is handed out next. */
    int m_next = 0;
    double m_position = 0;
    double m_speed = 1;
    qint64 m_lastTick = 0;
    bool m_playing = false;
};

} // namespace Torvik::Vehicle
