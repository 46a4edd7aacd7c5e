#pragma once

#include "host/vehicle/Course.h"

#include <QPointF>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace Torvik::Viewer {

enum class Command { Window, Screenshot, Dump, Import, Findings, Info, Record, Replay, Help, Version };
enum class StandardView { Top, Perspective, Front };

/** What one call of the program is to do. */
struct Options {
    Command command = Command::Window;
    /** Folder of the project; empty means the sample. */
    QString project;

    /** Import. */
    QString source;
    /** "EPSG:N", or empty. */
    QString crs;
    QString mappingFile;
    QStringList furtherSources;
    /** CSV files, of an import or for a project that is there. */
    QStringList findingsFiles;
    QString reportFile;

    /** Key of an inspection: its own, that of its pipe, or its id. */
    QString inspectKey;
    /** A recording to be played into that inspection. */
    QString replayFile;
    /** Where a vehicle connects to tell of itself; 0 takes a free port. */
    std::optional<quint16> listenPort;
    QString listenAddress {QStringLiteral("127.0.0.1")};
    /** Times as fast as it was, 0 as fast as possible. */
    std::optional<double> speed;
    /** The pipe is drawn and stored as the recording's sensor measures it. */
    bool realTime = false;
    /** Of a recording that is to be made. */
    Vehicle::RunOptions run;

    /** The picture's, the dump's or the recording's file. */
    QString outputFile;
    /** Of the picture or of the window's scene, in pixels. */
    QSize size {1280, 800};
    StandardView view = StandardView::Top;
    /** From the camera to the point it looks at, in metres, through the view's lens of 3 degrees; without it the
     *  distance follows from what is to be seen. */
    std::optional<double> distance;
    /** Key of the object to look at; empty means the whole project. */
    QString goToKey;
    /** The output is a page to print, as PDF, with the picture on it. */
    bool print = false;
    /** The picture shows lists and buttons too. */
    bool wholeWindow = false;
    /** Folder or address of the map's tiles; empty for what the settings say. */
    QString tiles;
    bool noMap = false;
    /** "off", "none", "2d", "3d", a place or a track's file; empty for off. */
    QString gps;
    /** How long the way to the first picture takes, part by part, is told on stderr. */
    bool timing = false;
    /** A plan under the network, for a look; empty without one. */
    QString planFile;
    double planScale = 1;
    /** Easting and northing of its middle; without it the middle of the view. */
    std::optional<QPointF> planPlace;
    /** The user has asked for the whole project, which is also what happens without a wish. */
    bool fit = false;

    bool infoAsJson = false;

    /** "en" or "de"; empty for the one chosen last. */
    QString language;
};

/** Either the options or one line that says what is wrong with the arguments. */
struct ParsedArguments {
    std::optional<Options> options;
    QString error;
};

/** Reads the arguments behind the program's name. Both "--size 800x600" and "--size=800x600" are understood; what
 * follows
 *  "--" is never an option. Touches no files. */
ParsedArguments parseArguments(const QStringList& arguments);

/** The text of --help. */
QString helpText();

} // namespace Torvik::Viewer
