#include "host/vehicle/Replay.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Torvik::Vehicle {

namespace {

constexpr int tickMs = 20;

Replay::Clock machineClock()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

} // namespace

Replay::Replay(QObject* parent, Clock clock)
    : QObject(parent)
    , m_clock(clock ? std::move(clock) : machineClock())
{
    connect(&m_timer, &QTimer::timeout, this, &Replay::tick);
}

void Replay::load(const QVector<Reading>& readings)
{
    pause();
    m_readings = readings;
    m_next = 0;
    emit loaded();
    setPosition(0);
}

double Replay::duration() const
{
    return m_readings.isEmpty() ? 0 : timeOf(m_readings.size() - 1);
}

double Replay::timeOf(int index) const
{
    return m_readings[index].seconds - m_readings.first().seconds;
}

void Replay::play()
{
    if (m_playing || !isLoaded())
        return;
    if (atEnd()) {
        m_next = 0;
        setPosition(0);
    }
    m_lastTick = m_clock();
    setPlaying(true);
    startTimer();
}

void Replay::pause()
{
    m_timer.stop();
    setPlaying(false);
}

void Replay::setSpeed(double factor)
{
    if (!std::isfinite(factor) || factor < 0 || qFuzzyCompare(1 + factor, 1 + m_speed))
        return;
    // What has gone by until now has gone by at the old speed.
    if (m_playing && m_speed > fastest)
        tick();
    m_speed = factor;
    m_lastTick = m_clock();
    if (m_playing)
        startTimer();
    emit speedChanged();
}

void Replay::startTimer()
{
    m_timer.start(m_speed > fastest ? tickMs : 0);
}

void Replay::seek(double position)
{
    if (!isLoaded() || !std::isfinite(position))
        return;
    const double target = std::clamp(position, 0.0, duration());
    m_lastTick = m_clock();
    const auto behind = [this](double seconds, const Reading& reading) {
        return seconds < reading.seconds - m_readings.first().seconds;
    };
    const auto found = std::upper_bound(m_readings.cbegin(), m_readings.cend(), target, behind);
    // The first reading is at 0, so there is always one that holds.
    m_next = int(found - m_readings.cbegin()) - 1;
    setPosition(target);
    handOutNext();
    endIfDone();
}

void Replay::tick()
{
    if (!m_playing)
        return;
    const qint64 now = m_clock();
    const qint64 passed = now - std::exchange(m_lastTick, now);
    if (m_speed > fastest) {
        handOutUpTo(std::min(m_position + double(passed) / 1000 * m_speed, duration()));
    } else {
        setPosition(timeOf(m_next));
        handOutNext();
    }
    endIfDone();
}

void Replay::handOutUpTo(double position)
{
    // Who hears a reading may pause, go elsewhere or load another recording.
    while (m_playing && !atEnd() && timeOf(m_next) <= position) {
        setPosition(std::max(m_position, timeOf(m_next)));
        handOutNext();
    }
    if (m_playing)
        setPosition(position);
}

void Replay::handOutNext()
{
    if (atEnd())
        return;
    const Reading next = m_readings[m_next++];
    emit reading(next);
}

void Replay::endIfDone()
{
    if (!m_playing || !atEnd())
        return;
    pause();
    emit finished();
}

void Replay::setPlaying(bool playing)
{
    if (m_playing == playing)
        return;
    m_playing = playing;
    emit playingChanged();
}

void Replay::setPosition(double position)
{
    if (!(position < m_position) && !(position > m_position))
        return;
    m_position = position;
    emit positionChanged();
}

} // namespace Torvik::Vehicle
