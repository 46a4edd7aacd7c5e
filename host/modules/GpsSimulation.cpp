#include "host/modules/GpsSimulation.h"

#include "host/modules/Ostel.h"

#include <QFile>

#include <cmath>

namespace Torvik::Viewer {

namespace {
/** As often as a common receiver speaks. */
constexpr int stepMilliseconds = 200;
} // namespace

GpsSimulation::GpsSimulation(DeviceSystem& system, QObject* parent)
    : QObject(parent)
    , m_system(system)
{
    m_timer.setInterval(stepMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &GpsSimulation::step);
}

QString GpsSimulation::choose(const QString& text)
{
    const GpsChoice choice = GpsChoice::parse(text);
    m_chosen = choice.valid;
    m_waiting = {};
    if (choice.valid && choice.anywhere) {
        // Without a place it has no fix yet.
        m_waiting = choice;
        stand(GpsChoice::parse(QStringLiteral("none")));
        return {};
    }
    if (choice.valid) {
        stand(choice);
        return {};
    }
    QFile file(text);
    if (!file.open(QIODevice::ReadOnly)) {
        return tr("%1: neither off, none, 2d, 3d nor LATITUDE,LONGITUDE, and no track that can be read: %2")
            .arg(text, file.errorString());
    }
    const GpsTrack track = GpsTrack::parse(QString::fromUtf8(file.readAll()));
    if (track.fixes.isEmpty()) {
        return tr("%1: holds no point of a track and no line \"time,latitude,longitude\"").arg(text);
    }
    walk(track);
    m_chosen = true;
    return track.malformedLines.isEmpty()
               ? QString()
               : tr("%1: %n line(s) could not be read, the first of them line %2", nullptr, track.malformedLines.size())
                     .arg(text)
                     .arg(track.malformedLines.first());
}

void GpsSimulation::setPlace(double latitude, double longitude)
{
    if (!m_waiting.anywhere)
        return;
    m_waiting.fix.latitude = latitude;
    m_waiting.fix.longitude = longitude;
    stand(m_waiting);
}

void GpsSimulation::stand(const GpsChoice& choice)
{
    m_timer.stop();
    m_system.setGpsEnabled(choice.enabled);
    tell(choice.fix);
}

void GpsSimulation::walk(const GpsTrack& track)
{
    m_track = track;
    m_system.setGpsEnabled(true);
    m_clock.start();
    m_timer.start();
    step();
}

void GpsSimulation::step()
{
    const double duration = m_track.duration();
    const double seconds = double(m_clock.elapsed()) / 1000.0;
    tell(m_track.at(duration > 0.0 ? std::fmod(seconds, duration) : 0.0));
}

void GpsSimulation::tell(const GpsFix& fix)
{
    m_system.gpsData()->set(fix.status, fix.latitude, fix.longitude);
}

} // namespace Torvik::Viewer
