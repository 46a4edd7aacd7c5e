#include "MeasuredProject.h"

#include "common/LogCapture.h"
#include "measurement/Domain.h"
#include "measurement/InspDomain.h"
#include "measurement/PointsAccess.h"

using namespace Torvik::View3d;

namespace {

const QString shapeOfTwo = QStringLiteral("LINESTRING ZM(1 2 3 160,4.5 5 6 0)");

class RecordOwner : public Domain {
public:
    explicit RecordOwner(const CDomainObjectPointer& record)
        : m_record(record)
    {
    }
    QString getDomainObjectId() const override { return m_record ? m_record->id() : QString(); }
    CDomainObjectPointer getDomainObject() const override { return m_record; }

private:
    CDomainObjectPointer m_record;
};

class ShapeOwner : public InspDomain {
public:
    explicit ShapeOwner(const QString& id)
        : m_id(id)
    {
    }
    QVector<QVector<QVector3D>> getShapePoints() const override { return {}; }
    QString getInspectionObjectId() const override { return {}; }
    QString getDomainObjectId() const override { return m_id; }
    QString wktPrefix() const override { return {}; }

private:
    QString m_id;
};

QVariant shapeOf(const CDomainObjectPointer& record)
{
    return record->readValue("OBJ_Shape_WKT");
}

} // namespace

class tst_PointsAccess : public QObject {
    Q_OBJECT

private slots:
    void init() { m_project = std::make_unique<MeasuredProject>(); }
    void cleanup() { m_project.reset(); }

    void theMeasuredLineIsReadIntoTheRecord();
    void withoutAMeasurementTheRecordsShapeBecomesEmpty();
    void withoutAnInspectionNothingIsReadOrWritten();
    void withoutADatabaseWhatIsReadIsEmpty();
    void aShapeMakesTheMeasurement();
    void aShapeReplacesTheMeasurement();
    void anEmptyShapeEmptiesTheMeasurement();
    void theFirstOfSeveralMeasurementsIsRewritten();
    void aMeasurementThatCannotBeFoundIsMadeAgain();
    void aMeasurementBelongsToTheActiveJob();
    void withoutAJobAnEmptyTextIsStoredForIt();
    void aPointIsStoredWithItsNumberAndTime();
    void theRecordsShapeIsWritten();
    void anOwnerWithoutAShapeWritesNothing();
    void theInspectionsShapeIsReadAndWritten();
    void anEmptyTextLeavesTheInspectionsShape();
    void aTextThatIsNoShapeIsStoredAsItIs();
    void theShapeOfTheObjectsRecordGoesToTheInspection();
    void anObjectWithoutARecordWritesNothing();
    void withoutAProjectNoRecordIsFound();
    void anActiveObjectThatIsNoProjectHasNoRecords();

private:
    std::unique_ptr<MeasuredProject> m_project;
};

void tst_PointsAccess::theMeasuredLineIsReadIntoTheRecord()
{
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasurementPointsAccess access(id);
    QCOMPARE(access.updateSecMesText(shapeOfTwo, "m"), QString());
    const auto node = m_project->addNode("A", "POINT ZM(9 9 9 9)");

    access.readPoints(node);

    QCOMPARE(shapeOf(node).toString(), shapeOfTwo);
    QCOMPARE(m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Shape_WKT").toString(), QString("POINT ZM(9 9 9 9)"));
}

void tst_PointsAccess::withoutAMeasurementTheRecordsShapeBecomesEmpty()
{
    const auto node = m_project->addNode("A", "POINT ZM(9 9 9 9)");

    MeasurementPointsAccess(m_project->newInspection()).readPoints(node);

    QCOMPARE(shapeOf(node).toString(), QString());
}

void tst_PointsAccess::withoutAnInspectionNothingIsReadOrWritten()
{
    Kx::Test::LogCapture log;
    const auto node = m_project->addNode("A", "POINT ZM(9 9 9 9)");
    MeasurementPointsAccess access {QString()};

    access.readPoints(node);
    access.writePoints(shapeOfTwo);
    InspPointsAccess {QString()}.readPoints(node);

    QCOMPARE(shapeOf(node).toString(), QString("POINT ZM(9 9 9 9)"));
    QCOMPARE(access.countInclinationMeasurement(), QString());
    QCOMPARE(access.createInclinationMeasurement(), QString());
    MeasurementPointsAccess("i").readPoints({});
    InspPointsAccess("i").readPoints({});
    QCOMPARE(m_project->stored("SECMES", "'1'", "1", "count(*)").toInt(), 0);
    QCOMPARE(m_project->stored("SECMP", "'1'", "1", "count(*)").toInt(), 0);
    QVERIFY(log.lines().isEmpty());
}

void tst_PointsAccess::withoutADatabaseWhatIsReadIsEmpty()
{
    const QString id = m_project->newInspection();
    const auto measured = m_project->addNode("A", "POINT ZM(9 9 9 9)");
    const auto inspected = m_project->addNode("B", "POINT ZM(9 9 9 9)");
    Torvik::AppState::instance().setActiveProject({});
    const Kx::Test::LogCapture log;

    MeasurementPointsAccess(id).readPoints(measured);
    InspPointsAccess(id).readPoints(inspected);

    QCOMPARE(shapeOf(measured).toString(), QString());
    QCOMPARE(shapeOf(inspected).toString(), QString());
    // One line for each statement, of whoever runs it.
    QCOMPARE(log.lines().size(), 2);
}

void tst_PointsAccess::aShapeMakesTheMeasurement()
{
    const QString id = m_project->newInspection();

    MeasurementPointsAccess(id).writePoints(shapeOfTwo);

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->line(id), shapeOfTwo);
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:1 2 3, 2:4.5 5 6"));
}

void tst_PointsAccess::aShapeReplacesTheMeasurement()
{
    const QString id = m_project->newInspection();
    const QString other = m_project->newInspection();
    MeasurementPointsAccess(other).writePoints(shapeOfTwo);
    MeasurementPointsAccess access(id);
    access.writePoints(shapeOfTwo);
    const QString key = m_project->key(id);

    access.writePoints("LINESTRING ZM(7 8 9 288)");

    QCOMPARE(m_project->measurements(id), 1);
    QCOMPARE(m_project->key(id), key);
    QCOMPARE(m_project->line(id), QString("LINESTRING ZM(7 8 9 288)"));
    QCOMPARE(m_project->points(key), QString("1:7 8 9"));
    QCOMPARE(m_project->points(m_project->key(other)), QString("1:1 2 3, 2:4.5 5 6"));
}

void tst_PointsAccess::anEmptyShapeEmptiesTheMeasurement()
{
    const QString id = m_project->newInspection();
    const QString unmeasured = m_project->newInspection();
    MeasurementPointsAccess(id).writePoints(shapeOfTwo);

    MeasurementPointsAccess(id).writePoints("EMPTY");
    MeasurementPointsAccess(unmeasured).writePoints("EMPTY");

    QCOMPARE(m_project->pointCount(m_project->key(id)), 0);
    QCOMPARE(m_project->line(id), QString("EMPTY"));
    QCOMPARE(m_project->measurements(unmeasured), 1);
    QCOMPARE(m_project->line(unmeasured), QString("EMPTY"));
    MeasurementPointsAccess(id).writePoints(QString());
    QCOMPARE(m_project->ofMeasurement(id, "typeof(MES_TxtValues) || MES_TxtValues").toString(), QString("text"));
}

void tst_PointsAccess::theFirstOfSeveralMeasurementsIsRewritten()
{
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m1", id);
    MeasuredProject::putMeasurement("m2", id);
    MeasurementPointsAccess access(id);
    const QString found = access.countInclinationMeasurement();

    access.writePoints(shapeOfTwo);

    QVERIFY(found == "m1" || found == "m2");
    QCOMPARE(m_project->measurements(id), 2);
    QCOMPARE(m_project->pointCount(found), 2);
    QCOMPARE(m_project->pointCount(found == "m1" ? "m2" : "m1"), 0);
}

void tst_PointsAccess::aMeasurementThatCannotBeFoundIsMadeAgain()
{
    const QString id = m_project->newInspection();
    MeasurementPointsAccess access(id);
    access.writePoints(shapeOfTwo);
    // Takes rows, but cannot be read.
    MeasuredProject::execute("ALTER TABLE SECMES RENAME TO MEASUREMENTS");
    MeasuredProject::execute("CREATE VIEW SECMES AS SELECT * FROM MEASUREMENTS WHERE abs(-9223372036854775808)");
    MeasuredProject::execute("CREATE TRIGGER taking INSTEAD OF INSERT ON SECMES BEGIN INSERT INTO "
                             "MEASUREMENTS(MES_PK, MES_Inspection_FK) VALUES (NEW.MES_PK, NEW.MES_Inspection_FK); END");

    QCOMPARE(access.countInclinationMeasurement(), QString());
    access.writePoints("POINT ZM(7 8 9 0)");

    QCOMPARE(m_project->stored("MEASUREMENTS", "MES_Inspection_FK", id, "count(*)").toInt(), 2);
    QCOMPARE(m_project->stored("SECMP", "MP_X_Value || ''", "7", "count(*)").toInt(), 1);
    QCOMPARE(m_project->stored("SECMP", "'1'", "1", "count(*)").toInt(), 3);
}

void tst_PointsAccess::aMeasurementBelongsToTheActiveJob()
{
    const QString id = m_project->newInspection();
    const auto before = QDateTime::currentDateTime();
    const auto job = Torvik::Database::ProjectStore::instance().insertJob(m_project->project(), {{"JOB_Name", "J"}});
    QVERIFY2(job.object, qPrintable(job.error));
    Torvik::AppState::instance().setActiveJob(job.object);

    const QString key = MeasurementPointsAccess(id).createInclinationMeasurement();

    QCOMPARE(m_project->key(id), key);
    QCOMPARE(m_project->ofMeasurement(id, "MES_JOB_FK").toString(), job.object->id());
    QCOMPARE(m_project->ofMeasurement(id, "MES_Type").toString(), QString("forward"));
    QCOMPARE(m_project->ofMeasurement(id, "MES_Method").toString(), QString("3DGS"));
    const QString date = m_project->ofMeasurement(id, "MES_Date").toString();
    QVERIFY2(isBetween(before, date, "yyyy_MM_dd_hh_mm_ss"), qPrintable(date));
}

void tst_PointsAccess::withoutAJobAnEmptyTextIsStoredForIt()
{
    const QString id = m_project->newInspection();

    MeasurementPointsAccess(id).createInclinationMeasurement();

    QCOMPARE(m_project->ofMeasurement(id, "typeof(MES_JOB_FK) || MES_JOB_FK").toString(), QString("text"));
}

void tst_PointsAccess::aPointIsStoredWithItsNumberAndTime()
{
    const QString id = m_project->newInspection();
    MeasurementPointsAccess access(id);
    const QString key = access.createInclinationMeasurement();
    const auto before = QDateTime::currentDateTime();

    access.createMeasurementPoint(key, {1.5F, 1234.5678F, -3}, 6);

    QCOMPARE(m_project->points(key), QString("7:1.5 1234.57 -3"));
    const auto cell = [&](const char* column) {
        return m_project->stored("SECMP", "MP_Measurement_FK", key, column).toString();
    };
    QCOMPARE(cell("typeof(MP_Y_Value)"), QString("text"));
    QCOMPARE(cell("typeof(MP_X_Value)"), QString("real"));
    QVERIFY(isBetween(before, cell("MP_TimeStamp"), "yyyy-MM-dd hh:mm:ss.zzz"));
    access.removeMeasurementPoints(key);
    QCOMPARE(m_project->pointCount(key), 0);
}

void tst_PointsAccess::theRecordsShapeIsWritten()
{
    const QString id = m_project->newInspection();
    const auto node = m_project->addNode("A");
    node->updateValue("OBJ_Shape_WKT", "POINT ZM(1 2 3 16)");
    RecordOwner owner(node);

    MeasurementPointsAccess(id).writePoints(&owner);

    QCOMPARE(m_project->line(id), QString("POINT ZM(1 2 3 16)"));
    QCOMPARE(m_project->points(m_project->key(id)), QString("1:1 2 3"));
}

void tst_PointsAccess::anOwnerWithoutAShapeWritesNothing()
{
    const QString id = m_project->newInspection();
    RecordOwner nobody {CDomainObjectPointer()};
    RecordOwner shapeless(m_project->addNode("A"));
    MeasurementPointsAccess access(id);

    access.writePoints(static_cast<Domain*>(nullptr));
    access.writePoints(&nobody);
    access.writePoints(&shapeless);

    QCOMPARE(m_project->measurements(id), 0);
}

void tst_PointsAccess::theInspectionsShapeIsReadAndWritten()
{
    const QString id = m_project->newInspection();
    const auto node = m_project->addNode("A", "POINT ZM(9 9 9 9)");
    InspPointsAccess access(id);
    access.readPoints(node);
    QCOMPARE(shapeOf(node).toString(), QString());

    access.writePoints(shapeOfTwo);
    access.readPoints(node);

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), shapeOfTwo);
    QCOMPARE(shapeOf(node).toString(), shapeOfTwo);
    QCOMPARE(m_project->stored("NODE", "OBJ_PK", node->id(), "OBJ_Shape_WKT").toString(), QString("POINT ZM(9 9 9 9)"));
    QCOMPARE(access.updateSecIns("EMPTY"), QString());
    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), QString("EMPTY"));
}

void tst_PointsAccess::anEmptyTextLeavesTheInspectionsShape()
{
    const QString id = m_project->newInspection();
    InspPointsAccess access(id);
    access.writePoints(shapeOfTwo);

    access.writePoints(QString());

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), shapeOfTwo);
}

void tst_PointsAccess::aTextThatIsNoShapeIsStoredAsItIs()
{
    const QString id = m_project->newInspection();

    InspPointsAccess(id).writePoints("no shape at all");

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), QString("no shape at all"));
}

void tst_PointsAccess::theShapeOfTheObjectsRecordGoesToTheInspection()
{
    const QString id = m_project->newInspection();
    ShapeOwner owner(m_project->addNode("A", "POINT ZM(1 2 3 16)")->id());

    InspPointsAccess(id).writePoints(&owner);

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), QString("POINT ZM(1 2 3 16)"));
}

void tst_PointsAccess::anObjectWithoutARecordWritesNothing()
{
    const QString id = m_project->newInspection();
    InspPointsAccess access(id);
    access.writePoints(shapeOfTwo);
    ShapeOwner unnamed {QString()};
    ShapeOwner unknown(QStringLiteral("nowhere"));
    ShapeOwner shapeless(m_project->addNode("A")->id());

    access.writePoints(static_cast<InspDomain*>(nullptr));
    access.writePoints(&unnamed);
    access.writePoints(&unknown);
    access.writePoints(&shapeless);

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), shapeOfTwo);
}

void tst_PointsAccess::withoutAProjectNoRecordIsFound()
{
    Kx::Test::LogCapture log;
    const QString id = m_project->newInspection();
    ShapeOwner owner(m_project->addNode("A", "POINT ZM(1 2 3 16)")->id());
    Torvik::AppState::instance().setActiveProject({});

    InspPointsAccess(id).writePoints(&owner);

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), QString());
    QVERIFY(log.lines().isEmpty());
}

void tst_PointsAccess::anActiveObjectThatIsNoProjectHasNoRecords()
{
    const QString id = m_project->newInspection();
    const auto node = m_project->addNode("A", "POINT ZM(1 2 3 16)");
    ShapeOwner owner(node->id());
    Torvik::AppState::instance().setActiveProject(node);
    const Kx::Test::LogCapture log;

    InspPointsAccess(id).writePoints(&owner);

    QCOMPARE(m_project->stored("SECINSP", "INS_PK", id, "INS_Shape_WKT").toString(), QString());
    QVERIFY(log.lines().isEmpty());
}

QTEST_GUILESS_MAIN(tst_PointsAccess)
#include "tst_PointsAccess.moc"
