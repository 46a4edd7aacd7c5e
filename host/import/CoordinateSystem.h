#pragma once

#include "host/import/NetworkModel.h"

#include <QString>

#include <memory>

class OGRSpatialReference;
class OGRCoordinateTransformation;

namespace Torvik::Import {

class ImportReport;

/** A coordinate system of a source or of a project. A copyable value. */
class CoordinateSystem {
public:
    /** A plane without a place on earth, in metres: what a source without a coordinate system lies in. */
    CoordinateSystem();
    explicit CoordinateSystem(const OGRSpatialReference& reference);
    /** Takes "EPSG:25832", WKT, PROJ text. None for a text that says no system; the error names the text. */
    static std::optional<CoordinateSystem> fromText(const QString& text, QString* error);
    /** The UTM zone of a place on earth, WGS 84; degrees. */
    static CoordinateSystem utmAt(double longitude, double latitude);

    bool isGeographic() const;
    bool isLocal() const;
    /** Length of one unit of a projected system in metres. */
    double metresPerUnit() const;
    /** The same projection with ordinates in metres; the view takes ordinates and heights for metres alike. */
    CoordinateSystem inMetres() const;
    /** "EPSG:N" where the system has a code, else its name. */
    QString label() const;
    QString wkt() const;
    /** "... lie outside the area of use ..." for a place that the system is not made for; empty when it fits. */
    QString complaintAbout(double x, double y) const;

    const OGRSpatialReference& reference() const { return *m_reference; }

private:
    std::shared_ptr<OGRSpatialReference> m_reference;
};

/** Carries places from one system to another, in the order easting, northing. Heights stay. */
class CoordinateTransform {
public:
    CoordinateTransform(const CoordinateSystem& from, const CoordinateSystem& to);
    ~CoordinateTransform();
    /** False when there is no way; the point is then unchanged. */
    bool apply(Point& point) const;

private:
    std::unique_ptr<OGRCoordinateTransformation> m_transformation;
};

/** Settles the system of a model whose ordinates are in `system` units: turns feet into metres, degrees into the UTM
 * zone of the network's middle, warns of a network outside the system's area. Returns the system for the project. */
CoordinateSystem settleCoordinates(NetworkModel& model, const CoordinateSystem& system, ImportReport& report);

} // namespace Torvik::Import
