#include "common/TestProject.h"
#include "host/vehicle/Course.h"
#include "host/vehicle/Recording.h"

#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QVector3D>
#include <QtTest>

#include <csignal>
#include <memory>

using Kx::Test::TestProject;
using namespace Torvik::Database;
using namespace Torvik::Vehicle;

namespace {

/** Metres of this system are metres of the scene. */
const QString utm32 = QStringLiteral(
    R"(PROJCS["ETRS89 / UTM zone 32N",GEOGCS["ETRS89",DATUM["European_Terrestrial_Reference_System_1989",SPHEROID["GRS 1980",6378137,298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",9],PARAMETER["scale_factor",0.9996],PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1],AUTHORITY["EPSG","25832"]])");

double toSegment(const SensorPlace& point, const SensorPlace& begin, const SensorPlace& end)
{
    const QVector3D a(float(begin.x), float(begin.y), float(begin.z));
    const QVector3D along = QVector3D(float(end.x), float(end.y), float(end.z)) - a;
    const QVector3D to = QVector3D(float(point.x), float(point.y), float(point.z)) - a;
    const float length = along.lengthSquared();
    const float part = length > 0 ? qBound(0.0F, QVector3D::dotProduct(to, along) / length, 1.0F) : 0.0F;
    return double((to - along * part).length());
}

/** Metres from a point to a course. */
double toCourse(const SensorPlace& point, const QVector<SensorPlace>& course)
{
    double nearest = 1e9;
    for (int i = 1; i < course.size(); ++i)
        nearest = std::min(nearest, toSegment(point, course[i - 1], course[i]));
    return nearest;
}

/** The largest distance of a point from a course. */
double farthest(const QVector<SensorPlace>& points, const QVector<SensorPlace>& course)
{
    double most = points.isEmpty() ? 1e9 : 0;
    for (const SensorPlace& point : points)
        most = std::max(most, toCourse(point, course));
    return most;
}

QVector<SensorPlace> placesOf(const Recording& recording)
{
    QVector<SensorPlace> places;
    for (const Reading& reading : recording.readings)
        places << *reading.sensor;
    return places;
}

/** Columns of a picture that show a pipe. */
int widthOfPipe(const QImage& picture)
{
    int columns = 0;
    for (int x = 0; x < picture.width(); ++x) {
        bool green = false;
        for (int y = 0; y < picture.height() && !green; ++y) {
            const QColor colour = picture.pixelColor(x, y);
            green = colour.green() > 60 && colour.green() > 2 * colour.red() && colour.green() > 2 * colour.blue();
        }
        columns += green ? 1 : 0;
    }
    return columns;
}

/** Another program that writes, until it goes. */
class OtherProgram {
public:
    explicit OtherProgram(const QString& folder)
        : m_connection(SqlConnection::open(ProjectStore::databaseFile(folder), SqlConnection::ReadWrite, m_status))
        , m_transaction(*m_connection)
    {
    }
    bool writes() const { return m_transaction.begun().ok(); }

private:
    StoreStatus m_status;
    std::unique_ptr<SqlConnection> m_connection;
    SqlTransaction m_transaction;
};

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
    void theCounterOfARecordingRunsToItsEnd();
    void malformedLinesAreToldAndLeftOut();
    void aReplayInRealTimeReproducesTheCourse();
    void aMeasuredCourseComesBackAsItWasRecorded();
    void aBentPipeIsMeasuredPointByPoint_data();
    void aBentPipeIsMeasuredPointByPoint();
    void aReplayGoesAtTheSpeedAskedFor();
    void aPictureIsTakenAtTheEndOfAReplay();
    void aPictureShowsTheCourseThatWasMeasured();
    void whatCannotBeReplayedGivesOneLineAndStatus1();
    void pointsAreThoseOfTheLatestMeasurement();
    void aWindowThatIsEndedWhileItMeasuresStoresAll_data();
    void aWindowThatIsEndedWhileItMeasuresStoresAll();
    void aReplayThatIsEndedStoresWhatWasMeasured();
    void aLockIsToldOnceAndWaitedFor();
    void whatIsLostByALockIsTold();
    void readingsOfAnotherProcessAreMeasuredAndStored();
    void aPortInUseGivesOneLineAndStatus1();

private:
    /** A port of the program that shows H2, once it listens. */
    quint16 startListening(QProcess& process);
    static void send(quint16 port, const QByteArray& lines);
    /** run.csv: a minute straight on, ten readings a second. */
    void writeLongRun();
    int pointsStored() const
    {
        return m_project->stored("SECMP JOIN SECMES ON MP_Measurement_FK = MES_PK", "'1'", "1", "COUNT(*)").toInt();
    }
    void start(QProcess& process, const QStringList& arguments);
    Outcome run(const QStringList& arguments);
    Recording recordingIn(const QString& file);
    void write(const QString& file, const QByteArray& content);
    static int pointsIn(const Outcome& outcome);
    /** Metres from the recording's places to the stored course of the pipe's inspection, the largest. */
    double farthestFromCourse(const QString& pipe, const QString& recording);
    QVector<SensorPlace> storedCourse(const QString& pipe);
    /** The rows of the pipe's measurement, from its begin on as a sensor tells places. */
    QVector<SensorPlace> storedPoints(const QString& pipe);
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
    // A turn to the right while it falls, one to the left and up, and a sharp one at the end.
    m_project->addInspection(
        m_project->addSection("B1", a, b, {{"OBJ_Size1", 300.0}}),
        "LINESTRING ZM(400008 5600009 96.6 320,400010 5600009 96.6 0,400009.5 5600006 96.4 0,"
        "400007 5600004 96.2 0,400003 5600003.5 96.5 0,400001 5600002.5 96.8 0,400000 5600000 97 0)");
    // Without manholes it is not turned to one, so the sensor's frame is that of the scene.
    m_project->addInspection(m_project->addSection("B2", {}, {}));
    m_project->close();
}

void tst_VehicleProgram::start(QProcess& process, const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", m_folder->path());
    environment.insert("XDG_CONFIG_HOME", m_folder->path());
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_folder->path());
    process.start(QStringLiteral(KX_VIEWER), arguments);
}

Outcome tst_VehicleProgram::run(const QStringList& arguments)
{
    QProcess process;
    start(process, arguments);
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

void tst_VehicleProgram::write(const QString& name, const QByteArray& content)
{
    QFile file(inFolder(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

int tst_VehicleProgram::pointsIn(const Outcome& outcome)
{
    return QRegularExpression("points\\s+(\\d+)").match(outcome.out).captured(1).toInt();
}

double tst_VehicleProgram::farthestFromCourse(const QString& pipe, const QString& recording)
{
    return farthest(placesOf(recordingIn(recording)), storedCourse(pipe));
}

QVector<SensorPlace> tst_VehicleProgram::storedCourse(const QString& pipe)
{
    const QString id = m_project->stored("SECTION", "OBJ_Key", pipe, "OBJ_PK").toString();
    return courseOfShape(m_project->stored("SECINSP", "INS_Section_FK", id, "INS_Shape_WKT").toString());
}

QVector<SensorPlace> tst_VehicleProgram::storedPoints(const QString& pipe)
{
    const QString rows =
        m_project
            ->stored("(SELECT SECMP.*, OBJ_Key FROM SECMP JOIN SECMES ON MP_Measurement_FK = MES_PK JOIN SECINSP ON "
                     "MES_Inspection_FK = INS_PK JOIN SECTION ON INS_Section_FK = OBJ_PK ORDER BY MP_SortOrder)",
                     "OBJ_Key", pipe, "group_concat(MP_X_Value || ' ' || MP_Y_Value || ' ' || MP_Z_Value, ';')")
            .toString();
    QVector<QVector3D> points;
    for (const QString& row : rows.split(';', Qt::SkipEmptyParts)) {
        const QStringList values = row.split(' ');
        points << QVector3D(values.value(0).toFloat(), values.value(1).toFloat(), values.value(2).toFloat());
    }
    QVector<SensorPlace> places;
    for (const QVector3D& point : qAsConst(points)) {
        // The scene's x is west, its y up, its z north.
        const QVector3D from = point - points.first();
        places << SensorPlace {double(-from.x()), double(from.z()), double(from.y())};
    }
    return places;
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

void tst_VehicleProgram::theCounterOfARecordingRunsToItsEnd()
{
    write("run.csv", "time,counter\n0,0\n1,4.5\n2,12.25\n");

    const Outcome outcome = run({m_project->path(), "--inspect", "H1", "--replay", "run.csv"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    QCOMPARE(outcome.out, QString("counter  12.25 m\npoints   0\nlength   15.10 m\n"));
    QVERIFY2(outcome.errors.isEmpty(), qPrintable(outcome.errors.join('\n')));
}

void tst_VehicleProgram::malformedLinesAreToldAndLeftOut()
{
    write("run.csv", "time,counter\n0,0\nonce upon a time\n2,3.5\n1,3\n");

    const Outcome outcome = run({m_project->path(), "--inspect", "H1", "--replay", "run.csv"});

    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.out.startsWith("counter  3.50 m\n"), qPrintable(outcome.out));
    QCOMPARE(outcome.errors.size(), 2);
    QVERIFY2(outcome.errors[0].startsWith("kxviewer: run.csv:3: "), qPrintable(outcome.errors[0]));
    QVERIFY2(outcome.errors[1].startsWith("kxviewer: run.csv:5: "), qPrintable(outcome.errors[1]));
}

void tst_VehicleProgram::aReplayInRealTimeReproducesTheCourse()
{
    QCOMPARE(run({"record", m_project->path(), "H1", "run.csv", "--step", "0.5"}).status, 0);

    const Outcome outcome = run({m_project->path(), "--inspect", "H1", "--replay", "run.csv", "--real-time"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    QVERIFY2(outcome.out.startsWith("counter  15.10 m\n"), qPrintable(outcome.out));
    QVERIFY2(outcome.out.contains("length   15.10 m\n"), qPrintable(outcome.out));
    QVERIFY2(pointsIn(outcome) >= 32, qPrintable(outcome.out));
    QVERIFY2(farthestFromCourse("H1", "run.csv") < 0.01,
             qPrintable(QString::number(farthestFromCourse("H1", "run.csv"))));
}

void tst_VehicleProgram::aMeasuredCourseComesBackAsItWasRecorded()
{
    // H2 has no course: all of it is measured, with noise.
    constexpr double noise = 0.005;
    QCOMPARE(run({"record", m_project->path(), "H1", "run.csv", "--step", "0.5", "--noise", "0.005"}).status, 0);

    const Outcome outcome = run({m_project->path(), "--inspect", "H2", "--replay", "run.csv", "--real-time"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    QVERIFY2(pointsIn(outcome) >= 32, qPrintable(outcome.out));
    const double farthest = farthestFromCourse("H2", "run.csv");
    QVERIFY2(farthest < 0.01 + noise, qPrintable(QString::number(farthest)));
}

void tst_VehicleProgram::aBentPipeIsMeasuredPointByPoint_data()
{
    QTest::addColumn<QString>("noise");
    QTest::newRow("exact") << "0";
    QTest::newRow("with noise") << "0.005";
}

void tst_VehicleProgram::aBentPipeIsMeasuredPointByPoint()
{
    QFETCH(const QString, noise);
    const double tolerance = 0.01 + noise.toDouble();
    QCOMPARE(run({"record", m_project->path(), "B1", "true.csv", "--step", "0.25"}).status, 0);
    QCOMPARE(run({"record", m_project->path(), "B1", "run.csv", "--step", "0.25", "--noise", noise}).status, 0);
    const auto driven = placesOf(recordingIn("true.csv"));

    const Outcome outcome = run({m_project->path(), "--inspect", "B2", "--replay", "run.csv", "--real-time"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    const auto course = storedCourse("B2");
    const auto points = storedPoints("B2");
    QVERIFY2(points.size() >= driven.size() && points.size() == pointsIn(outcome), qPrintable(outcome.out));
    // Both ways: nothing is missing of what was driven, and nothing lies where nobody drove.
    QVERIFY2(farthest(driven, course) < tolerance, qPrintable(QString::number(farthest(driven, course))));
    QVERIFY2(farthest(driven, points) < tolerance, qPrintable(QString::number(farthest(driven, points))));
    QVERIFY2(farthest(course, driven) < tolerance, qPrintable(QString::number(farthest(course, driven))));
    QVERIFY2(farthest(points, driven) < tolerance, qPrintable(QString::number(farthest(points, driven))));
    qInfo("%d places, %d points; farthest %.4f m from the course", driven.size(), points.size(),
          std::max(farthest(driven, course), farthest(points, driven)));
}

void tst_VehicleProgram::aReplayGoesAtTheSpeedAskedFor()
{
    write("run.csv", "time,counter\n0,0\n20,5\n");
    QElapsedTimer timer;
    timer.start();

    const Outcome outcome = run({m_project->path(), "--inspect", "H1", "--replay", "run.csv", "--speed", "10"});

    QCOMPARE(outcome.status, 0);
    QVERIFY(timer.elapsed() >= 2000);
}

void tst_VehicleProgram::aPictureIsTakenAtTheEndOfAReplay()
{
    write("run.csv", "time,counter\n0,0\n1,10\n");

    const Outcome outcome = run({m_project->path(), "--inspect", "H1", "--replay", "run.csv", "--screenshot",
                                 "picture.png", "--size", "320x240"});

    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors.join('\n')));
    QVERIFY2(outcome.out.startsWith("counter  10.00 m\n"), qPrintable(outcome.out));
    QCOMPARE(QImage(inFolder("picture.png")).size(), QSize(320, 240));
}

void tst_VehicleProgram::aPictureShowsTheCourseThatWasMeasured()
{
    // Where no other pipe lies: ten metres to the north, five to the west.
    QByteArray recording = "time,counter,x,y,z\n";
    for (int i = 1; i <= 30; ++i)
        recording += QStringLiteral("%1,%2,%3,%4,0\n")
                         .arg(i)
                         .arg(0.5 * i)
                         .arg(-std::max(0.0, 0.5 * i - 10))
                         .arg(std::min(10.0, 0.5 * i))
                         .toUtf8();
    write("run.csv", recording);
    const auto picture = [&](const QStringList& more) {
        const QStringList common {m_project->path(), "--inspect",   "B2",     "--replay", "run.csv",
                                  "--screenshot",    "picture.png", "--size", "320x240"};
        const Outcome outcome = run(common + more);
        return outcome.status == 0 ? qMakePair(pointsIn(outcome), QImage(inFolder("picture.png")))
                                   : qMakePair(-1, QImage());
    };

    const auto [noPoints, straight] = picture({});
    const auto [points, bent] = picture({"--real-time"});

    QCOMPARE(noPoints, 0);
    QVERIFY2(points >= 30, qPrintable(QString::number(points)));
    // Straight to the north by the counter alone, and with the turn to the west by the sensor.
    const int before = widthOfPipe(straight.copy(0, 0, 320, 60));
    const int after = widthOfPipe(bent.copy(0, 0, 320, 60));
    QVERIFY(before > 0);
    QVERIFY2(after > 5 * before, qPrintable(QStringLiteral("%1, then %2").arg(before).arg(after)));
}

void tst_VehicleProgram::pointsAreThoseOfTheLatestMeasurement()
{
    QCOMPARE(run({"record", m_project->path(), "H1", "run.csv", "--step", "0.5"}).status, 0);
    const QStringList again {m_project->path(), "--inspect", "B2", "--replay", "run.csv", "--real-time"};
    const int first = pointsIn(run(again));

    const int second = pointsIn(run(again));

    QVERIFY(first >= 32);
    QVERIFY(second > 0);
    QCOMPARE(pointsStored(), first + second);
}

void tst_VehicleProgram::aWindowThatIsEndedWhileItMeasuresStoresAll_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("shutting down") << SIGTERM;
    QTest::newRow("Ctrl+C") << SIGINT;
    QTest::newRow("terminal gone") << SIGHUP;
}

void tst_VehicleProgram::aWindowThatIsEndedWhileItMeasuresStoresAll()
{
    QFETCH(const int, signal);
    QProcess process;
    const quint16 port = startListening(process);
    QVERIFY(port > 0);
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(socket.waitForConnected());

    for (int i = 1; i <= 20; ++i) {
        socket.write(QStringLiteral("%1,%2,0,%2,0\n").arg(i).arg(0.5 * i).toUtf8());
        QVERIFY(socket.waitForBytesWritten());
        QTest::qWait(20);
    }
    // All have come, and the course has not rested yet.
    QTRY_VERIFY(pointsStored() >= 20);
    ::kill(pid_t(process.processId()), signal);

    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(pointsStored(), 21);
    QVERIFY(std::abs(lengthOf(storedCourse("H2")) - 10.0) < 0.05);
}

void tst_VehicleProgram::writeLongRun()
{
    QByteArray recording = "time,counter,x,y,z\n";
    for (int i = 1; i <= 600; ++i)
        recording += QStringLiteral("%1,%2,0,%2,0\n").arg(0.1 * i).arg(0.05 * i).toUtf8();
    write("run.csv", recording);
}

void tst_VehicleProgram::aReplayThatIsEndedStoresWhatWasMeasured()
{
    writeLongRun();
    QProcess process;
    start(process, {m_project->path(), "--inspect", "B2", "--replay", "run.csv", "--real-time", "--speed", "1"});
    QTRY_VERIFY_WITH_TIMEOUT(pointsStored() > 20, 30000);

    process.terminate();

    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 128 + SIGTERM);
    QVERIFY(pointsStored() < 600);
    QVERIFY(farthest(storedPoints("B2"), storedCourse("B2")) < 0.01);
}

void tst_VehicleProgram::aLockIsToldOnceAndWaitedFor()
{
    writeLongRun();
    QProcess process;
    start(process, {m_project->path(), "--inspect", "B2", "--replay", "run.csv", "--real-time", "--speed", "20"});
    QTRY_VERIFY_WITH_TIMEOUT(pointsStored() > 5, 30000);
    QByteArray errors;
    {
        const OtherProgram other(m_project->path());
        QVERIFY(other.writes());
        QTRY_VERIFY_WITH_TIMEOUT((errors += process.readAllStandardError()).contains("locked by another program"),
                                 30000);
        // Longer than the rest of the recording.
        QTest::qWait(4000);
        QVERIFY2(process.state() == QProcess::Running, (errors + process.readAllStandardError()).constData());
        QVERIFY(pointsStored() < 600);
    }

    QVERIFY(process.waitForFinished(60000));
    errors += process.readAllStandardError();
    QVERIFY2(process.exitCode() == 0, errors.constData());
    QVERIFY2(errors.count("kxviewer: ") == 1, errors.constData());
    QVERIFY2(pointsStored() >= 600, qPrintable(QString::number(pointsStored())));
    QVERIFY(farthest(storedPoints("B2"), storedCourse("B2")) < 0.01);
}

void tst_VehicleProgram::whatIsLostByALockIsTold()
{
    writeLongRun();
    QProcess process;
    start(process, {m_project->path(), "--inspect", "B2", "--replay", "run.csv", "--real-time", "--speed", "20"});
    QTRY_VERIFY_WITH_TIMEOUT(pointsStored() > 5, 30000);
    const OtherProgram other(m_project->path());
    QVERIFY(other.writes());
    QByteArray errors;
    QTRY_VERIFY_WITH_TIMEOUT((errors += process.readAllStandardError()).contains("locked by another program"), 30000);
    QTest::qWait(1000);

    process.terminate();

    const bool finished = process.waitForFinished(30000);
    errors += process.readAllStandardError();
    QVERIFY2(finished, errors.constData());
    QCOMPARE(process.exitCode(), 128 + SIGTERM);
    QVERIFY2(errors.contains("are lost"), errors.constData());
    // A line a statement would hide it.
    QVERIFY2(errors.count('\n') < 10, errors.constData());
}

void tst_VehicleProgram::whatCannotBeReplayedGivesOneLineAndStatus1()
{
    write("run.csv", "time,counter\n0,0\n1,10\n");
    write("empty.csv", "time,counter\n");
    const QString town = m_project->path();

    const Outcome noFile = run({town, "--inspect", "H1", "--replay", "none.csv"});
    const Outcome noReadings = run({town, "--inspect", "H1", "--replay", "empty.csv"});
    const Outcome noSensor = run({town, "--inspect", "H1", "--replay", "run.csv", "--real-time"});
    const Outcome noInspection = run({town, "--inspect", "H3", "--replay", "run.csv"});
    const Outcome noPicture =
        run({town, "--inspect", "H3", "--replay", "run.csv", "--screenshot", "picture.png", "--size", "100x100"});
    const Outcome noProject = run({"no-such-town", "--inspect", "H1", "--replay", "run.csv"});

    for (const Outcome& outcome : {noFile, noReadings, noSensor, noInspection, noPicture, noProject}) {
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.errors.size() == 1, qPrintable(outcome.errors.join('\n')));
    }
    QVERIFY(noFile.errors.first().contains("none.csv"));
    QVERIFY(noReadings.errors.first().contains("empty.csv"));
    QVERIFY(noSensor.errors.first().contains("--real-time"));
    QVERIFY(noInspection.errors.first().contains("H3"));
}

quint16 tst_VehicleProgram::startListening(QProcess& process)
{
    start(process, {m_project->path(), "--inspect", "H2", "--listen", "0", "--real-time", "--size", "400x300"});
    QByteArray out;
    while (!out.contains('\n') && process.waitForReadyRead(60000))
        out += process.readAllStandardOutput();
    const auto said = QRegularExpression("^listening on 127\\.0\\.0\\.1 port (\\d+)\n").match(QString::fromUtf8(out));
    return quint16(said.captured(1).toUInt());
}

void tst_VehicleProgram::send(quint16 port, const QByteArray& lines)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    QVERIFY(socket.waitForConnected());
    socket.write(lines);
    socket.disconnectFromHost();
    QVERIFY(socket.state() == QAbstractSocket::UnconnectedState || socket.waitForDisconnected());
}

void tst_VehicleProgram::readingsOfAnotherProcessAreMeasuredAndStored()
{
    QProcess process;
    const quint16 port = startListening(process);
    QVERIFY(port > 0);

    send(port, "0,0.5,0,0.5,0\n1,1,0,1,0\nbroken\n2,1.5,0,1.5,0\n");
    send(port, "3,2,0,2,0\n4,2.5,0,2.5,0\n");

    // The begin of the pipe and the five readings.
    QTRY_COMPARE_WITH_TIMEOUT(pointsStored(), 6, 30000);
    process.kill();
    process.waitForFinished();
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(errors.contains("kxviewer: line 3: "), qPrintable(errors));
}

void tst_VehicleProgram::aPortInUseGivesOneLineAndStatus1()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));

    const Outcome outcome = run(
        {m_project->path(), "--inspect", "H1", "--listen", QString::number(other.serverPort()), "--size", "400x300"});

    QCOMPARE(outcome.status, 1);
    QVERIFY(!outcome.errors.isEmpty());
    // The drawing library may complain of a window that goes so soon.
    QVERIFY(outcome.errors.join(' ').contains(QString::number(other.serverPort())));
}

QTEST_GUILESS_MAIN(tst_VehicleProgram)
#include "tst_VehicleProgram.moc"
