#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <algorithm>

namespace Torvik::Bench {

/** The longest time for which the window's thread did not come back to its event loop. */
class Heartbeat : public QObject {
public:
    Heartbeat()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            m_longestMs = std::max(m_longestMs, static_cast<double>(m_since.nsecsElapsed()) / 1e6);
            m_since.restart();
        });
        m_since.start();
        m_timer.start(0);
    }
    double longestMs() const { return m_longestMs; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    double m_longestMs = 0.0;
};

} // namespace Torvik::Bench
