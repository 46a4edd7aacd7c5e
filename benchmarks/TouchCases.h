#pragma once

#include "benchmarks/FigureList.h"
#include "benchmarks/Stage.h"

namespace Torvik::Bench {

/* Each is run in a process of its own, which ends without taking the scene down. */

/** A thousand observations, one after the other, into an open project of a thousand pipes. */
FigureList measureInserting(Stage::Kind stage);
/** A new bend in the middle of a chain of segments, against building the chain anew. */
FigureList measureBending(Stage::Kind stage);
/** A manhole with eight pipes and forty observations under the finger. */
FigureList measureDragging(Stage::Kind stage);
/** A thousand pickable objects that nobody touches, and a press on one of them. Only with a window. */
FigureList measurePicking(Stage::Kind stage);

} // namespace Torvik::Bench
