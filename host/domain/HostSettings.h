#pragma once

#include <QString>

/** What the host sets of the services that the boundary offers to the view. Main thread only. */
namespace Torvik::Base::HostSettings {

constexpr int unitMetres = 1;
constexpr int unitFeet = 2;

/** The unit of distances that CLocaleSupport tells; a change is announced by GlobalLocaleData. AppState sets it from
 * the project that becomes active. */
void setDistanceUnit(int unit);

/** File of the application's settings, instead of the user's own. Settings set before stay in the former file. */
void setSettingsFile(const QString& path);
/** The folder of that file, where further files of the user's own stand. */
QString settingsFolder();

} // namespace Torvik::Base::HostSettings
