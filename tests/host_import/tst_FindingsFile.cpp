#include "ImportFixtures.h"

#include "host/domain/ProjectStore.h"
#include "host/import/FindingsFile.h"
#include "host/import/Import.h"
#include "host/import/ProjectFindings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

using namespace Torvik::Import;
using namespace Torvik::Database;
using ImportFixtures::own;

namespace {

/** The observations of the latest inspection of a pipe, as "code@distance". */
QStringList observations(const CProjectObject& project, const QString& key)
{
    QStringList found;
    const auto collect = [&](const CGenericPipeObject& pipe) {
        if (pipe.readValue("OBJ_Key").toString() != key)
            return;
        const auto inspection = pipe.inspection(pipe.inspectionCount() - 1);
        for (int i = 0; i < inspection->observationCount(); ++i)
            found << inspection->observation(i)->readValue("OBS_Code").toString() + QLatin1Char('@') +
                         inspection->observation(i)->readValue("OBS_Distance").toString();
    };
    for (int i = 0; i < project.sectionCount(); ++i)
        collect(*project.section(i));
    for (int i = 0; i < project.lateralCount(); ++i)
        collect(*project.lateral(i));
    return found;
}

CDomainObjectPointer observation(const CProjectObject& project, int section, const QString& code)
{
    const auto pipe = project.section(section);
    const auto inspection = pipe->inspection(pipe->inspectionCount() - 1);
    for (int i = inspection->observationCount() - 1; i >= 0; --i) {
        if (inspection->observation(i)->readValue("OBS_Code").toString() == code)
            return inspection->observation(i);
    }
    return {};
}

/** A project and how it was made. */
struct Made {
    ImportReport report;
    bool ok = false;
    QSharedPointer<CProjectObject> project;

    ~Made() { ProjectStore::instance().close(project); }
    void open(const QString& folder) { project = ProjectStore::instance().open(folder).project; }
};

} // namespace

/** Findings from CSV files, with an import and into a project that is there. */
class tst_FindingsFile : public QObject {
    Q_OBJECT

private slots:
    void recordsAreRead();
    void headersAreNeeded_data();
    void headersAreNeeded();
    void badRecordsAreNamed_data();
    void badRecordsAreNamed();
    void anImportTakesThem();
    void anExistingProjectTakesThem();
    void theyAreInTheReport();
    void aFailureChangesNothing();
    void bendsTurnAStoredCourse();
    void aCourseThatWasChangedStays();
    void aLateralThatIsConnectedStays();
    void feetAreKept();
    void anOpenProjectHearsOfThem();

private:
    QString write(const QByteArray& content)
    {
        const QString path = m_dir.filePath(QStringLiteral("f%1.csv").arg(++m_count));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        return path;
    }

    QString project(const QString& source = QStringLiteral("findings_2017.xml"))
    {
        const QString folder = m_dir.filePath(QStringLiteral("p%1").arg(++m_count));
        ImportOptions options;
        options.source = own(source);
        options.project = folder;
        ImportReport report;
        return importProject(options, report) ? folder : QString();
    }

    QTemporaryDir m_dir;
    int m_count = 0;
};

void tst_FindingsFile::recordsAreRead()
{
    ImportReport report;

    const auto records = FindingsFile::read("\xEF\xBB\xBF Lateral ,PIPE,Code,distance,angle,clock,quantity\n"
                                            "L7,\"S,1\",BCA,12.5,60,0,150\n,S2,BCC,3,,4,22.5\n,S2,BAB,0,,,\n",
                                            "f.csv", report);

    QCOMPARE(records.size(), 3);
    QVERIFY(report.problems().isEmpty());
    QCOMPARE(report.count(Kinds::Observations).read, 3);
    QCOMPARE(records[0].pipeKey, QStringLiteral("S,1"));
    QCOMPARE(records[0].finding.lateralKey, QStringLiteral("L7"));
    QCOMPARE(records[0].finding.distance, 12.5);
    QCOMPARE(*records[0].finding.clock1, 12);
    QCOMPARE(*records[0].finding.angle, 60.0);
    QCOMPARE(*records[0].finding.q1, 150.0);
    QVERIFY(!records[0].finding.bendClock);
    // Of a bend the clock is whereto it turns, and the quantity of the standard its angle.
    QCOMPARE(*records[1].finding.bendClock, 4);
    QCOMPARE(*records[1].finding.angle, 22.5);
    QVERIFY(!records[1].finding.clock1);
    QVERIFY(!records[2].finding.clock1 && !records[2].finding.angle && !records[2].finding.q1);
    QCOMPARE(records[2].finding.source.line, 4);
}

void tst_FindingsFile::headersAreNeeded_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QByteArray() << "f.csv:1: the first line is no header";
    QTest::newRow("no header") << QByteArray("S1,12.5,BAB\n") << "f.csv:1: the first line is no header";
    QTest::newRow("no code") << QByteArray("pipe,distance\n") << "\"code\" is missing";
    QTest::newRow("twice") << QByteArray("\npipe,distance,code,Pipe\n")
                           << "f.csv:2: the header has two columns \"pipe\"";
    QTest::newRow("other bytes") << QByteArray("pipe,distance,code\nS\xFC"
                                               "d,1,BAB\n")
                                 << "not a text in UTF-8";
    QTest::newRow("open quote") << QByteArray("pipe,distance,code\n\"S1,1,BAB\n") << "f.csv:2: a quote";
}

void tst_FindingsFile::headersAreNeeded()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    ImportReport report;

    QVERIFY(FindingsFile::read(content, "f.csv", report).isEmpty());

    QVERIFY(report.failed());
    QVERIFY2(report.errorText().contains(error), qPrintable(report.errorText()));
    QCOMPARE(report.problems().size(), 1);
}

void tst_FindingsFile::badRecordsAreNamed_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("reason");
    QTest::newRow("pipe") << 4 << "unknown pipe: \"H9\"";
    QTest::newRow("no distance") << 5 << "no distance";
    QTest::newRow("distance") << 6 << "distance is not a number: \"near\"";
    QTest::newRow("negative") << 7 << "distance is negative: -0,5";
    QTest::newRow("beyond") << 8 << "beyond the end of the pipe: 50.2 m of 50 m";
    QTest::newRow("clock") << 9 << "clock is no hour from 0 to 12: \"13\"";
    QTest::newRow("half an hour") << 10 << "clock is no hour from 0 to 12: \"2.5\"";
    QTest::newRow("angle") << 11 << "angle is not a number: \"much\"";
    QTest::newRow("lateral") << 12 << "unknown lateral: \"L9\"";
    QTest::newRow("lateral taken") << 13 << "the lateral has its connection already: \"L1\"";
    QTest::newRow("no connection") << 15 << "the code is none of a connection, but a lateral is named: \"L1\"";
    QTest::newRow("no code") << 16 << "no code";
    QTest::newRow("no pipe") << 17 << "no pipe";
    QTest::newRow("quantity") << 18 << "quantity is not a number: \"many\"";
    QTest::newRow("fields") << 20 << "9 fields where the header has 8";
}

void tst_FindingsFile::badRecordsAreNamed()
{
    QFETCH(int, line);
    static const QString folder = project();
    static ImportReport report;
    if (report.problems().isEmpty())
        QVERIFY(addFindings({folder, {own("findings.csv")}, {}}, report));

    QStringList reasons;
    for (const ImportReport::Problem& problem : report.problems()) {
        if (problem.severity == ImportReport::Severity::LeftOut && problem.source.line == line)
            reasons << problem.reason;
    }
    QCOMPARE(reasons.size(), 1);
    QTEST(reasons.first(), "reason");
    QCOMPARE(report.count(Kinds::Observations).leftOut, 15);
    QCOMPARE(report.count(Kinds::Observations).taken, 4);
    QVERIFY(report.isBalanced());
}

void tst_FindingsFile::anImportTakesThem()
{
    ImportOptions options;
    options.source = own("findings_2017.xml");
    options.project = m_dir.filePath("imported");
    options.findings = QStringList {own("findings.csv"), write("pipe,distance,code\nL2,1,BAB\n")};
    Made made;

    QVERIFY(importProject(options, made.report));

    QCOMPARE(made.report.count(Kinds::Observations).read, 23 + 19 + 1);
    QVERIFY(made.report.isBalanced());
    made.open(options.project);
    QCOMPARE(observations(*made.project, "L1"), QStringList {"BAF@2"});
    QCOMPARE(observations(*made.project, "L2"), QStringList {"BAB@1"});
    QCOMPARE(observations(*made.project, "STRAIGHT").last(), QStringLiteral("BAB@20"));
    // The later inspection of two, after what it has found itself.
    QCOMPARE(observations(*made.project, "SURVEYED"), (QStringList {"BCD@0", "BCA@40", "BCE@50", "BAB@12.5"}));
    const auto crack = observation(*made.project, 0, "BAB");
    QCOMPARE(crack->readValue("OBS_ClockPos1").toInt(), 3);
    QCOMPARE(crack->readValue("OBS_Q1_Value").toDouble(), 1.5);
}

void tst_FindingsFile::anExistingProjectTakesThem()
{
    const QString folder = project();
    Made made;

    QVERIFY(addFindings({folder, {own("findings.csv")}, {}}, made.report));

    made.open(folder);
    QCOMPARE(observations(*made.project, "L1"), QStringList {"BAF@2"});
    QCOMPARE(observations(*made.project, "SURVEYED"), (QStringList {"BCD@0", "BCA@40", "BCE@50", "BAB@12.5"}));
    QCOMPARE(observation(*made.project, 1, "BAB")->readValue("OBS_ClockPos1").toInt(), 12);
    // Once more is once more: nobody can tell that it is the same finding.
    ProjectStore::instance().close(made.project);
    ImportReport again;
    QVERIFY(addFindings({folder, {own("findings.csv")}, {}}, again));
    made.open(folder);
    QCOMPARE(observations(*made.project, "L1").size(), 2);
}

void tst_FindingsFile::theyAreInTheReport()
{
    const QString json = m_dir.filePath("report.json");
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);

    QCOMPARE(runFindings({project(), {own("findings.csv")}, json}, outStream, errStream), 0);

    QVERIFY2(out.contains("observations: 19 read, 4 taken, 15 left out"), qPrintable(out));
    QVERIFY2(err.contains("findings.csv:4: observations H9: left out: unknown pipe: \"H9\""), qPrintable(err));
    QFile file(json);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject report = QJsonDocument::fromJson(file.readAll()).object();
    QVERIFY(report.value("ok").toBool());
    QCOMPARE(report.value("crs").toString(), QStringLiteral("EPSG:25832"));
    QCOMPARE(report.value("kinds").toObject().value("observations").toObject().value("taken").toInt(), 4);
}

void tst_FindingsFile::aFailureChangesNothing()
{
    const QString folder = project();
    const QString good = write("pipe,distance,code\nSURVEYED,1,BAB\n");
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);

    QCOMPARE(runFindings({folder, {good, write("no header\n")}, {}}, outStream, errStream), 1);
    QCOMPARE(runFindings({folder, {good, m_dir.filePath("missing.csv")}, {}}, outStream, errStream), 1);
    QCOMPARE(runFindings({m_dir.filePath("nowhere"), {good}, {}}, outStream, errStream), 1);

    QCOMPARE(err.count("error: "), 3);
    Made made;
    made.open(folder);
    QVERIFY(!observation(*made.project, 0, "BAB"));
    // The same for an import.
    ImportOptions options;
    options.source = own("findings_2017.xml");
    options.project = m_dir.filePath("failed");
    options.findings = QStringList {write("no header\n")};
    QVERIFY(!importProject(options, made.report));
    QVERIFY(!QFileInfo::exists(options.project));
}

void tst_FindingsFile::bendsTurnAStoredCourse()
{
    const QString header = QStringLiteral("pipe,distance,code,clock,angle\n");
    const QString folder = project();
    Made made;

    // STRAIGHT has two bends already: after 10 m to the west, after 15 m up. Now back to the east on the way.
    QVERIFY(addFindings({folder, {write((header + "STRAIGHT,12,BCC,9,90\nSURVEYED,5,BCC,9,90\n").toUtf8())}, {}},
                        made.report));

    made.open(folder);
    const QString shape = made.project->section(1)->inspection(0)->readValue("INS_Shape_WKT").toString();
    const QStringList points = shape.mid(shape.indexOf('(') + 1).chopped(1).split(',');
    QCOMPARE(points.size(), 5);
    QVERIFY(points[0].endsWith(" 192"));
    const auto isAt = [&](int index, double x, double y, double z) {
        const QStringList words = points[index].split(' ');
        return qAbs(words[0].toDouble() - x) < 1e-6 && qAbs(words[1].toDouble() - y) < 1e-6 &&
               qAbs(words[2].toDouble() - z) < 1e-6;
    };
    // Left of somebody who goes west is south; up is up.
    QVERIFY2(isAt(2, 564998, 5932040, 10), qPrintable(points[2]));
    QVERIFY2(isAt(3, 564998, 5932037, 10), qPrintable(points[3]));
    QVERIFY2(isAt(4, 564998, 5932037, 25), qPrintable(points[4]));
    // A surveyed one stays.
    QCOMPARE(made.project->section(0)->inspection(1)->readValue("INS_Shape_WKT").toString(),
             QStringLiteral("LINESTRING ZM(565000 5932050 10 192,565000 5932000 10 0)"));
}

void tst_FindingsFile::aCourseThatWasChangedStays()
{
    const QString folder = project();
    const QString moved = QStringLiteral("LINESTRING ZM(565000 5932050 10 192,565000 5932020 10 0)");
    Made made;
    made.open(folder);
    const auto inspection = made.project->section(1)->inspection(0);
    inspection->updateValue("INS_Shape_WKT", moved);
    QVERIFY(ProjectStore::instance().writeObject(inspection, 0));
    ProjectStore::instance().close(made.project);

    QVERIFY(addFindings({folder, {write("pipe,distance,code,clock,angle\nSTRAIGHT,12,BCC,9,90\n")}, {}}, made.report));

    QCOMPARE(made.report.problems().size(), 1);
    QVERIFY(made.report.problems().first().reason.contains("its course was changed"));
    made.open(folder);
    QCOMPARE(made.project->section(1)->inspection(0)->readValue("INS_Shape_WKT").toString(), moved);
    QCOMPARE(made.report.count(Kinds::Observations).taken, 1);
}

void tst_FindingsFile::aLateralThatIsConnectedStays()
{
    const QString folder = project("network_only.xml");
    Made made;
    made.open(folder);
    QVERIFY(made.project);
    const QString section = made.project->section(0)->readValue("OBJ_Key").toString();
    const QString lateral = made.project->lateral(0)->readValue("OBJ_Key").toString();
    ProjectStore::instance().close(made.project);
    const QString file =
        write(QStringLiteral("pipe,distance,code,lateral\n%1,1,BCA,%2\n%1,2,BCA,%2\n").arg(section, lateral).toUtf8());

    QVERIFY(addFindings({folder, {file}, {}}, made.report));

    QCOMPARE(made.report.count(Kinds::Observations).taken, 1);
    QCOMPARE(made.report.count(Kinds::Observations).leftOut, 1);
    ImportReport again;
    QVERIFY(addFindings({folder, {file}, {}}, again));
    QCOMPARE(again.count(Kinds::Observations).leftOut, 2);
    made.open(folder);
    QCOMPARE(observation(*made.project, 0, "BCA")->readValue("OBS_LateralSection_REF").toString(),
             made.project->lateral(0)->id());
}

void tst_FindingsFile::feetAreKept()
{
    const QString folder = project();
    {
        BulkWriter writer;
        QVERIFY(writer.begin(folder));
        QVERIFY(writer.setProjectValues({{"PRJ_DistanceUnit", 2}}));
        QVERIFY(writer.commit());
    }
    Made made;

    QVERIFY(addFindings({folder, {write("pipe,distance,code\nSTRAIGHT,3.048,BAB\n")}, {}}, made.report));

    made.open(folder);
    QVERIFY(qAbs(observation(*made.project, 1, "BAB")->readValue("OBS_Distance").toDouble() - 10.0) < 1e-9);
}

void tst_FindingsFile::anOpenProjectHearsOfThem()
{
    const QString folder = project();
    Made made;
    made.open(folder);
    const auto inspection = made.project->section(1)->inspection(0);
    const int before = inspection->observationCount();

    QVERIFY(addFindings({folder, {write("pipe,distance,code,clock,angle\nSTRAIGHT,12,BCC,9,90\n")}, {}}, made.report));

    QTRY_COMPARE(inspection->observationCount(), before + 1);
    QTRY_COMPARE(inspection->readValue("INS_Shape_WKT").toString().count(','), 4);
}

QTEST_GUILESS_MAIN(tst_FindingsFile)
#include "tst_FindingsFile.moc"
