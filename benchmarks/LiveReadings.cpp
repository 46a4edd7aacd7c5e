#include "benchmarks/LiveCases.h"
#include "benchmarks/LivePipe.h"
#include "benchmarks/Samples.h"
#include "benchmarks/Stopwatch.h"
#include "domain/boundary/AppState.h"
#include "domain/boundary/GUID.h"
#include "host/domain/SqlConnection.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/MeasurementStatements.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneRoot.h"

#include <cmath>

namespace Torvik::Bench {

using View3d::MeasurementPointsHandler;
using View3d::Pipe;

namespace {

constexpr int readings = 10000;
constexpr int observations = 20;
constexpr double stepM = 0.05;
constexpr double radiusM = 400.0;
/** Cable that lies not quite straight: the counter is ahead of the course. */
constexpr double slack = 1.002;
constexpr int neighbours = 100;
constexpr int readingsPerFrame = 100;
constexpr int bareOnes = 1000;
/** The course is written 700 ms after the last reading; what that sets off follows. */
constexpr int untilStoredMs = 2500;
constexpr double boundMs = 1.0;
constexpr double boundOfGrowth = 2.0;

/** A slow turn, in the pipe's frame. */
QVector3D placeAt(double way)
{
    const double angle = way / radiusM;
    return {static_cast<float>(radiusM * (1.0 - std::cos(angle))), 0.0F, static_cast<float>(radiusM * std::sin(angle))};
}

struct Run {
    Samples processor;
    Samples clock;
    double mainThreadMs = 0.0; ///< with what the event loop does between the readings
};

Run readAll(const LivePipe& pipe)
{
    Run run;
    const Stopwatch all;
    for (int i = 1; i <= readings; ++i) {
        const QVector3D place = placeAt(i * stepM);
        const Stopwatch clock;
        LivePipe::read(place, i * stepM * slack + stepM);
        const Span span = clock.elapsed();
        run.processor.add(span.processorMs);
        run.clock.add(span.wallMs);
        if (pipe.stage().kind() == Stage::Headless || i % readingsPerFrame == 0)
            pipe.stage().waitFrames(1);
    }
    run.mainThreadMs = all.elapsed().processorMs;
    return run;
}

/** What was measured must be in the project, or the figures are those of nothing. */
void requireStored(const LivePipe& pipe)
{
    const int expected = pipe.section().pipe()->segmentCount() + 1;
    if (expected < readings || pipe.storedPoints() != readings + 1 || pipe.pointsOfStoredLine() != readings + 1 ||
        pipe.pointsOfStoredCourse() != expected)
        qFatal("Of %d readings %d points, a line of %d and a course of %d are stored; the pipe has %d points.",
               readings, pipe.storedPoints(), pipe.pointsOfStoredLine(), pipe.pointsOfStoredCourse(), expected);
}

double bareInsertMs(const LivePipe& pipe)
{
    Database::StoreStatus status;
    const auto connection =
        Database::SqlConnection::open(pipe.databaseFile(), Database::SqlConnection::ReadWrite, status);
    if (!connection)
        qFatal("%s", qPrintable(status.error));
    const QDateTime now = QDateTime::currentDateTime();
    const QString key = connection->value(QStringLiteral("SELECT MES_PK FROM SECMES"), status).toString();
    QStringList statements;
    for (int i = 0; i < bareOnes; ++i)
        statements << View3d::MeasurementStatements::addPoint(Database::CGuidHelper::createGuid(), key,
                                                              placeAt(i * stepM), i + 1, now);
    const Stopwatch clock;
    for (const QString& statement : qAsConst(statements)) {
        if (const auto done = connection->execute(statement); !done)
            qFatal("%s", qPrintable(done.error));
    }
    return clock.elapsed().processorMs / bareOnes;
}

/** A pipe of as many segments that nobody listens to. */
double bareSegmentMs()
{
    auto* const holder = new Qt3DCore::QEntity(View3d::SceneRoot::instance());
    Pipe* const pipe = Pipe::create(holder, {}, 0.15F);
    const Stopwatch clock;
    for (int i = 1; i <= bareOnes; ++i)
        pipe->addPoint(placeAt(i * stepM));
    return clock.elapsed().processorMs / bareOnes;
}

} // namespace

FigureList measureReadings(Stage::Kind stage)
{
    const LivePipe& pipe = *new LivePipe(stage, {readings * stepM, observations, 0});
    pipe.startMeasuring();
    const Run run = readAll(pipe);
    const Stopwatch storing;
    MeasurementPointsHandler::instance()->waitUntilStored();
    const double restMs = storing.elapsed().wallMs;
    const Stopwatch flushing;
    pipe.stage().waitMs(untilStoredMs);
    const double flushMs = flushing.elapsed().processorMs;
    requireStored(pipe);

    const double hundredth = run.processor.medianAt(neighbours / 2, neighbours);
    const double last = run.processor.medianAt(readings - neighbours, neighbours);
    const double segmentMs = bareSegmentMs();
    const double insertMs = bareInsertMs(pipe);
    FigureList figures;
    figures.add(QStringLiteral("a reading, median, ms"), run.processor.median(), 3);
    figures.add(QStringLiteral("99 of 100 readings, ms"), run.processor.percentile99(), 3, boundMs);
    figures.add(QStringLiteral("99 of 100 readings, ms on the clock"), run.clock.percentile99(), 3);
    figures.add(QStringLiteral("worst reading, ms"), run.processor.worst(), 3);
    figures.add(QStringLiteral("about the hundredth, ms"), hundredth, 3);
    figures.add(QStringLiteral("about the ten-thousandth, ms"), last, 3);
    figures.add(QStringLiteral("ten-thousandth against the hundredth"), last / hundredth, 2, boundOfGrowth);
    figures.add(QStringLiteral("main thread a reading, event loop included, ms"), run.mainThreadMs / readings, 3);
    figures.add(QStringLiteral("a segment of a pipe alone, ms"), segmentMs, 3);
    figures.add(QStringLiteral("a reading against a segment alone"), run.processor.median() / segmentMs, 2);
    figures.add(QStringLiteral("a bare INSERT, ms"), insertMs, 3);
    figures.add(QStringLiteral("a reading against a bare INSERT"), run.processor.median() / insertMs, 2);
    figures.add(QStringLiteral("until the last is stored, ms on the clock"), restMs, 0);
    figures.add(QStringLiteral("storing the course at the end, ms"), flushMs, 1);
    return figures;
}

} // namespace Torvik::Bench
