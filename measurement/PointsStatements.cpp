#include "measurement/PointsStatements.h"

#include "measurement/MeasuredLine.h"

namespace Torvik::View3d::PointsStatements {

QString readLine(const QString& inspectionId)
{
    return QStringLiteral(R"(SELECT MES_TxtValues FROM SECMES WHERE MES_Inspection_FK = "%1" )").arg(inspectionId);
}

QString writeLine(const QString& text, const QString& key)
{
    return QStringLiteral(R"(UPDATE SECMES SET MES_TxtValues = "%1" WHERE MES_PK = "%2" )").arg(text, key);
}

QString findMeasurement(const QString& inspectionId)
{
    return QStringLiteral(R"(SELECT MES_PK FROM SECMES WHERE MES_Inspection_FK="%1" LIMIT 1)").arg(inspectionId);
}

QString createMeasurement(const QString& key, const QString& jobId, const QString& inspectionId, const QDateTime& at)
{
    return QStringLiteral("INSERT INTO SECMES(MES_PK, MES_JOB_FK, MES_Inspection_FK, MES_Type, MES_Method, MES_Date) "
                          R"sql(VALUES ("%1", "%2", "%3", "forward", "%4", "%5"))sql")
        .arg(key, jobId, inspectionId, QStringLiteral("3DGS"), at.toString(QStringLiteral("yyyy_MM_dd_hh_mm_ss")));
}

QString addPoint(const QString& pointKey, const QString& key, const QVector3D& point, int sortOrder,
                 const QDateTime& at)
{
    return QStringLiteral("INSERT INTO SECMP(MP_PK, MP_Measurement_FK, MP_X_Value,MP_Y_Value, MP_Z_Value, "
                          R"sql(MP_SortOrder, MP_TimeStamp) VALUES ("%1", "%2", %3,"%4", %5, %6, "%7"))sql")
        .arg(pointKey, key, ordinateText(point.x()), ordinateText(point.y()), ordinateText(point.z()),
             QString::number(sortOrder), at.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")));
}

QString removePoints(const QString& key)
{
    return QStringLiteral(R"(DELETE FROM SECMP WHERE MP_Measurement_FK="%1")").arg(key);
}

QString readShape(const QString& inspectionId)
{
    return QStringLiteral(R"(SELECT INS_Shape_WKT FROM SECINSP WHERE INS_PK = "%1" )").arg(inspectionId);
}

QString writeShape(const QString& text, const QString& inspectionId)
{
    return QStringLiteral(R"(UPDATE SECINSP SET INS_Shape_WKT = "%1" WHERE INS_PK = "%2" )").arg(text, inspectionId);
}

} // namespace Torvik::View3d::PointsStatements
