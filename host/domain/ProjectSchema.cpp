#include "host/domain/ProjectSchema.h"

namespace Torvik::Database::Schema {

namespace {

/** What nodes and pipes have in common: address, build, state. */
const QString buildColumns = QStringLiteral(
    "OBJ_Street TEXT, OBJ_District TEXT, OBJ_City TEXT, OBJ_Country TEXT, OBJ_Year INTEGER, OBJ_Material TEXT,"
    " OBJ_ProfileShape TEXT, OBJ_Size1 REAL, OBJ_Size2 REAL, OBJ_Offset REAL, OBJ_SewerType TEXT, OBJ_Status TEXT,"
    " OBJ_Owner TEXT, OBJ_Remarks TEXT, OBJ_Shape_WKT TEXT, OBJ_TimeStamp TEXT, OBJ_Attributes TEXT");

QStringList tableStatements()
{
    return {
        QStringLiteral("CREATE TABLE PROJECT (PRJ_PK TEXT PRIMARY KEY NOT NULL, PRJ_Name TEXT, PRJ_ProjectionWKT TEXT,"
                       " PRJ_Is3d INTEGER NOT NULL DEFAULT 1, PRJ_DistanceUnit INTEGER NOT NULL DEFAULT 1,"
                       " PRJ_Client TEXT, PRJ_Remarks TEXT, PRJ_CreatedAt TEXT, PRJ_TimeStamp TEXT,"
                       " PRJ_Attributes TEXT)"),
        QStringLiteral("CREATE TABLE JOB (JOB_PK TEXT PRIMARY KEY NOT NULL, JOB_Name TEXT, JOB_Date TEXT,"
                       " JOB_Operator TEXT, JOB_Remarks TEXT, JOB_TimeStamp TEXT, JOB_Attributes TEXT)"),
        QStringLiteral("CREATE TABLE NODE (OBJ_PK TEXT PRIMARY KEY NOT NULL, OBJ_Key TEXT, OBJ_Type TEXT,"
                       " OBJ_DepthToInvert REAL, OBJ_CoverLevel REAL, OBJ_InvertLevel REAL, %1)")
            .arg(buildColumns),
        QStringLiteral("CREATE TABLE SECTION (OBJ_PK TEXT PRIMARY KEY NOT NULL,"
                       " OBJ_Kind INTEGER NOT NULL DEFAULT 3 CHECK (OBJ_Kind IN (3, 4)), OBJ_Key TEXT, OBJ_Type TEXT,"
                       " OBJ_Section_REF TEXT, OBJ_FromNode_REF TEXT, OBJ_ToNode_REF TEXT, OBJ_FromNodeDepth REAL,"
                       " OBJ_ToNodeDepth REAL, OBJ_FromNodeLevel REAL, OBJ_ToNodeLevel REAL, OBJ_Length REAL,"
                       " OBJ_FlowDirection INTEGER, %1)")
            .arg(buildColumns),
        QStringLiteral("CREATE TABLE SECINSP (INS_PK TEXT PRIMARY KEY NOT NULL,"
                       " INS_Section_FK TEXT NOT NULL REFERENCES SECTION(OBJ_PK) ON DELETE CASCADE, INS_Key TEXT,"
                       " INS_InspectionDir INTEGER, INS_StartNode_REF TEXT, INS_EndNode_REF TEXT, INS_Job_REF TEXT,"
                       " INS_Date TEXT, INS_Time TEXT, INS_Operator TEXT, INS_Length REAL, INS_Method TEXT,"
                       " INS_Standard TEXT, INS_Purpose TEXT, INS_Weather TEXT, INS_Remarks TEXT, INS_Shape_WKT TEXT,"
                       " INS_TimeStamp TEXT, INS_Attributes TEXT)"),
        QStringLiteral("CREATE TABLE SECOBS (OBS_PK TEXT PRIMARY KEY NOT NULL,"
                       " OBS_Inspection_FK TEXT NOT NULL REFERENCES SECINSP(INS_PK) ON DELETE CASCADE,"
                       " OBS_Code TEXT, OBS_Ch1 TEXT, OBS_Ch2 TEXT, OBS_Q1_Value NUMERIC, OBS_Q2_Value NUMERIC,"
                       " OBS_Distance REAL, OBS_DistanceEnd REAL, OBS_Continuous TEXT, OBS_ClockPos1 NUMERIC,"
                       " OBS_ClockPos2 NUMERIC, OBS_BendClkH NUMERIC, OBS_JointAngle NUMERIC, OBS_AtJoint INTEGER,"
                       " OBS_LateralSection_REF TEXT, OBS_Photo TEXT, OBS_Video TEXT, OBS_VideoTime TEXT,"
                       " OBS_Remarks TEXT, OBS_Shape_WKT TEXT, OBS_TimeStamp TEXT, OBS_Attributes TEXT)"),
        // A job's id may be empty and a point's values come as numbers or as texts, which stay what they are.
        QStringLiteral("CREATE TABLE SECMES (MES_PK TEXT PRIMARY KEY NOT NULL, MES_JOB_FK TEXT,"
                       " MES_Inspection_FK TEXT NOT NULL REFERENCES SECINSP(INS_PK) ON DELETE CASCADE, MES_Type TEXT,"
                       " MES_Method TEXT, MES_Date TEXT, MES_TxtValues TEXT)"),
        QStringLiteral("CREATE TABLE SECMP (MP_PK TEXT PRIMARY KEY NOT NULL,"
                       " MP_Measurement_FK TEXT NOT NULL REFERENCES SECMES(MES_PK) ON DELETE CASCADE, MP_X_Value,"
                       " MP_Y_Value, MP_Z_Value, MP_SortOrder INTEGER, MP_TimeStamp TEXT)"),
        QStringLiteral("CREATE TABLE CHANGELOG (CHG_PK INTEGER PRIMARY KEY AUTOINCREMENT, CHG_Table TEXT NOT NULL,"
                       " CHG_Object TEXT NOT NULL, CHG_Kind TEXT NOT NULL)"),
        QStringLiteral("CREATE INDEX SECTION_FROM ON SECTION(OBJ_FromNode_REF)"),
        QStringLiteral("CREATE INDEX SECTION_TO ON SECTION(OBJ_ToNode_REF)"),
        QStringLiteral("CREATE INDEX SECINSP_SECTION ON SECINSP(INS_Section_FK)"),
        QStringLiteral("CREATE INDEX SECOBS_INSPECTION ON SECOBS(OBS_Inspection_FK)"),
        QStringLiteral("CREATE INDEX SECMES_INSPECTION ON SECMES(MES_Inspection_FK)"),
        QStringLiteral("CREATE INDEX SECMP_MEASUREMENT ON SECMP(MP_Measurement_FK, MP_SortOrder)"),
    };
}

struct Watched {
    QString table;
    QString key;
};

QVector<Watched> watchedTables()
{
    return {{QStringLiteral("PROJECT"), QStringLiteral("PRJ_PK")},
            {QStringLiteral("NODE"), QStringLiteral("OBJ_PK")},
            {QStringLiteral("SECTION"), QStringLiteral("OBJ_PK")},
            {QStringLiteral("SECINSP"), QStringLiteral("INS_PK")},
            {QStringLiteral("SECOBS"), QStringLiteral("OBS_PK")}};
}

} // namespace

const Table* table(ObjectType type)
{
    static const QString section = QStringLiteral("SECTION");
    static const QString objKey = QStringLiteral("OBJ_PK");
    static const QString objTime = QStringLiteral("OBJ_TimeStamp");
    static const QVector<Table> tables {
        {ProjectObjectType, QStringLiteral("PROJECT"), QStringLiteral("PRJ_PK"), {}, QStringLiteral("PRJ_TimeStamp")},
        {JobObjectType, QStringLiteral("JOB"), QStringLiteral("JOB_PK"), {}, QStringLiteral("JOB_TimeStamp")},
        {SectionObjectType, section, objKey, {}, objTime},
        {LateralObjectType, section, objKey, {}, objTime},
        {PipeInspectionObjectType, QStringLiteral("SECINSP"), QStringLiteral("INS_PK"),
         QStringLiteral("INS_Section_FK"), QStringLiteral("INS_TimeStamp")},
        {PipeObservationObjectType, QStringLiteral("SECOBS"), QStringLiteral("OBS_PK"),
         QStringLiteral("OBS_Inspection_FK"), QStringLiteral("OBS_TimeStamp")},
        {NodeObjectType, QStringLiteral("NODE"), objKey, {}, objTime},
    };
    for (const Table& entry : tables) {
        if (entry.type == type) {
            return &entry;
        }
    }
    return nullptr;
}

QStringList tableNames()
{
    return {QStringLiteral("PROJECT"), QStringLiteral("JOB"),     QStringLiteral("NODE"),
            QStringLiteral("SECTION"), QStringLiteral("SECINSP"), QStringLiteral("SECOBS"),
            QStringLiteral("SECMES"),  QStringLiteral("SECMP"),   QStringLiteral("CHANGELOG")};
}

QStringList triggerStatements()
{
    QStringList result;
    const QString pattern = QStringLiteral("CREATE TRIGGER %1_%2 AFTER %2 ON %1 BEGIN INSERT INTO CHANGELOG(CHG_Table,"
                                           " CHG_Object, CHG_Kind) VALUES ('%1', %3.%4, '%5'); END");
    for (const Watched& watched : watchedTables()) {
        result << pattern.arg(watched.table, QStringLiteral("INSERT"), QStringLiteral("NEW"), watched.key,
                              QString(QLatin1Char(changeInserted)))
               << pattern.arg(watched.table, QStringLiteral("UPDATE"), QStringLiteral("NEW"), watched.key,
                              QString(QLatin1Char(changeUpdated)))
               << pattern.arg(watched.table, QStringLiteral("DELETE"), QStringLiteral("OLD"), watched.key,
                              QString(QLatin1Char(changeDeleted)));
    }
    return result;
}

QStringList dropTriggerStatements()
{
    QStringList result;
    for (const Watched& watched : watchedTables()) {
        for (const char* event : {"INSERT", "UPDATE", "DELETE"}) {
            result << QStringLiteral("DROP TRIGGER IF EXISTS %1_%2").arg(watched.table, QLatin1String(event));
        }
    }
    return result;
}

QStringList statements()
{
    return tableStatements() + triggerStatements();
}

} // namespace Torvik::Database::Schema
