#pragma once

#include "host/drawing/DrawingFile.h"

#include <QString>
#include <QStringList>

namespace Torvik::DXF {

/** How the reading of a file ended: what the boundary has no words for. */
struct DrawingReport {
    QString path;
    DrawingProblem problem = DrawingProblem::None;
    QString message;            ///< for the user, where there is a problem
    QStringList warnings;       ///< for the user, where a plan came of it and not all is well
    QString format;             ///< "DXF 2004"
    double metresPerUnit = 0.0; ///< 0 where the file doesn't tell
    double width = 0.0;         ///< of its longer side, in its units; 0 for a point
    double fromOrigin = 0.0;    ///< how far its middle lies from its origin, in its units
    int entities = 0;           ///< of the model, as the file's text counts them; 0 for a DWG
    int lost = 0;
    int segments = 0;
    int triangles = 0;
    int points = 0;
};

/** The last report on each of the files that were read lately. Any thread. */
class DrawingJournal {
public:
    static void write(const DrawingReport& report);
    /** One with an empty path when there is none. */
    static DrawingReport last(const QString& path);
};

} // namespace Torvik::DXF
