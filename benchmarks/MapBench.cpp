/* kx_map_bench: what the street map under the scene costs, while the view orbits and while nothing moves. */

#include "benchmarks/FigureList.h"
#include "benchmarks/GridTown.h"
#include "benchmarks/MapStage.h"

#include "scene/SceneApplication.h"

#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace Torvik::Bench;

namespace {

constexpr int pipes = 1000;
constexpr float streetM = 42.0F;
constexpr int rounds = 3;
constexpr int orbitFrames = 45;
constexpr int idleMs = 5000;

struct Frames {
    MapStage::FrameTime without;
    MapStage::FrameTime with;
};

/** In turns: what else the machine does meets both. */
Frames orbit(MapStage& stage)
{
    Frames least;
    for (int i = 0; i < 2 * rounds; ++i) {
        const bool shown = i % 2 != 0;
        stage.showMap(shown);
        const MapStage::FrameTime taken = stage.orbit(orbitFrames);
        MapStage::FrameTime& figure = shown ? least.with : least.without;
        figure.clockMs = std::min(figure.clockMs, taken.clockMs);
        figure.processorMs = std::min(figure.processorMs, taken.processorMs);
    }
    return least;
}

FigureList measure(MapStage& stage, double tiltDeg, double distance, const QVector3D& middle)
{
    FigureList figures;
    stage.showMap(true);
    stage.look(middle, tiltDeg, distance);
    // Once around, so that the tiles of all headings are there.
    stage.orbit(180);
    stage.waitForTiles();
    const int asked = stage.tilesAsked();
    const Frames frames = orbit(stage);
    figures.add(QStringLiteral("frame while orbiting, without the map, ms"), frames.without.clockMs, 1);
    figures.add(QStringLiteral("frame while orbiting, with the map, ms"), frames.with.clockMs, 1);
    figures.add(QStringLiteral("its processor time, without the map, ms"), frames.without.processorMs, 1);
    figures.add(QStringLiteral("its processor time, with the map, ms"), frames.with.processorMs, 1);
    figures.add(QStringLiteral("tiles asked for while orbiting"), stage.tilesAsked() - asked, 0);
    for (const bool shown : {false, true}) {
        stage.showMap(shown);
        stage.waitForTiles();
        const QString which = shown ? QStringLiteral("with the map") : QStringLiteral("without the map");
        const MapStage::Activity idle = stage.watch(idleMs);
        figures.add(QStringLiteral("3D drawings in five idle seconds, %1").arg(which), idle.drawings, 0, 0.0);
        figures.add(QStringLiteral("frames of the window in them, %1").arg(which), idle.frames, 0);
        figures.add(QStringLiteral("processor time of them, %1, ms").arg(which), idle.processorMs, 0);
        if (!shown)
            continue;
        figures.add(QStringLiteral("moves of the map in them"), idle.mapMoves, 0, 0.0);
        figures.add(QStringLiteral("tiles asked for in them"), idle.tilesAsked, 0, 0.0);
    }
    return figures;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT3D_SCENE3D_STOP_RENDER_HIDDEN", "1");
    Torvik::View3d::SceneApplication app(argc, argv);
    const QTemporaryDir dir;
    const QString town = dir.filePath(QStringLiteral("town"));
    if (const QString error = makeGridTown(town, pipes); !error.isEmpty())
        qFatal("%s", qPrintable(error));
    auto& stage = *new MapStage(dir.filePath(QStringLiteral("tiles")));
    stage.open(town);
    const float side = std::sqrt(static_cast<float>(pipes)) * streetM;
    const QVector3D middle(side / 2, 0, side / 2);
    QVector<QPair<QString, FigureList>> lists;
    bool kept = true;
    for (const double tilt : {0.0, 45.0, 75.0}) {
        lists.append({QStringLiteral("tilt %1").arg(tilt), measure(stage, tilt, 20.0 * double(side), middle)});
        kept = kept && lists.last().second.allWithinBounds();
    }
    QTextStream(stdout) << tableOf(QString(), lists);
    QTextStream(stdout) << "sheet at the last tilt: " << stage.sheetSize().width() << " x "
                        << stage.sheetSize().height() << " pixels\n";
    // Taking the scene down would cost more than it is worth.
    std::fflush(stdout);
    std::_Exit(kept ? 0 : 1);
}
