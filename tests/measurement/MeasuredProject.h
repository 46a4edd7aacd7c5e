#pragma once

#include "common/TestProject.h"
#include "domain/boundary/SqlTask.h"
#include "measurement/MeasurementPointsHandler.h"

/** A point that tells its number. */
inline QVector3D measured(int number)
{
    return {float(number), 0, 0};
}

/** The stored line of such points. */
inline QString lineOf(const QVector<int>& numbers)
{
    QStringList points;
    for (int number : numbers)
        points << QString("%1 0 0 160").arg(number);
    return QString("LINESTRING ZM(%1)").arg(points.join(", "));
}

/** Whether a stored time lies between `from` and now, as precisely as its format tells. */
inline bool isBetween(const QDateTime& from, const QString& time, const QString& format)
{
    const auto stored = QDateTime::fromString(time, format);
    const auto rounded = [&](const QDateTime& moment) {
        return QDateTime::fromString(moment.toString(format), format);
    };
    return stored.isValid() && rounded(from) <= stored && stored <= rounded(QDateTime::currentDateTime());
}

/** An active project with inspections to measure, and what the database holds of their measurements. */
class MeasuredProject : public Kx::Test::TestProject {
public:
    MeasuredProject() { activate(); }

    QString newInspection() { return addInspection(addSection("S", {}, {}))->id(); }

    /** An inspection whose measurement is open and empty; the handler holds no points any more. */
    QString opened()
    {
        auto* const handler = Torvik::View3d::MeasurementPointsHandler::instance();
        const QString id = newInspection();
        handler->createNewSecMes(id);
        handler->waitUntilStored();
        return id;
    }
    QString openedWith(int points)
    {
        auto* const handler = Torvik::View3d::MeasurementPointsHandler::instance();
        const QString id = opened();
        for (int i = 0; i < points; ++i)
            handler->addRowToSECMP(id, measured(i), i, false);
        handler->waitUntilStored();
        return id;
    }

    /** Puts a measurement into the database, as an earlier run would have left it. */
    static void putMeasurement(const QString& key, const QString& inspectionId)
    {
        execute(QString("INSERT INTO SECMES(MES_PK, MES_Inspection_FK, MES_Type, MES_Method) VALUES ('%1', '%2', "
                        "'3DGS', 'forward')")
                    .arg(key, inspectionId));
    }
    static void putPoint(const QString& key, int sortOrder, const QString& values)
    {
        execute(QString("INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_SortOrder, MP_X_Value, MP_Y_Value, MP_Z_Value) "
                        "VALUES ('%1-%2', '%1', %2, %3)")
                    .arg(key)
                    .arg(sortOrder)
                    .arg(values));
    }
    static void execute(const QString& statement)
    {
        Torvik::Database::SqlUserTask task(statement, {});
        task.executeNow();
    }

    int measurements(const QString& inspectionId) const { return ofMeasurement(inspectionId, "count(*)").toInt(); }
    QString key(const QString& inspectionId) const { return ofMeasurement(inspectionId, "MES_PK").toString(); }
    QString line(const QString& inspectionId) const { return ofMeasurement(inspectionId, "MES_TxtValues").toString(); }
    QVariant ofMeasurement(const QString& inspectionId, const QString& column) const
    {
        return stored("SECMES", "MES_Inspection_FK", inspectionId, column);
    }

    /** "number:x y z" of each point, by number and then by the order in which they were written. */
    QString points(const QString& key) const
    {
        return stored("(SELECT * FROM SECMP ORDER BY MP_SortOrder, rowid)", "MP_Measurement_FK", key,
                      "group_concat(MP_SortOrder || ':' || MP_X_Value || ' ' || MP_Y_Value || ' ' || MP_Z_Value, ', ')")
            .toString();
    }
    int pointCount(const QString& key) const { return stored("SECMP", "MP_Measurement_FK", key, "count(*)").toInt(); }
};
