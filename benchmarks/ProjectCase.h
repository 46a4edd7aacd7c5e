#pragma once

#include "benchmarks/Stage.h"

#include <QJsonObject>
#include <QString>

namespace Torvik::Bench {

/** What is measured of one project, in one process: reading, opening, memory, drawing, closing, and the same tree of
 *  entities built and deleted by Qt 3D alone. Times in milliseconds of the
 *  processor, and on the clock under the name with "Wall". */
struct CaseOptions {
    Stage::Kind stage = Stage::Window;
    int pipes = 100;
    QString folder;      ///< of the project, which stands
    int repeats = 1;     ///< openings and closings; the least counts
    bool atOnce = true;  ///< also delete the bare entities all in one turn of the event loop
    bool closing = true; ///< false: only open
};

QJsonObject measureProject(const CaseOptions& options);

} // namespace Torvik::Bench
