#pragma once

#include "host/app/CommandLine.h"

namespace Torvik::Viewer {

/** Commands that need no window. Each gives the exit status of the program; errors go to stderr as one line. They need
 * an application object. */
namespace Commands {

int info(const Options& options);
int import(const Options& options);
int findings(const Options& options);
/** Writes what a vehicle would tell on a run along the stored course of an inspection. */
int record(const Options& options);
/** Needs a QGuiApplication, no screen. */
int dump(const Options& options);
/** Plays a recording into a scene without a window. Needs a QGuiApplication, no screen. */
int replay(const Options& options);

/** The project that the options name; where they name none, the sample, which is made when it is used first. Empty with
 * a line on stderr if that fails. */
QString projectFolder(const Options& options);

/** Writes the line and gives the exit status 1. */
int failure(const QString& message);

} // namespace Commands

} // namespace Torvik::Viewer
