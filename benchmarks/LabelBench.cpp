/* kx_label_bench: what the names of a network cost, each measurement in a process of its own. */

#include "benchmarks/CaseRunner.h"
#include "benchmarks/GridTown.h"
#include "benchmarks/LiveScene.h"
#include "benchmarks/ResidentMemory.h"
#include "benchmarks/Stopwatch.h"
#include "labels/ImageLabel.h"
#include "labels/LabelBoard.h"
#include "labels/LabelsSignalRouter.h"
#include "labels/NameTag.h"
#include "labels/PaintedTextureText.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <Qt3DRender/QCamera>

#include <cmath>
#include <memory>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Torvik::Bench;
using namespace Torvik::View3d;

namespace {

constexpr int rounds = 20;
constexpr int orbitFrames = 30;
constexpr int orbitRounds = 5;
/** How far a frame with labels may be from one without, which is what runs differ by. */
constexpr double frameFactor = 1.25;
constexpr double frameMs = 1.0;
constexpr double boundOfALabelUs = 5.0;
/** A twentieth of a second is felt under a finger. */
constexpr double boundOfATurnMs = 50.0;
constexpr double boundOfMemoryMb = 150.0;
constexpr float streetM = 42.0F;
constexpr double largeWindow = 8.0;

double heapBytes()
{
#ifdef __GLIBC__
    return static_cast<double>(mallinfo2().uordblks);
#else
    return 0.0;
#endif
}

class Nameless : public Renderable {
public:
    Nameless()
        : Renderable(nullptr)
    {
    }
    QString renderableType() const override { return QStringLiteral("node"); }
};

/** Heap of a name that nobody looks at, the name itself included. */
double bytesOfATag(int count)
{
    std::vector<std::unique_ptr<Nameless>> objects;
    std::vector<std::unique_ptr<NameTag>> tags;
    for (int i = 0; i < count; ++i)
        objects.push_back(std::make_unique<Nameless>());
    tags.reserve(objects.size());
    const double before = heapBytes();
    for (int i = 0; i < count; ++i) {
        tags.push_back(std::make_unique<NameTag>(*objects[static_cast<size_t>(i)], NameTag::OfNode));
        tags.back()->setText(QStringLiteral("MH-%1").arg(i));
    }
    return (heapBytes() - before) / count;
}

void waitForLabels(const Stage& stage)
{
    while (LabelBoard::instance().isBusy())
        stage.waitFrames(1);
    stage.waitFrames(4);
}

template <typename Action>
Span leastOf(int times, const Action& action)
{
    Least least;
    for (int i = 0; i < times; ++i) {
        const Stopwatch clock;
        action();
        least.add(clock.elapsed());
    }
    return least.span();
}

struct Drawing {
    Span all;                 ///< until the last label stands in its face
    double longestTurn = 0.0; ///< without the event loop, of the processor
};

/** From no label that is drawn to all that have room; what the renderer does afterwards is not in it. */
Drawing drawAll(const Stage& stage)
{
    auto& board = LabelBoard::instance();
    auto* const nav = GlobalNav::instance();
    nav->setLabelsVisible(false);
    waitForLabels(stage);
    nav->setLabelsVisible(true);
    Drawing drawing;
    const Stopwatch clock;
    double before = 0.0;
    board.arrange();
    while (board.isBusy()) {
        QCoreApplication::processEvents();
        drawing.all = clock.elapsed();
        drawing.longestTurn = std::max(drawing.longestTurn, drawing.all.processorMs - before);
        before = drawing.all.processorMs;
    }
    waitForLabels(stage);
    return drawing;
}

struct Frames {
    double without = 1e9;
    double with = 1e9;
};

/** In turns: what else the machine does meets both. */
Frames orbit(const Stage& stage)
{
    Frames least;
    auto* const nav = GlobalNav::instance();
    for (int i = 0; i < 2 * orbitRounds; ++i) {
        const bool labels = i % 2 != 0;
        nav->setLabelsVisible(labels);
        waitForLabels(stage);
        double& figure = labels ? least.with : least.without;
        figure = std::min(figure, stage.orbitFrameMs(orbitFrames));
    }
    waitForLabels(stage);
    return least;
}

FigureList measure(Stage::Kind kind, int labels)
{
    FigureList figures;
    figures.add(QStringLiteral("a name off the screen, bytes of heap"), bytesOfATag(labels), 0);
    const LiveScene& scene = *new LiveScene(kind);
    const Stage& stage = scene.stage();
    auto& board = LabelBoard::instance();
    auto* const nav = GlobalNav::instance();
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("town"));
    // A manhole and a pipe each.
    if (const QString error = makeGridTown(folder, labels / 2); !error.isEmpty())
        qFatal("%s", qPrintable(error));
    nav->setLabelsVisible(false);
    const auto project = scene.open(folder);
    waitForLabels(stage);
    figures.add(QStringLiteral("names"), board.tagCount(), 0);

    const float side = std::sqrt(static_cast<float>(labels) / 2.0F) * streetM;
    const QVector3D middle(side / 2, 0, side / 2);
    scene.lookDown(middle, side * 1.3F);
    waitForLabels(stage);
    // As if the window had room for more than are drawn at most.
    const double before = ResidentMemory::megabytes();
    scene.root().setSceneWidth(largeWindow * Stage::width);
    scene.root().setSceneHeight(largeWindow * Stage::height);
    const Drawing first = drawAll(stage);
    const double seen = ResidentMemory::megabytes() - before;
    figures.add(QStringLiteral("drawn in a very large window"), board.drawnCount(), 0);
    const Drawing again = drawAll(stage);
    figures.add(QStringLiteral("until all of those are drawn for the first time, ms"), first.all.processorMs, 1);
    figures.add(QStringLiteral("until they are drawn again, ms"), again.all.processorMs, 1);
    figures.add(QStringLiteral("longest turn of the event loop in that, ms"),
                std::max(first.longestTurn, again.longestTurn), 1, boundOfATurnMs);
    figures.add(QStringLiteral("memory of those, MB"), seen, 1);
    scene.root().setSceneWidth(Stage::width);
    scene.root().setSceneHeight(Stage::height);
    waitForLabels(stage);
    figures.add(QStringLiteral("drawn with the whole town in the window"), board.drawnCount(), 0);
    const Frames frames = orbit(stage);
    figures.add(QStringLiteral("frame while the view moves, labels off, ms"), frames.without, 1);
    figures.add(QStringLiteral("frame while the view moves, labels on, ms"), frames.with, 1,
                frames.without * frameFactor + frameMs);
    waitForLabels(stage);

    const auto comeBack = [&board] { board.arrange(); };
    figures.add(QStringLiteral("coming back, the whole town in view, ms"), leastOf(rounds, comeBack).processorMs, 2);
    waitForLabels(stage);
    auto& router = LabelsSignalRouter::instance();
    const double hide = leastOf(1, [&router] { router.onLabelPositionChanged(); }).processorMs;
    figures.add(QStringLiteral("hiding, once a move, ms"), hide, 3);
    figures.add(QStringLiteral("each further change of the camera, us"),
                leastOf(rounds, [&router] { router.onLabelPositionChanged(); }).processorMs * 1000, 1);
    waitForLabels(stage);

    scene.lookDown(middle + QVector3D(100 * side, 0, 0), 50.0F);
    waitForLabels(stage);
    if (board.drawnCount() != 0)
        qFatal("There are labels on the screen.");
    const double off = leastOf(rounds, comeBack).processorMs;
    figures.add(QStringLiteral("coming back, all off the screen, ms"), off, 2);
    figures.add(QStringLiteral("coming back, a label off the screen, us"), off * 1000 / board.tagCount(), 3,
                boundOfALabelUs);
    for (const bool lines : {true, false}) {
        nav->setManholeFullInfoVisible(lines);
        const double firstLook = leastOf(1, comeBack).processorMs;
        figures.add(lines ? QStringLiteral("the first time with full information, us")
                          : QStringLiteral("the first time after full information, us"),
                    firstLook * 1000 / board.tagCount(), 3, boundOfALabelUs);
        waitForLabels(stage);
        const double lasted = leastOf(rounds, comeBack).processorMs;
        figures.add(lines ? QStringLiteral("the same with full information, us")
                          : QStringLiteral("the same after full information, us"),
                    lasted * 1000 / board.tagCount(), 3, boundOfALabelUs);
    }
    const double all = seen + figures.find(QStringLiteral("a name off the screen, bytes of heap"))->value *
                                  board.tagCount() / 1048576.0;
    figures.add(QStringLiteral("memory of labels in all, MB"), all, 1, boundOfMemoryMb);

    scene.lookDown(middle, side * 1.3F);
    const int paintings = PaintedTextureText::paintings();
    waitForLabels(stage);
    figures.add(QStringLiteral("paintings after coming back from elsewhere"),
                PaintedTextureText::paintings() - paintings, 0, board.drawnCount());
    return figures;
}

FigureList measureThousand(Stage::Kind kind)
{
    return measure(kind, 1000);
}

FigureList measureTenThousand(Stage::Kind kind)
{
    return measure(kind, 10000);
}

} // namespace

int main(int argc, char** argv)
{
    return runCases(argc, argv, QStringLiteral("Measures what names of objects cost; prints tables."),
                    {{QStringLiteral("1000"), QStringLiteral("1,000 names"), measureThousand, true, false},
                     {QStringLiteral("10000"), QStringLiteral("10,000 names"), measureTenThousand, true, false}});
}
