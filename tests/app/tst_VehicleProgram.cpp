#include "common/TestProject.h"
#include "host/vehicle/Recording.h"

#include <QProcess>
#include <QtTest>

using Kx::Test::TestProject;
using namespace Torvik::Vehicle;

namespace {

/** Metres of this system are metres of the scene. */
const QString utm32 = QStringLiteral(
    R"(PROJCS["ETRS89 / UTM zone 32N",GEOGCS["ETRS89",DATUM["European_Terrestrial_Reference_System_1989",SPHEROID["GRS 1980",6378137,298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",9],PARAMETER["scale_factor",0.9996],PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1],AUTHORITY["EPSG","25832"]])");

struct Outcome {
    int status = -1;
    QString out;
    QStringList errors;
};

} // namespace

/** The program with a vehicle's readings, as its user meets it: as a process. */
class tst_VehicleProgram : public QObject {
    Q_OBJECT

private slots:
    void init();
    void aRunAlongAStoredCourseIsRecorded();
    void whatCannotBeRecordedGivesOneLineAndStatus1();

private:
    Outcome run(const QStringList& arguments);
    Recording recordingIn(const QString& file);
    QString inFolder(const QString& file) const { return m_folder->filePath(file); }

    QScopedPointer<QTemporaryDir> m_folder;
    /** 10 m to the north, then 5 m to the east and 1 m down. */
    QScopedPointer<TestProject> m_project;
    QString m_inspection;
};

void tst_VehicleProgram::init()
{
    m_folder.reset(new QTemporaryDir);
    m_project.reset(new TestProject(utm32));
    const QVariantMap manhole {{"OBJ_Type", "MH"}, {"OBJ_DepthToInvert", 3.0}};
    const auto a = m_project->addNode("S1", "POINT ZM(400000 5600000 100 16)", manhole);
    const auto b = m_project->addNode("S2", "POINT ZM(400005 5600010 99 16)", manhole);
    m_inspection = m_project
                       ->addInspection(m_project->addSection("H1", a, b, {{"OBJ_Size1", 300.0}}),
                                       "LINESTRING ZM(400005 5600010 96 320,400000 5600010 97 0,400000 5600000 97 0)")
                       ->id();
    m_project->addInspection(m_project->addSection("H2", b, a));
    m_project->close();
}

Outcome tst_VehicleProgram::run(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_folder->path());
    environment.insert("XDG_CONFIG_HOME", m_folder->path());
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    process.start(QStringLiteral(KX_VIEWER), arguments);
    Outcome outcome;
    if (process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit)
        outcome.status = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError()).split('\n', Qt::SkipEmptyParts);
    return outcome;
}

Recording tst_VehicleProgram::recordingIn(const QString& name)
{
    QFile file(inFolder(name));
    return file.open(QIODevice::ReadOnly) ? parseRecording(file.readAll()) : Recording();
}

void tst_VehicleProgram::aRunAlongAStoredCourseIsRecorded()
{
    const Outcome exact = run({"record", m_project->path(), "H1", "run.csv", "--step", "0.5", "--speed", "0.1"});
    const Outcome noisy =
        run({"record", m_project->path(), m_inspection, "noisy.csv", "--noise", "0.01", "--seed", "3"});

    QVERIFY2(exact.status == 0, qPrintable(exact.errors.join('\n')));
    QVERIFY2(exact.out.contains("15.10 m"), qPrintable(exact.out));
    const Recording recording = recordingIn("run.csv");
    QVERIFY(recording.problems.isEmpty());
    QCOMPARE(recording.readings.size(), 32);
    QVERIFY(*recording.readings[20].sensor == (SensorPlace {0, 10, 0}));
    QVERIFY(*recording.readings.last().sensor == (SensorPlace {5, 10, -1}));
    QCOMPARE(recording.readings[20].seconds, 100.0);
    QCOMPARE(noisy.status, 0);
    QCOMPARE(recordingIn("noisy.csv").readings.size(), 62);
}

void tst_VehicleProgram::whatCannotBeRecordedGivesOneLineAndStatus1()
{
    const Outcome unknown = run({"record", m_project->path(), "H3", "run.csv"});
    const Outcome withoutShape = run({"record", m_project->path(), "H2", "run.csv"});
    const Outcome nowhere = run({"record", m_project->path(), "H1", "no/such/folder/run.csv"});
    const Outcome noProject = run({"record", "no-such-town", "H1", "run.csv"});

    for (const Outcome& outcome : {unknown, withoutShape, nowhere, noProject}) {
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.errors.size(), 1);
    }
    QVERIFY(unknown.errors.first().contains("H3"));
    QVERIFY(withoutShape.errors.first().contains("H2"));
    QVERIFY(nowhere.errors.first().contains("no/such/folder"));
    QVERIFY(!QFile::exists(inFolder("run.csv")));
}

QTEST_GUILESS_MAIN(tst_VehicleProgram)
#include "tst_VehicleProgram.moc"
