#pragma once

#include <QString>

namespace Torvik::Bench {

struct StarOptions {
    int pipes = 1;
    int segmentsPerPipe = 1;
    double segmentM = 1.0;
    int observationsPerPipe = 0;
    bool laterals = false; ///< every connection carries one
};

/** A project with pipes that start at one manhole, which they follow, in all directions. Of five observations of a pipe
 *  one is a bend that its course has and one a connection. Gives the reason when it fails. */
QString makeStar(const QString& folder, const StarOptions& options);

/** Id of the manhole in the middle. */
QString starCentre();
/** Id of an inspection. */
QString starInspection(int pipe);

} // namespace Torvik::Bench
