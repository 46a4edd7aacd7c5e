#pragma once

#include "domain/boundary/CLogger.h"

#include <QString>
#include <QVector>

/** The log's end in tests that look at single lines: adding CapturedLog.cpp to a test puts these functions in the place
 *  of the host's logger. */
namespace CapturedLog {

struct Line {
    int level;
    QString category;
    QString message;
};

/** Lines since the last call, oldest first. */
QVector<Line> take();

} // namespace CapturedLog
