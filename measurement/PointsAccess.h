#pragma once

#include "domain/boundary/CDomainObject.h"
#include "scene/KxView3dExport.h"

#include <QString>
#include <QVector3D>

namespace Torvik::View3d {

class Domain;
class InspDomain;

/** Moves the shape of a record into the measurement of an inspection, all of it at once, and back into the record.
 *  For the host. Statements run on the calling thread, which waits for them; a failed one is an empty result. The
 *  record's value is "OBJ_Shape_WKT"; it is changed in memory only. Main thread only. */
class KXVIEW3D_EXPORT MeasurementPointsAccess {
public:
    explicit MeasurementPointsAccess(const QString& inspectionId);

    /** The measured line, or an empty text where there is no measurement, becomes the record's value. */
    void readPoints(const QSharedPointer<Database::CDomainObject>& record);
    /** Writes the shape of the object's record. */
    void writePoints(Domain* object);
    /** The measurement has the points of this shape from now on, and no others; it is made if there is none. */
    void writePoints(const QString& wkt);
    /** Stores the measured line. The result is empty. */
    QString updateSecMesText(const QString& text, const QString& mesPk);
    /** Key of the inspection's measurement; empty if there is none. */
    QString countInclinationMeasurement();
    /** Makes a measurement within the active job. The result is its key. */
    QString createInclinationMeasurement();
    /** @param index  the point's place in the line, from 0 */
    void createMeasurementPoint(const QString& mesPk, QVector3D point, int index);
    void removeMeasurementPoints(const QString& mesPk);

private:
    QString m_inspectionId;
};

/** The same between a record and the inspection's own shape. */
class KXVIEW3D_EXPORT InspPointsAccess {
public:
    explicit InspPointsAccess(const QString& inspectionId);

    /** The inspection's shape, or an empty text, becomes the record's value. */
    void readPoints(const QSharedPointer<Database::CDomainObject>& record);
    /** Stores the inspection's shape. The result is empty. */
    QString updateSecIns(const QString& text);
    /** An empty text is not stored. */
    void writePoints(const QString& wkt);
    /** Stores the shape of the object's record, as the active project holds it. */
    void writePoints(InspDomain* object);

private:
    QString m_inspectionId;
};

} // namespace Torvik::View3d
