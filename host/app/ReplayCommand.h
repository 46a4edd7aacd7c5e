#pragma once

#include "host/app/CommandLine.h"
#include "host/app/ReplayRun.h"

#include <optional>

/** Replaying a recording, as the command line has it. */
namespace Torvik::Viewer {

/** The recording of the options. Lines that are none are told on stderr; nothing, with a line there too, when it cannot
 *  be played. */
std::optional<ReplayRun::Wishes> readReplay(const Options& options);
/** One line for the user. */
QString noSuchInspection(const Options& options);
/** Prints what is there at the end, and gives the exit status. */
int report(const ReplayRun::Outcome& outcome);

} // namespace Torvik::Viewer
