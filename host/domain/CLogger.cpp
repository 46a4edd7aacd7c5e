#include "domain/boundary/CLogger.h"

#include "host/domain/LogSink.h"

#include <QDateTime>
#include <QMap>
#include <QMutex>
#include <QMutexLocker>

#include <atomic>
#include <cstdio>

namespace Torvik::Logging {

namespace {

constexpr int defaultThreshold = LogWarning;

int thresholdFromEnvironment()
{
    bool ok = false;
    const int level = qEnvironmentVariableIntValue("KX_LOG_LEVEL", &ok);
    return ok ? level : defaultThreshold;
}

struct SinkState {
    std::atomic<int> threshold {thresholdFromEnvironment()};
    QMutex mutex {QMutex::Recursive};
    QMap<int, LogSink::Listener> listeners;
    int lastSubscription = 0;
    bool notifying = false;
};

/** Never destroyed: objects that die at the end of the process log too. */
SinkState& sink()
{
    static auto* const state = new SinkState;
    return *state;
}

void print(const LogLine& line)
{
    static const char* const names[] = {"", "error", "warning", "info", "trace"};
    const char* const name = line.level >= LogError && line.level <= LogTrace ? names[line.level] : "log";
    const QByteArray text = QStringLiteral("%1 %2 [%3] %4\n")
                                .arg(QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss.zzz")),
                                     QLatin1String(name), line.category, line.message)
                                .toLocal8Bit();
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stderr);
}

} // namespace

void CLogger::logMessage(LogLevel level, const QString& category, const QString& message)
{
    SinkState& state = sink();
    const LogLine line {level, category, message};
    if (level <= state.threshold) {
        print(line);
    }
    QMutexLocker lock(&state.mutex);
    if (state.notifying) {
        return;
    }
    state.notifying = true;
    const auto listeners = state.listeners;
    for (const LogSink::Listener& listener : listeners) {
        listener(line);
    }
    state.notifying = false;
}

int LogSink::threshold()
{
    return sink().threshold;
}

void LogSink::setThreshold(int level)
{
    sink().threshold = level;
}

int LogSink::subscribe(const Listener& listener)
{
    QMutexLocker lock(&sink().mutex);
    sink().listeners.insert(++sink().lastSubscription, listener);
    return sink().lastSubscription;
}

void LogSink::unsubscribe(int subscription)
{
    QMutexLocker lock(&sink().mutex);
    sink().listeners.remove(subscription);
}

} // namespace Torvik::Logging
