#include "benchmarks/LiveScene.h"
#include "benchmarks/StarNetwork.h"
#include "benchmarks/Stopwatch.h"
#include "benchmarks/TouchCases.h"
#include "domain/boundary/AppState.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"

#include <QTemporaryDir>

namespace Torvik::Bench {

using View3d::Pipe;
using View3d::SceneEntities;
using View3d::Section;

namespace {

constexpr int rounds = 9;
constexpr int settleFrames = 2;
constexpr int observations = 5;
/** Ten times the segments may cost twelve times as much. */
constexpr double growthPerTenfold = 12.0;
/** A chain with one more bend need not cost more than the whole chain. */
constexpr double ratioToBuilding = 1.0;
constexpr float bendClock = 3.0F;
constexpr float bendAngleDeg = 10.0F;

struct Costs {
    Least section;
    Least pipe;
    Least building;
};

template <typename Action>
void measure(Least& least, const Stage& stage, Action action)
{
    const Stopwatch clock;
    action();
    least.add(clock.elapsed());
    stage.waitFrames(settleFrames);
}

Section* openChain(const LiveScene& scene, const QString& folder, int segments)
{
    StarOptions options;
    options.segmentsPerPipe = segments;
    options.observationsPerPipe = observations;
    if (const QString error = makeStar(folder, options); !error.isEmpty())
        qFatal("%s", qPrintable(error));
    scene.open(folder);
    auto* const section = SceneEntities::instance().getPipeEntities().getByInspectionId(starInspection(0));
    if (!section || section->pipe()->segmentCount() != segments)
        qFatal("The chain of %d segments is not in the scene.", segments);
    return section;
}

Costs measureChain(const Stage& stage, Section& section, int segments)
{
    Pipe& pipe = *section.pipe();
    const auto points = pipe.getShapePoints();
    const float middle = static_cast<float>(segments / 2) + 0.5F;
    const QQuaternion turn = QQuaternion::fromAxisAndAngle({0.0F, 1.0F, 0.0F}, bendAngleDeg);
    const auto needsSplit = [&] {
        if (pipe.segmentCount() != segments + 1)
            qFatal("The bend did not split its segment.");
    };
    Costs costs;
    for (int i = 0; i < rounds; ++i) {
        measure(costs.section, stage, [&] { section.addBend(bendClock, bendAngleDeg, middle); });
        needsSplit();
        measure(costs.building, stage, [&] { pipe.updatePoints(points); });
        measure(costs.pipe, stage, [&] { pipe.modifySegmentsRotation(turn, middle); });
        needsSplit();
        measure(costs.building, stage, [&] { pipe.updatePoints(points); });
    }
    return costs;
}

} // namespace

FigureList measureBending(Stage::Kind stage)
{
    const LiveScene& scene = *new LiveScene(stage);
    FigureList figures;
    double previous = 0.0;
    for (const int segments : {10, 100, 1000}) {
        const QTemporaryDir dir;
        Section* const section = openChain(scene, dir.filePath(QStringLiteral("chain")), segments);
        const Costs costs = measureChain(scene.stage(), *section, segments);
        const double bend = costs.section.span().processorMs;
        const double building = costs.building.span().processorMs;
        const QString of = QStringLiteral("%1 segments: ").arg(segments);
        figures.add(of + QStringLiteral("new bend, ms"), bend, 3);
        figures.add(of + QStringLiteral("in the pipe alone, ms"), costs.pipe.span().processorMs, 3);
        figures.add(of + QStringLiteral("building the chain, ms"), building, 3);
        figures.add(of + QStringLiteral("new bend against building"), bend / building, 2, ratioToBuilding);
        if (previous > 0.0)
            figures.add(of + QStringLiteral("new bend against a tenth of them"), bend / previous, 2, growthPerTenfold);
        previous = bend;
        scene.close(AppState::instance().getActiveProject().staticCast<Database::CProjectObject>());
    }
    return figures;
}

} // namespace Torvik::Bench
