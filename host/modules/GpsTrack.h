#pragma once

#include <QString>
#include <QVector>

namespace Torvik::Viewer {

/** What a receiver said at a time. */
struct GpsFix {
    /** Seconds since the begin of the track. */
    double time = 0.0;
    /** "No Fix", "2D Fix", "3D Fix" or "Estimated Fix". */
    QString status;
    /** Degrees; of no meaning without a fix. */
    double latitude = 0.0;
    double longitude = 0.0;
};

/** A walk with a receiver: a GPX file's points (trkpt, with time and fix; a second apart where they have no times), or
 * a text of lines "time,latitude,longitude[,status]"; without a status it is a 3D fix. A line of words at the top is a
 *  header; empty lines and those that begin with # are passed over. */
struct GpsTrack {
    QVector<GpsFix> fixes;
    /** Of lines that could not be read. */
    QVector<int> malformedLines;

    static GpsTrack parse(const QString& text);

    /** The last fix at or before the time; the first before any. The track must not be empty. */
    const GpsFix& at(double seconds) const;
    double duration() const { return fixes.isEmpty() ? 0.0 : fixes.last().time; }
};

/** What "--gps" names, besides a track's file: "off", "none", "LATITUDE,LONGITUDE" or "LATITUDE,LONGITUDE,2D". "2d" and
 *  "3d" alone stand at a place that is yet to be said. */
struct GpsChoice {
    bool valid = false;
    bool enabled = false;
    /** The fix has no place of its own. */
    bool anywhere = false;
    GpsFix fix;

    static GpsChoice parse(const QString& text);
};

} // namespace Torvik::Viewer
