#pragma once

#include "domain/boundary/GeoCoord.h"
#include "domain/boundary/Vector3D.h"
#include "domain/boundary/WktPoint.h"
#include "geo/EpsgAreaDataset.h"
#include "scene/KxView3dExport.h"

#include <QObject>
#include <QString>
#include <QVector3D>
#include <QVector>

namespace Torvik::View3d {

/** Ties the scene's float coordinates to the earth. One for the process; QML has it as `GeoProjector`.
 *
 *  Three frames. Projected: easting E, northing N, height H, metres of the project's coordinate system, as in stored
 *  points. Cartesian: (-E, H, N), so x grows westward, y upward, z northward. Scene: cartesian * scale() - origin(),
 *  the same axes in metres on the ground. The scale is 1 except in a Pseudo-Mercator system, whose metres are
 * stretched.
 *
 *  Conversions between the scene and stored points cost nothing; those to and from latitude and longitude build GDAL
 *  objects at every call and do not belong into a frame's work. Main thread only. */
class KXVIEW3D_EXPORT GdalGeoProjector : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool initialized READ initialized NOTIFY initializedFromMap)
    Q_PROPERTY(double latit READ latit CONSTANT)
    Q_PROPERTY(double longit READ longit CONSTANT)

public:
    /** The tie of the scene to the earth. */
    class ProjectorState {
    public:
        ProjectorState() = default;
        ProjectorState(const Vector3D<double>& origin, double scale);

        /** Cartesian * scale of the scene point (0,0,0). */
        const Vector3D<double>& origin() const { return m_origin; }
        double scale() const { return m_scale; }
        bool valid() const { return m_valid; }

    private:
        Vector3D<double> m_origin;
        double m_scale = 1.0;
        bool m_valid = false;
    };

    static GdalGeoProjector* instance();

    Q_INVOKABLE bool initialized() const;
    /** Place of the scene point (0,0,0), in degrees. */
    double latit() const;
    double longit() const;
    /** Empty while there is no tie. */
    QString projectionString() const;
    Vector3D<double> origin() const;
    double scale() const;
    Q_INVOKABLE double getOriginY() const;
    bool isPseudoMercator() const;

    /** Ties the scene to a stored point, which becomes (0,0,0), whatever the tie before. A `projection` that is empty
     * or "WKT:UNKNOWN" becomes the default Pseudo-Mercator system, also for the caller. */
    void init(const Database::WktPoint& point, QString& projection);
    /** Ties the scene to the map's centre (degrees, metres), unless it is tied already. */
    Q_INVOKABLE void initFromMap(double latit, double longit, double alitid);
    /** Carries the scene along with a map that was dragged under it: what stood over `start` stands over `end`
     *  (degrees). Scene coordinates stay. */
    Q_INVOKABLE void updateByMapTranslation(double startLatit, double startLongit, double endLatit, double endLongit);
    /** Unties the scene; the coordinate system stays. */
    Q_INVOKABLE void deinit();
    /** Any text that GDAL takes as a definition; another one changes nothing. */
    void setProjectionSystem(const QString& text);

    /** WKT of a scene point, with the flags as its m value. */
    Q_INVOKABLE QString wktStringForWorldPos(QVector3D pos, int transformFlags = 0) const;
    Q_INVOKABLE QVector3D worldPosForWktString(const QString& wkt) const;
    /** Appends the stored form of the scene points, with 0 as the m value. */
    void convertToWktPoints(const QVector<QVector3D>& points, QVector<Database::WktPoint>& out) const;

    /** Cartesian form (not scaled) of a place in radians; the altitude is passed on. Throws std::runtime_error. */
    Vector3D<double> convGpsTo3d(const GeoCoord& gps) const;
    /** Place, in radians, of a cartesian position times the scale; its y is the altitude. Throws std::runtime_error. */
    GeoCoord conv3dToGps(const Vector3D<double>& position) const;
    /** convGpsTo3d for code that handles no exceptions: (0,0,0) on failure. Longitude first, radians. */
    Vector3D<double> cartesianCoords(double lon, double lat, double alt) const;
    /** conv3dToGps for code that handles no exceptions: (0,0,0) on failure. */
    GeoCoord geoCoords(const Vector3D<double>& position) const;
    Vector3D<double> descale(const Vector3D<double>& position) const;

    /** Scene point at altitude 0 of a place in degrees. */
    Q_INVOKABLE QVector3D sceneCoordsFromGeoCoords(double latit, double longit) const;
    /** Longitude and latitude in degrees, and the altitude, of the ground under a scene point, seen along `rayDir`. */
    Q_INVOKABLE QVector3D geoCoordsDegFromPointOnGround(double x, double y, double z,
                                                        QVector3D rayDir = QVector3D(0.0F, 1.0F, 0.0F)) const;
    /** Degrees, of a scene point. */
    double getLatitude(const QVector3D& pos) const;
    double getLongitude(const QVector3D& pos) const;

    /** True within the limits, degrees. */
    bool validateCoordinates(double lon, double lat, const EpsgBounds& bounds) const;
    /** Tells by a signal whether a place, in degrees here, lies in the area of the coordinate system. Pseudo-Mercator
     * and a system of unknown code have no limits. */
    void validateCoordinatesAndSignal(const GeoCoord& coord);

signals:
    void initializedFromMap();
    void geoLocationChanged();
    void mapResetRequest();
    void sceneResetRequest();
    void locationWithinProjectionRegion(bool inRegion);

protected:
    explicit GdalGeoProjector(QObject* parent = nullptr);

private:
    void useSystem(const QString& wkt);

    ProjectorState m_state;
    QString m_projection;
    int m_epsgCode = -1;
    const bool m_mercatorScaling = true;
    EpsgAreaDataset m_epsgAreas;
};

} // namespace Torvik::View3d
