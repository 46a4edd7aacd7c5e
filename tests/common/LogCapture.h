#pragma once

#include "host/domain/LogSink.h"

#include <QMutex>
#include <QMutexLocker>
#include <QVector>

namespace Kx::Test {

/** Hears every line that is logged while it lives. */
class LogCapture {
public:
    LogCapture()
        : m_subscription(Torvik::Logging::LogSink::subscribe([this](const Torvik::Logging::LogLine& line) {
            QMutexLocker lock(&m_mutex);
            m_lines.append(line);
        }))
    {
    }
    ~LogCapture() { Torvik::Logging::LogSink::unsubscribe(m_subscription); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QVector<Torvik::Logging::LogLine> lines() const
    {
        QMutexLocker lock(&m_mutex);
        return m_lines;
    }

    /** Lines of this level and category with exactly this message. */
    int count(int level, const QString& category, const QString& message) const
    {
        int found = 0;
        for (const auto& line : lines()) {
            found += line.level == level && line.category == category && line.message == message ? 1 : 0;
        }
        return found;
    }

    void clear()
    {
        QMutexLocker lock(&m_mutex);
        m_lines.clear();
    }

private:
    mutable QMutex m_mutex;
    QVector<Torvik::Logging::LogLine> m_lines;
    int m_subscription;
};

} // namespace Kx::Test
