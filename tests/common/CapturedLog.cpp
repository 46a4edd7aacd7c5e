#include "common/CapturedLog.h"

#include <QMutex>

namespace {

QMutex mutex;
QVector<CapturedLog::Line> lines;

} // namespace

void Torvik::Logging::CLogger::logMessage(LogLevel level, const QString& category, const QString& message)
{
    const QMutexLocker lock(&mutex);
    lines.append({level, category, message});
}

QVector<CapturedLog::Line> CapturedLog::take()
{
    const QMutexLocker lock(&mutex);
    return std::exchange(lines, {});
}
