#pragma once

#include "domain/boundary/CLogger.h"

#include <functional>

namespace Torvik::Logging {

struct LogLine {
    LogLevel level = LogInformation;
    QString category;
    QString message;
};

/** Where the lines of CLogger go. Any thread. */
class LogSink {
public:
    using Listener = std::function<void(const LogLine&)>;

    /** Lines above this level are not printed: 0 prints nothing, 4 everything. Begins with the environment's
     *  KX_LOG_LEVEL, or 2 (errors and warnings). Listeners hear every line whatever the threshold. */
    static int threshold();
    static void setThreshold(int level);

    /** From now on the listener hears every line, on the thread that logs it and one line at a time. It may log itself,
     *  which it will not hear. The result is for unsubscribe(). */
    static int subscribe(const Listener& listener);
    /** When this returns on a thread other than the logging one, the listener is not running and will not run again. */
    static void unsubscribe(int subscription);
};

} // namespace Torvik::Logging
