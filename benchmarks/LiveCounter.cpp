#include "benchmarks/LiveCases.h"
#include "benchmarks/LivePipe.h"
#include "benchmarks/Samples.h"
#include "benchmarks/Stopwatch.h"
#include "measurement/SystemControlProxy.h"
#include "network/Observation.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <cmath>

namespace Torvik::Bench {

using View3d::SceneEntities;
using View3d::SystemControlProxy;

namespace {

constexpr int steps = 10000;
constexpr int observations = 100;
constexpr int laterals = 5;
constexpr double lengthM = 100.0;
constexpr int stepsPerFrame = 16;
constexpr double boundMs = 1.0;

/** Each observation the pipe has reached must stand at its place, or the figures are those of nothing. */
void requireFollowed(const LivePipe& pipe)
{
    if (std::abs(pipe.section().length() - lengthM) > 0.02)
        qFatal("The pipe is %.2f m long.", pipe.section().length());
    const auto& known = SceneEntities::instance().getObservations();
    for (const auto* observation : known) {
        const QVector3D place =
            pipe.section().pipeTransMatrixAtDistance(observation->getDistance()).column(3).toVector3D();
        if ((place - observation->position()).length() > 0.01F)
            qFatal("An observation did not follow.");
    }
}

} // namespace

FigureList measureCounter(Stage::Kind stage)
{
    const LivePipe& pipe = *new LivePipe(stage, {lengthM, observations, laterals});
    if (SceneEntities::instance().getLateralConnections().size() != laterals)
        qFatal("The laterals are not in the scene.");
    auto& vehicle = SystemControlProxy::instance();
    Samples cost;
    const Stopwatch all;
    for (int i = 1; i <= steps; ++i) {
        const Stopwatch clock;
        vehicle.setSectionDistanceCounter(static_cast<float>(lengthM * i / steps));
        cost.add(clock.elapsed().processorMs);
        if (i % stepsPerFrame == 0)
            pipe.stage().waitFrames(1);
    }
    const Span run = all.elapsed();
    requireFollowed(pipe);

    FigureList figures;
    figures.add(QStringLiteral("a step, mean, ms"), cost.mean(), 3, boundMs);
    figures.add(QStringLiteral("a step, median, ms"), cost.median(), 3);
    figures.add(QStringLiteral("99 of 100 steps, ms"), cost.percentile99(), 3);
    figures.add(QStringLiteral("main thread a step, event loop included, ms"), run.processorMs / steps, 3, boundMs);
    figures.add(QStringLiteral("steps a second that the main thread can take"), steps * 1000.0 / run.processorMs, 0);
    return figures;
}

} // namespace Torvik::Bench
