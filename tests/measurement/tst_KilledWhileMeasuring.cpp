#include "LiveRun.h"

#include "common/TestProject.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

using Kx::Test::TestProject;
using namespace Torvik::Database;
namespace LiveRun = Kx::Test::LiveRun;

namespace {

constexpr quint32 seed = 20260407;
constexpr int longestRunMs = 2500;

/** Rounds of a normal run, or as many as KX_KILL_ROUNDS says. */
int rounds()
{
    bool ok = false;
    const int wanted = qEnvironmentVariableIntValue("KX_KILL_ROUNDS", &ok);
    return ok && wanted > 0 ? wanted : 10;
}

/** What the program had told when it was killed; a line that was cut off was not told. */
struct Told {
    explicit Told(const QByteArray& output)
    {
        QList<QByteArray> lines = output.split('\n');
        lines.removeLast();
        for (const QByteArray& line : qAsConst(lines)) {
            const QString text = QString::fromUtf8(line);
            const QString value = text.section(QLatin1Char(' '), 1);
            if (text.startsWith(QLatin1String("fed ")))
                fed = value.toInt();
            else if (text.startsWith(QLatin1String("stored ")))
                stored = value.toInt();
            else if (text.startsWith(QLatin1String("flushed ")))
                shape = value;
        }
    }

    int fed = 0;
    int stored = 0;
    /** Of the last flush; empty before the first. */
    QString shape;
};

/** The vertices of a line by their first ordinates: the last one of each holds flags. */
QStringList verticesOf(const QString& line, int ordinates)
{
    QStringList vertices;
    const QString inner = line.section(QLatin1Char('('), 1).section(QLatin1Char(')'), 0, 0);
    for (const QString& vertex : inner.split(QLatin1Char(','), Qt::SkipEmptyParts))
        vertices << vertex.trimmed().section(QLatin1Char(' '), 0, ordinates - 1);
    return vertices;
}

QString ordinate(float value)
{
    return QString::number(double(value), 'g', 6);
}

QString textOf(const QVector3D& point)
{
    return QStringList {ordinate(point.x()), ordinate(point.y()), ordinate(point.z())}.join(QLatin1Char(' '));
}

/** Whether `vertices` goes on from where `before` ended. The newest vertex comes first. */
bool continues(const QStringList& vertices, const QStringList& before)
{
    return vertices.size() >= before.size() && vertices.mid(vertices.size() - before.size()) == before;
}

QString difference(const QStringList& vertices, const QStringList& before)
{
    const int count = qMin(vertices.size(), before.size());
    int same = 0;
    while (same < count && vertices[vertices.size() - 1 - same] == before[before.size() - 1 - same])
        ++same;
    return QStringLiteral("%1 vertices where %2 were told to be stored, the same up to %3: %4 instead of %5")
        .arg(vertices.size())
        .arg(before.size())
        .arg(same)
        .arg(vertices.value(vertices.size() - 1 - same), before.value(before.size() - 1 - same));
}

QStringList rowsOf(const TestProject& project, const QString& inspection)
{
    return project
        .stored("SECMP JOIN SECMES ON MP_Measurement_FK = MES_PK", "MES_Inspection_FK", inspection,
                "group_concat(printf('%.9g %.9g %.9g', MP_X_Value, MP_Y_Value, MP_Z_Value), ';')")
        .toString()
        .split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

struct Totals {
    int points = 0;
    int flushes = 0;
    int untold = 0;
    int early = 0;
};

} // namespace

/** A process that measures is killed at any moment: what it had told to be stored is in the project. */
class tst_KilledWhileMeasuring : public QObject {
    Q_OBJECT

private slots:
    void whatWasToldIsThere();
    void whatWasToldInsideACourseIsThere();

private:
    static QByteArray runAndKill(const TestProject& project, const QString& inspection, QRandomGenerator& random,
                                 float begin = LiveRun::pipeLength);
    static void look(TestProject& project, const QString& inspection, const Told& told, Totals& totals);
};

QByteArray tst_KilledWhileMeasuring::runAndKill(const TestProject& project, const QString& inspection,
                                                QRandomGenerator& random, float begin)
{
    QProcess host;
    host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    host.start(KX_LIVE_HOST,
               {project.path(), inspection, QString::number(random.generate()), QString::number(double(begin))});
    QByteArray output;
    while (!output.contains("ready\n") && host.waitForReadyRead(20000))
        output += host.readAllStandardOutput();
    if (!output.contains("ready\n"))
        return {};
    // The moment is what is tested, so it is a time and no signal.
    host.waitForFinished(int(random.bounded(longestRunMs)));
    host.kill();
    host.waitForFinished(20000);
    return host.exitStatus() == QProcess::CrashExit ? output + host.readAllStandardOutput() : QByteArray();
}

void tst_KilledWhileMeasuring::look(TestProject& project, const QString& inspection, const Told& told, Totals& totals)
{
    // As the next start of a program finds it.
    project.reopen();
    QCOMPARE(project.stored("pragma_integrity_check", "'x'", "x", "group_concat(integrity_check)").toString(),
             QStringLiteral("ok"));
    const QStringList rows = rowsOf(project, inspection);
    QVERIFY2(rows.size() <= told.fed + 1, qPrintable(rows.join(QLatin1Char(';'))));
    const QStringList line =
        verticesOf(project.stored("SECMES", "MES_Inspection_FK", inspection, "MES_TxtValues").toString(), 3);
    for (int reading = 1; reading <= told.stored; ++reading) {
        const QString point = textOf(LiveRun::place(reading));
        QVERIFY2(rows.contains(point), qPrintable(QStringLiteral("%1: %2").arg(reading).arg(point)));
        QVERIFY2(line.contains(point), qPrintable(QStringLiteral("%1: %2").arg(reading).arg(point)));
    }
    const QString shape =
        project.project()->lookupObject(inspection)->readValue(QStringLiteral("INS_Shape_WKT")).toString();
    const QStringList vertices = verticesOf(shape, 3);
    const QStringList flushed = verticesOf(told.shape.isEmpty() ? LiveRun::pipeShape : told.shape, 3);
    QVERIFY2(continues(vertices, flushed), qPrintable(difference(vertices, flushed)));
    QVERIFY2(vertices.size() <= told.fed + 2, qPrintable(shape));
    totals.points += told.stored;
    totals.flushes += told.shape.isEmpty() ? 0 : 1;
    totals.untold += rows.size() > told.stored + 1 ? 1 : 0;
    totals.early += told.stored == 0 ? 1 : 0;
}

void tst_KilledWhileMeasuring::whatWasToldIsThere()
{
    QRandomGenerator random(seed);
    Totals totals;
    for (int round = 0; round < rounds(); ++round) {
        TestProject project(QStringLiteral("LOCAL_CS[\"site\"]"));
        const QString inspection =
            project.addInspection(project.addSection("S", {}, {}), QString::fromLatin1(LiveRun::pipeShape))->id();
        project.close();

        const QByteArray output = runAndKill(project, inspection, random);
        QVERIFY2(!output.isEmpty(), "the program did not measure until it was killed");
        look(project, inspection, Told(output), totals);
        if (QTest::currentTestFailed()) {
            qWarning("in round %d of seed %u", round, seed);
            return;
        }
    }
    qInfo("%d kills: %d points told to be stored, all there; %d after a flush, %d before the first stored point, "
          "%d with points stored that were not told yet",
          rounds(), totals.points, totals.flushes, totals.early, totals.untold);
    QVERIFY(totals.points > 0);
}

void tst_KilledWhileMeasuring::whatWasToldInsideACourseIsThere()
{
    QRandomGenerator random(seed + 1);
    int points = 0;
    int shifted = 0;
    for (int round = 0; round < rounds(); ++round) {
        TestProject project(QStringLiteral("LOCAL_CS[\"site\"]"));
        const QString inspection =
            project.addInspection(project.addSection("S", {}, {}), QString::fromLatin1(LiveRun::longShape))->id();
        project.close();

        // The course behind is not among the measured points, and the program says so with each reading.
        qputenv("KX_LOG_LEVEL", "0");
        const QByteArray output = runAndKill(project, inspection, random, 0.0F);
        qunsetenv("KX_LOG_LEVEL");

        QVERIFY2(!output.isEmpty(), "the program did not measure until it was killed");
        const Told told(output);
        project.reopen();
        QCOMPARE(project.stored("pragma_integrity_check", "'x'", "x", "group_concat(integrity_check)").toString(),
                 QStringLiteral("ok"));
        const QStringList rows = rowsOf(project, inspection);
        for (int reading = 1; reading <= told.stored; ++reading)
            QVERIFY2(rows.contains(textOf(LiveRun::place(reading, 0.0F))),
                     qPrintable(QStringLiteral("round %1, reading %2").arg(round).arg(reading)));
        const QString shape =
            project.project()->lookupObject(inspection)->readValue(QStringLiteral("INS_Shape_WKT")).toString();
        QVERIFY(verticesOf(shape, 3).size() >= verticesOf(told.shape, 3).size());
        points += told.stored;
        shifted += told.fed > told.stored ? 1 : 0;
    }
    qInfo("%d kills: %d points told to be stored, all there; %d while others were on their way", rounds(), points,
          shifted);
    QVERIFY(points > 0);
}

QTEST_GUILESS_MAIN(tst_KilledWhileMeasuring)
#include "tst_KilledWhileMeasuring.moc"
