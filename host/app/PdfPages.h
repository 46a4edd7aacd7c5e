#pragma once

#include <QString>

namespace Torvik::Viewer {

/** Asks poppler's pdfinfo and waits for it, some seconds at most. Any thread.
 *  @returns 0 where it cannot be told */
int pagesOfPdf(const QString& file);

} // namespace Torvik::Viewer
