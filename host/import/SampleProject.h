#pragma once

#include <QString>

namespace Torvik::Import {

/** Folder of the sample project below `writableFolder`; it is imported from the source inside the program unless it is
 * there already. Empty, with the reason in `error`, when that fails. */
QString ensureSampleProject(const QString& writableFolder, QString* error);

/** The sample's source: ISYBAU XML, as a resource of the program. */
QString sampleSource();

} // namespace Torvik::Import
