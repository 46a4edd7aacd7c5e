#pragma once

#include "benchmarks/FigureList.h"
#include "benchmarks/Stage.h"

namespace Torvik::Bench {

/* Each is run in a process of its own, which ends without taking the scene down. */

/** Ten thousand readings of the 3D sensor, one after the other, into a pipe that begins as a stub. */
FigureList measureReadings(Stage::Kind stage);
/** A hundred readings a second for ten minutes of the vehicle's time, which run faster here. The way of a host that
 * hands on what gets further: VehicleFeed. */
FigureList measureStream(Stage::Kind stage);
/** The same by a host that hands every reading on. */
FigureList measureFlood(Stage::Kind stage);
/** Steps of the counter along a pipe with a hundred observations and five laterals. */
FigureList measureCounter(Stage::Kind stage);

} // namespace Torvik::Bench
