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
    void aShapeMakesTheMeasurement();
    void aShapeReplacesTheMeasurement();
    void anEmptyShapeEmptiesTheMeasurement();
    void theFirstOfSeveralMeasurementsIsRewritten();
    void aMeasurementBelongsToTheActiveJob();
    void aPointIsStoredWithItsNumberAndTime();
    void theRecordsShapeIsWritten();
    void anOwnerWithoutAShapeWritesNothing();
    void theInspectionsShapeIsReadAndWritten();
    void anEmptyTextLeavesTheInspectionsShape();
    void theShapeOfTheObjectsRecordGoesToTheInspection();
    void anObjectWithoutARecordWritesNothing();
    void withoutAProjectNoRecordIsFound();

private:
    std::unique_ptr<MeasuredProject> m_project;
};

void tst_PointsAccess::theMeasuredLineIsReadIntoTheRecord()
{
    const QString id = m_project->newInspection();
    MeasuredProject::putMeasurement("m", id);
    MeasurementPointsAccess access(id);
    access.updateSecMesText(shapeOfTwo, "m");
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
    InspPointsAccess {QString()}.readPoints(node);

    QCOMPARE(shapeOf(node).toString(), QString("POINT ZM(9 9 9 9)"));
    QCOMPARE(access.countInclinationMeasurement(), QString());
    QCOMPARE(access.createInclinationMeasurement(), QString());
    MeasurementPointsAccess("i").readPoints({});
    InspPointsAccess("i").readPoints({});
    QVERIFY(log.lines().isEmpty());
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

void tst_PointsAccess::aMeasurementBelongsToTheActiveJob()
{
    const QString id = m_project->newInspection();
    const auto job = Torvik::Database::ProjectStore::instance().insertJob(m_project->project(), {{"JOB_Name", "J"}});
    QVERIFY2(job.object, qPrintable(job.error));
    Torvik::AppState::instance().setActiveJob(job.object);

    const QString key = MeasurementPointsAccess(id).createInclinationMeasurement();

    QCOMPARE(m_project->key(id), key);
    QCOMPARE(m_project->ofMeasurement(id, "MES_JOB_FK").toString(), job.object->id());
    QCOMPARE(m_project->ofMeasurement(id, "MES_Type").toString(), QString("forward"));
    QCOMPARE(m_project->ofMeasurement(id, "MES_Method").toString(), QString("3DGS"));
    const QString date = m_project->ofMeasurement(id, "MES_Date").toString();
    QVERIFY2(QDateTime::fromString(date, "yyyy_MM_dd_hh_mm_ss").isValid(), qPrintable(date));
}

void tst_PointsAccess::aPointIsStoredWithItsNumberAndTime()
{
    const QString id = m_project->newInspection();
    MeasurementPointsAccess access(id);
    const QString key = access.createInclinationMeasurement();

    access.createMeasurementPoint(key, {1.5F, 1234.5678F, -3}, 6);

    QCOMPARE(m_project->points(key), QString("7:1.5 1234.57 -3"));
    const auto cell = [&](const char* column) {
        return m_project->stored("SECMP", "MP_Measurement_FK", key, column).toString();
    };
    QCOMPARE(cell("typeof(MP_Y_Value)"), QString("text"));
    QCOMPARE(cell("typeof(MP_X_Value)"), QString("real"));
    QVERIFY(QDateTime::fromString(cell("MP_TimeStamp"), "yyyy-MM-dd hh:mm:ss.zzz").isValid());
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

QTEST_GUILESS_MAIN(tst_PointsAccess)
#include "tst_PointsAccess.moc"
