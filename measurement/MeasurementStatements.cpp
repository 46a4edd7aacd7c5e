#include "measurement/MeasurementStatements.h"

#include "measurement/MeasuredLine.h"

namespace Torvik::View3d::MeasurementStatements {

QString findMeasurement(const QString& inspectionId)
{
    return QStringLiteral(R"(SELECT MES_PK from SECMES WHERE MES_Inspection_FK="%1" AND MES_METHOD="forward")")
        .arg(inspectionId);
}

QString createMeasurement(const QString& key, const QString& inspectionId, const QDateTime& at)
{
    return QStringLiteral("INSERT INTO SECMES(MES_PK, MES_Inspection_FK, MES_Type, MES_Method, MES_Date) VALUES "
                          R"sql(("%1", "%2", "%3", "forward", "%4"))sql")
        .arg(key, inspectionId, QStringLiteral("3DGS"), at.toString(QStringLiteral("yyyy_MM_dd_hh_mm_ss")));
}

QString readPoints(const QString& key)
{
    return QStringLiteral("SELECT MP_X_Value, MP_Y_Value, MP_Z_Value, MP_SortOrder from SECMP WHERE "
                          R"(MP_Measurement_FK="%1")")
        .arg(key);
}

QString makeRoom(int sortOrder, const QString& key)
{
    return QStringLiteral("UPDATE SECMP SET MP_SortOrder = MP_SortOrder +1 WHERE MP_SortOrder>=%1 AND "
                          R"(MP_Measurement_FK="%2")")
        .arg(QString::number(sortOrder), key);
}

QString addPoint(const QString& pointKey, const QString& key, const QVector3D& point, int sortOrder,
                 const QDateTime& at)
{
    return QStringLiteral("INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_X_Value, MP_Y_Value, MP_Z_Value, "
                          R"sql(MP_SortOrder, MP_TimeStamp) VALUES ("%1", "%2", %3, %4, %5, %6, "%7"))sql")
        .arg(pointKey, key, ordinateText(point.x()), ordinateText(point.y()), ordinateText(point.z()),
             QString::number(sortOrder), at.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")));
}

QString storeLine(const QString& line, const QString& key)
{
    QString statement;
    appendStoreLine(statement, line, key);
    return statement;
}

void appendStoreLine(QString& statement, const QString& line, const QString& key)
{
    statement += QLatin1String(R"sql(UPDATE SECMES SET MES_TxtValues = "LINESTRING ZM()sql");
    statement += line;
    statement += QLatin1String(R"sql()" WHERE MES_PK = ")sql");
    statement += key;
    statement += QLatin1Char('"');
}

QString deletePoints(int first, int last, const QString& key)
{
    return QStringLiteral(R"(DELETE FROM SECMP WHERE MP_SortOrder>=%1 AND MP_SortOrder<%2 AND MP_Measurement_FK="%3")")
        .arg(QString::number(first), QString::number(last), key);
}

QString closeGap(int count, int last, const QString& key)
{
    return QStringLiteral("UPDATE SECMP SET MP_SortOrder = MP_SortOrder - %1 WHERE MP_SortOrder>=%2 AND "
                          R"(MP_Measurement_FK="%3")")
        .arg(QString::number(count), QString::number(last), key);
}

} // namespace Torvik::View3d::MeasurementStatements
