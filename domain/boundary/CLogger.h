#pragma once

#include <QString>

namespace Torvik::Logging {

enum LogLevel : int { LogError = 1, LogWarning = 2, LogInformation = 3, LogTrace = 4 };

class CLogger {
public:
    /** Writes a line. Any thread; never fails. */
    static void logMessage(LogLevel level, const QString& category, const QString& message);
};

} // namespace Torvik::Logging
