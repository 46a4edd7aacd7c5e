#pragma once

#include "host/app/SceneSnapshot.h"

namespace Torvik::Viewer {

/** Reads the live scene. Main thread only. */
namespace SceneReader {

/** All of it; empty before there is a scene. */
SceneSnapshot snapshot();
/** What is to be seen of one node, pipe (all of its inspections) or inspection, by its id; empty when the scene has no
 *  such object. */
Bounds boundsOfObject(const QString& id);

} // namespace SceneReader

} // namespace Torvik::Viewer
