#pragma once

#include "domain/boundary/CProjectObject.h"

#include <QSharedPointer>

namespace Torvik::Viewer {

/** The inspection that a user means: the one with this id or key, else the latest one of the pipe with this key, by
 * date and time, of several equal ones the last. Null when there is none. */
QSharedPointer<Database::CPipeInspectionObject> inspectionOfKey(const Database::CProjectObject& project,
                                                                const QString& key);

} // namespace Torvik::Viewer
