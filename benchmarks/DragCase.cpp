#include "benchmarks/LiveScene.h"
#include "benchmarks/StarNetwork.h"
#include "benchmarks/Stopwatch.h"
#include "benchmarks/TouchCases.h"
#include "benchmarks/WriteWatch.h"
#include "network/Node.h"
#include "network/Observation.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>

namespace Torvik::Bench {

using View3d::Node;
using View3d::SceneEntities;
using View3d::TransformFlags;

namespace {

constexpr int pipes = 8;
constexpr int observationsPerPipe = 5;
constexpr int segmentsPerPipe = 4;
constexpr double segmentM = 5.0;
/** A round is longer than the pauses after which a change counts as over and is written. */
constexpr int framesPerRound = 120;
constexpr int rounds = 5;
constexpr int frameMs = 16;
/** The first writes come in this time; what they set off may still follow. */
constexpr int untilStoredMs = 2500;
constexpr double boundMs = 4.0;

struct Round {
    double meanMs = 0.0;
    double worstMs = 0.0;
    double frameMs = 0.0; ///< the main thread's time in a frame, Qt's own included
};

QVector<QVector3D> places()
{
    QVector<QVector3D> all;
    for (int pipe = 0; pipe < pipes; ++pipe)
        all.append(SceneEntities::instance().getPipeEntities().getByInspectionId(starInspection(pipe))->position());
    const auto& observations = SceneEntities::instance().getObservations();
    for (const auto* observation : observations)
        all.append(observation->position());
    return all;
}

/** As TouchControl moves the object under the finger: one step before each frame. */
Round drag(const Stage& stage, Node& node)
{
    const QVector3D step(0.02F, 0.0F, 0.01F);
    Round round;
    double sum = 0.0;
    const Stopwatch all;
    for (int i = 0; i < framesPerRound; ++i) {
        const Stopwatch clock;
        node.move(step, TransformFlags::Manual);
        const double ms = clock.elapsed().processorMs;
        sum += ms;
        round.worstMs = std::max(round.worstMs, ms);
        if (stage.kind() == Stage::Window)
            stage.waitFrames(1);
        else
            stage.waitMs(frameMs);
    }
    round.meanMs = sum / framesPerRound;
    round.frameMs = all.elapsed().processorMs / framesPerRound;
    return round;
}

/** What hangs on the manhole must have come along, or the figures are those of nothing. */
void requireAllMoved(const QVector<QVector3D>& before, const QVector3D& way)
{
    const auto after = places();
    constexpr float tolerance = 0.05F;
    for (int i = 0; i < before.size(); ++i) {
        if ((after[i] - before[i] - way).length() > tolerance)
            qFatal("Object %d of %d did not come along.", i, int(before.size()));
    }
}

void measureStar(const LiveScene& scene, bool laterals, FigureList& figures)
{
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("star"));
    const StarOptions options {pipes, segmentsPerPipe, segmentM, observationsPerPipe, laterals};
    if (const QString error = makeStar(folder, options); !error.isEmpty())
        qFatal("%s", qPrintable(error));
    const auto project = scene.open(folder);
    Node* const node = SceneEntities::instance().getNodes().value(starCentre());
    if (!node || SceneEntities::instance().getObservations().size() != pipes * observationsPerPipe)
        qFatal("The star is not in the scene.");
    scene.lookDown(node->position(), 120.0F);
    scene.stage().waitMs(untilStoredMs);

    WriteWatch writes(folder);
    const auto before = places();
    const QVector3D begin = node->position();
    Round least {1e9, 1e9, 1e9};
    QElapsedTimer duration;
    duration.start();
    for (int i = 0; i < rounds; ++i) {
        const Round round = drag(scene.stage(), *node);
        least.meanMs = std::min(least.meanMs, round.meanMs);
        least.worstMs = std::min(least.worstMs, round.worstMs);
        least.frameMs = std::min(least.frameMs, round.frameMs);
    }
    const double seconds = static_cast<double>(duration.elapsed()) / 1000.0;
    const int notifications = writes.notifications();
    const int changes = writes.loggedChanges();
    requireAllMoved(before, node->position() - begin);
    writes.start();
    scene.stage().waitMs(untilStoredMs);

    const QString of = laterals ? QStringLiteral("with 8 laterals: ") : QString();
    figures.add(of + QStringLiteral("a step in the view, ms"), least.meanMs, 3, boundMs);
    figures.add(of + QStringLiteral("worst step of a round, ms"), least.worstMs, 3, boundMs);
    figures.add(of + QStringLiteral("main thread in a frame, Qt's part included, ms"), least.frameMs, 2);
    figures.add(of + QStringLiteral("length of the drag, s"), seconds, 1);
    figures.add(of + QStringLiteral("notifications of writes in the drag"), notifications, 0, 0.0);
    figures.add(of + QStringLiteral("changes in the database in the drag"), changes, 0, 0.0);
    figures.add(of + QStringLiteral("changes in the database in the 2.5 s after it"), writes.loggedChanges(), 0);
    scene.close(project);
}

} // namespace

FigureList measureDragging(Stage::Kind stage)
{
    const LiveScene& scene = *new LiveScene(stage);
    FigureList figures;
    measureStar(scene, false, figures);
    measureStar(scene, true, figures);
    return figures;
}

} // namespace Torvik::Bench
