// What it costs to store a measurement: through the handler, and by the same statements run one by one.
#include "benchmarks/Stopwatch.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/GUID.h"
#include "host/domain/ProjectStore.h"
#include "measurement/MeasuredLine.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/MeasurementStatements.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

using namespace Torvik;
using Torvik::View3d::MeasurementPointsHandler;

namespace {

constexpr int rounds = 5;

[[noreturn]] void giveUp(const QString& reason)
{
    std::fprintf(stderr, "%s\n", qPrintable(reason));
    std::exit(1);
}

/** As a sensor measures: bending a little, with digits behind the point. */
QVector3D measuredPoint(int i)
{
    const float distance = float(i) * 0.05F;
    return {0.013F * distance, -0.0071F * distance, 1.0003F * distance};
}

/** A project with a pipe, open as long as this lives. */
class BenchProject {
public:
    explicit BenchProject(const QString& folder)
        : m_folder(folder)
    {
        const auto made = Database::ProjectStore::create(folder, {});
        const auto opened = Database::ProjectStore::instance().open(folder);
        m_project = opened.project;
        if (!m_project)
            giveUp(made.error + opened.error);
        const auto pipe = Database::ProjectStore::instance().insertObject(m_project, Database::SectionObjectType, {});
        m_pipe = pipe.object;
    }
    ~BenchProject() { Database::ProjectStore::instance().close(m_project); }
    BenchProject(const BenchProject&) = delete;
    BenchProject& operator=(const BenchProject&) = delete;

    QString newInspection() const
    {
        return Database::ProjectStore::instance()
            .insertObject(m_pipe, Database::PipeInspectionObjectType, {})
            .object->id();
    }
    const QSharedPointer<Database::CProjectObject>& project() const { return m_project; }
    QString databaseFile() const { return Database::ProjectStore::databaseFile(m_folder); }

private:
    QString m_folder;
    QSharedPointer<Database::CProjectObject> m_project;
    CDomainObjectPointer m_pipe;
};

/** A connection with nothing of ours about it; what counts for speed is set as in a project's other connections. */
class BareConnection {
public:
    explicit BareConnection(const QString& file)
        : m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bare")))
    {
        m_database.setDatabaseName(file);
        if (!m_database.open())
            giveUp(m_database.lastError().text());
        run(QStringLiteral("PRAGMA foreign_keys = ON"));
    }

    void run(const QString& statement) const
    {
        QSqlQuery query(m_database);
        if (!query.exec(statement))
            giveUp(query.lastError().text());
    }
    int value(const QString& statement) const
    {
        QSqlQuery query(statement, m_database);
        return query.next() ? query.value(0).toInt() : -1;
    }

private:
    QSqlDatabase m_database;
};

struct Times {
    Bench::Least called;
    Bench::Least stored;
    Bench::Least oneByOne;
    Bench::Least bare;
    Bench::Least bareInserts;
};

QString openedMeasurement(const BenchProject& project)
{
    auto* const handler = MeasurementPointsHandler::instance();
    const QString id = project.newInspection();
    handler->createNewSecMes(id);
    handler->waitUntilStored();
    return id;
}

void measureHandler(const BenchProject& project, int points, Times& times)
{
    auto* const handler = MeasurementPointsHandler::instance();
    QString id = openedMeasurement(project);
    const Bench::Stopwatch burst;
    for (int i = 0; i < points; ++i)
        handler->addRowToSECMP(id, measuredPoint(i), i, false);
    times.called.add(burst.elapsed());
    handler->waitUntilStored();
    times.stored.add(burst.elapsed());

    id = openedMeasurement(project);
    const Bench::Stopwatch single;
    for (int i = 0; i < points; ++i) {
        handler->addRowToSECMP(id, measuredPoint(i), i, false);
        handler->waitUntilStored();
    }
    times.oneByOne.add(single.elapsed());
}

struct Statements {
    QStringList inserts;
    QStringList lines;
};

/** What the handler would run, for a measurement of its own. */
Statements statementsFor(const BenchProject& project, const BareConnection& bare, int points)
{
    using namespace View3d;
    const QDateTime now = QDateTime::currentDateTime();
    const QString key = Database::CGuidHelper::createGuid();
    bare.run(MeasurementStatements::createMeasurement(key, project.newInspection(), now));
    Statements statements;
    MeasuredLine line;
    for (int i = 0; i < points; ++i) {
        line.insert(i, measuredPoint(i));
        statements.inserts << MeasurementStatements::addPoint(Database::CGuidHelper::createGuid(), key,
                                                              measuredPoint(i), i + 1, now);
        statements.lines << MeasurementStatements::storeLine(line.text(), key);
    }
    return statements;
}

void measureBare(const BenchProject& project, const BareConnection& bare, int points, Times& times)
{
    const Statements both = statementsFor(project, bare, points);
    const Bench::Stopwatch bothWatch;
    for (int i = 0; i < points; ++i) {
        bare.run(both.inserts[i]);
        bare.run(both.lines[i]);
    }
    times.bare.add(bothWatch.elapsed());

    const Statements inserts = statementsFor(project, bare, points);
    const Bench::Stopwatch insertWatch;
    for (const QString& insert : inserts.inserts)
        bare.run(insert);
    times.bareInserts.add(insertWatch.elapsed());
}

void print(const char* what, const Bench::Span& span, int points)
{
    std::printf("| %s | %.1f | %.3f | %.1f |\n", what, span.wallMs, span.wallMs / points, span.processorMs);
}

void report(int points, const Times& times)
{
    std::printf("| %d points | ms on the clock | a point | ms of the caller's thread |\n| --- | ---: | ---: | ---: |\n",
                points);
    print("handler: called", times.called.span(), points);
    print("handler: stored", times.stored.span(), points);
    print("handler: stored, each waited for", times.oneByOne.span(), points);
    print("bare SQLite: the same statements", times.bare.span(), points);
    print("bare SQLite: the INSERTs alone", times.bareInserts.span(), points);
    std::printf("\nstored against the same statements: %.2f; each waited for: %.2f\n",
                times.stored.span().wallMs / times.bare.span().wallMs,
                times.oneByOne.span().wallMs / times.bare.span().wallMs);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const int points = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 1000;
    if (points < 1)
        giveUp(QStringLiteral("usage: kx_measurement_bench [POINTS]"));
    const BenchProject project(folder.filePath(QStringLiteral("p")));
    AppState::instance().setActiveProject(project.project());
    const BareConnection bare(project.databaseFile());
    Times times;
    for (int i = 0; i < rounds; ++i) {
        measureHandler(project, points, times);
        measureBare(project, bare, points, times);
    }
    const int stored = bare.value(QStringLiteral("SELECT count(*) FROM SECMP"));
    if (stored != 4 * rounds * points)
        giveUp(QStringLiteral("%1 points are stored instead of %2").arg(stored).arg(4 * rounds * points));
    report(points, times);
    return 0;
}
