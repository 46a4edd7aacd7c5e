#pragma once

class QQmlEngine;

namespace Torvik::Viewer {

/** Gives an engine everything that the view's QML expects of its host: the view's own types and singletons
 *  (SceneRoot::registerMetaTypes() included), the modules "Torvik.Geo" and "utils", the import path of the module
 *  "view3d", and the context names GlobalNav, Utils3D, belmora, design, formatHelper, language, screenManager, pageStack, units and
 *  font_Regular. Call it once an engine, before loading any QML. Main thread only. */
void registerHostModules(QQmlEngine& engine);

} // namespace Torvik::Viewer
