#pragma once

#include "host/vehicle/Replay.h"
#include "host/vehicle/VehicleFeed.h"
#include "host/vehicle/VehicleServer.h"

#include <QObject>

namespace Torvik::Viewer {

/** The vehicle as the window has it: a recording that is played, or a connection on which one tells of itself. QML has
 * it as `viewer.vehicle`. Main thread only. */
class VehicleDesk : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)
    Q_PROPERTY(bool replaying READ isReplaying NOTIFY activeChanged)
    Q_PROPERTY(double duration READ duration NOTIFY activeChanged)
    Q_PROPERTY(bool playing READ isPlaying NOTIFY playingChanged)
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
    Q_PROPERTY(double position READ position NOTIFY positionChanged)
    Q_PROPERTY(double counter READ counter NOTIFY counterChanged)
    Q_PROPERTY(bool measuring READ isMeasuring WRITE setMeasuring NOTIFY measuringChanged)
    Q_PROPERTY(QString connectionText READ connectionText NOTIFY connectionChanged)

public:
    explicit VehicleDesk(QObject* parent = nullptr);

    /** A recording is loaded, or it listens. */
    bool isActive() const { return isReplaying() || m_server.isListening(); }
    bool isReplaying() const { return m_replay.isLoaded(); }
    /** Of the recording, in seconds. */
    double duration() const { return m_replay.duration(); }
    bool isPlaying() const { return m_replay.isPlaying(); }
    /** Times as fast as it was; 0 as fast as possible. */
    double speed() const { return m_replay.speed(); }
    void setSpeed(double factor) { m_replay.setSpeed(factor); }
    /** Seconds from the recording's begin. */
    double position() const { return m_replay.position(); }
    /** Metres. */
    double counter() const;
    /** The view's real time. */
    bool isMeasuring() const { return m_feed.isMeasuring(); }
    void setMeasuring(bool measuring) { m_feed.setMeasuring(measuring); }
    /** Where it listens, who is there, and how many readings and malformed lines have come. */
    QString connectionText() const;

    void load(const QVector<Vehicle::Reading>& readings) { m_replay.load(readings); }
    /** Gives an error for the user, or nothing. */
    QString listen(const QHostAddress& address, quint16 port);
    const Vehicle::VehicleServer& server() const { return m_server; }

    /** No reading reaches the view any more, and the measurement ends. */
    void stop();

    Q_INVOKABLE void play() { m_replay.play(); }
    Q_INVOKABLE void pause() { m_replay.pause(); }
    Q_INVOKABLE void seek(double position) { m_replay.seek(position); }

signals:
    void activeChanged();
    void playingChanged();
    void speedChanged();
    void positionChanged();
    void counterChanged();
    void measuringChanged();
    void connectionChanged();
    /** A line from the connection was no reading. */
    void malformedLine(const Torvik::Vehicle::LineProblem& problem);

private:
    Vehicle::VehicleFeed m_feed;
    Vehicle::Replay m_replay;
    Vehicle::VehicleServer m_server;
};

} // namespace Torvik::Viewer
