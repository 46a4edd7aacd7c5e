#pragma once

#include "host/app/CommandLine.h"

namespace Torvik::Viewer {

/** The program's window: shows a project, or takes a picture of it and ends. */
namespace ViewerWindow {

/** One line if no window can be shown here, such as for want of a display; otherwise empty. */
QString whatIsMissingForIt();
/** Settings of the process that must stand before the application object. */
void prepareProcess(const Options& options);
/** Runs until the window is closed or the picture is taken; gives the exit status. What the user has changed is stored
 *  when it returns. The scene is left standing: the process is to end without destroying it. */
int run(const Options& options);

} // namespace ViewerWindow

} // namespace Torvik::Viewer
