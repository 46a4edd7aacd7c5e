#pragma once

#include "host/drawing/DrawingFile.h"
#include "host/drawing/DrawingLosses.h"

#include <QStringList>

/** What the user is told about a drawing, in the language of the application. Any thread. */
namespace Torvik::DXF {

/** For a file of whose entities fewer than half came through. */
QString explainLosses(const DrawingFile& file, const DrawingLosses& losses, const QString& path);

/** What is wrong with a drawing of which a plan came nevertheless, a sentence or two each. */
QStringList warningsOf(const DrawingFile& file, const DrawingLosses& losses, const QString& path);

/** Without those of which a CAD program shows nothing on its own, and blocks without contents. */
std::map<std::string, int> missedByTheUser(const std::map<std::string, int>& passedOver);

} // namespace Torvik::DXF
