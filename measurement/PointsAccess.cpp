#include "measurement/PointsAccess.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CProjectObject.h"
#include "domain/boundary/GUID.h"
#include "domain/boundary/SqlTask.h"
#include "domain/boundary/WktPoint.h"
#include "measurement/Domain.h"
#include "measurement/InspDomain.h"
#include "measurement/PointsStatements.h"

namespace Torvik::View3d {

namespace {

const QString shapeKey = QStringLiteral("OBJ_Shape_WKT");

/** Runs the statement; the result is the first cell as text. */
QString execute(const QString& statement)
{
    Database::SqlUserTask task(statement, {});
    task.executeNow();
    return task.getStringResult(0, 0);
}

QVector<Database::WktPoint> pointsOf(const QString& wkt)
{
    QVector<Database::WktPoint> points;
    QString prefix;
    Database::ShapeWKTHelper::wktStringToWktPoints(wkt, points, prefix);
    return points;
}

} // namespace

MeasurementPointsAccess::MeasurementPointsAccess(const QString& inspectionId)
    : m_inspectionId(inspectionId)
{
}

void MeasurementPointsAccess::readPoints(const QSharedPointer<Database::CDomainObject>& record)
{
    if (m_inspectionId.isEmpty() || !record)
        return;
    record->updateValue(shapeKey, execute(PointsStatements::readLine(m_inspectionId)));
}

void MeasurementPointsAccess::writePoints(Domain* object)
{
    const QSharedPointer<Database::CDomainObject> record = object ? object->getDomainObject() : nullptr;
    if (!record)
        return;
    const QString wkt = record->readValue(shapeKey).toString();
    if (!wkt.isEmpty())
        writePoints(wkt);
}

void MeasurementPointsAccess::writePoints(const QString& wkt)
{
    if (m_inspectionId.isEmpty())
        return;
    const QVector<Database::WktPoint> points = pointsOf(wkt);
    QString mesPk = countInclinationMeasurement();
    if (mesPk.isEmpty())
        mesPk = createInclinationMeasurement();
    else
        removeMeasurementPoints(mesPk);
    for (int i = 0; i < points.size(); ++i)
        createMeasurementPoint(mesPk, {points[i].x().toFloat(), points[i].y().toFloat(), points[i].z().toFloat()}, i);
    updateSecMesText(wkt, mesPk);
}

QString MeasurementPointsAccess::updateSecMesText(const QString& text, const QString& mesPk)
{
    execute(PointsStatements::writeLine(text, mesPk));
    return {};
}

QString MeasurementPointsAccess::countInclinationMeasurement()
{
    return m_inspectionId.isEmpty() ? QString() : execute(PointsStatements::findMeasurement(m_inspectionId));
}

QString MeasurementPointsAccess::createInclinationMeasurement()
{
    if (m_inspectionId.isEmpty())
        return {};
    const CDomainObjectPointer job = AppState::instance().getActiveJob();
    const QString mesPk = Database::CGuidHelper::createGuid();
    execute(PointsStatements::createMeasurement(mesPk, job ? job->id() : QString(), m_inspectionId,
                                                QDateTime::currentDateTime()));
    return mesPk;
}

void MeasurementPointsAccess::createMeasurementPoint(const QString& mesPk, QVector3D point, int index)
{
    execute(PointsStatements::addPoint(Database::CGuidHelper::createGuid(), mesPk, point, index + 1,
                                       QDateTime::currentDateTime()));
}

void MeasurementPointsAccess::removeMeasurementPoints(const QString& mesPk)
{
    execute(PointsStatements::removePoints(mesPk));
}

InspPointsAccess::InspPointsAccess(const QString& inspectionId)
    : m_inspectionId(inspectionId)
{
}

void InspPointsAccess::readPoints(const QSharedPointer<Database::CDomainObject>& record)
{
    if (m_inspectionId.isEmpty() || !record)
        return;
    record->updateValue(shapeKey, execute(PointsStatements::readShape(m_inspectionId)));
}

QString InspPointsAccess::updateSecIns(const QString& text)
{
    execute(PointsStatements::writeShape(text, m_inspectionId));
    return {};
}

void InspPointsAccess::writePoints(const QString& wkt)
{
    if (!wkt.isEmpty())
        updateSecIns(wkt);
}

void InspPointsAccess::writePoints(InspDomain* object)
{
    if (!object)
        return;
    const CDomainObjectPointer active = AppState::instance().getActiveProject();
    if (!active || active->objectType() != Database::ProjectObjectType)
        return;
    const QString id = object->getDomainObjectId();
    const CDomainObjectPointer record =
        id.isEmpty() ? CDomainObjectPointer() : active.staticCast<Database::CProjectObject>()->lookupObject(id);
    if (record)
        writePoints(record->readValue(shapeKey).toString());
}

} // namespace Torvik::View3d
