#include "benchmarks/BareTwin.h"
#include "benchmarks/GridTown.h"
#include "benchmarks/LiveScene.h"
#include "benchmarks/Stopwatch.h"
#include "benchmarks/TouchCases.h"
#include "host/domain/ProjectStore.h"
#include "network/Node.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTimer>
#include <Qt3DCore/QEntity>
#include <Qt3DRender/QObjectPicker>
#include <Qt3DRender/QPickEvent>

#include <algorithm>
#include <functional>

namespace Torvik::Bench {

using Qt3DRender::QObjectPicker;
using View3d::SceneEntities;

namespace {

constexpr int pipes = 500; ///< with their manholes a thousand objects
constexpr int idleRounds = 5;
constexpr int presses = 10;
constexpr int settleMs = 2000;
constexpr int secondMs = 1000;
/** Longer than the guard after a selection and the wait for a second tap. */
constexpr int betweenPressesMs = 500;
constexpr int longestMs = 10000;
constexpr float eyeM = 60.0F;

struct Idle {
    double processMs = 1e9;
    double mainThreadMs = 1e9;
};

Idle idleSecond(const Stage& stage)
{
    stage.waitMs(settleMs);
    Idle least;
    for (int i = 0; i < idleRounds; ++i) {
        const double before = processMs();
        const Stopwatch clock;
        stage.waitMs(secondMs);
        least.mainThreadMs = std::min(least.mainThreadMs, clock.elapsed().processorMs);
        least.processMs = std::min(least.processMs, processMs() - before);
    }
    return least;
}

void send(QQuickView& window, QEvent::Type type)
{
    const QPointF middle(Stage::width / 2.0, Stage::height / 2.0);
    const bool down = type == QEvent::MouseButtonPress;
    QMouseEvent event(type, middle, window.mapToGlobal(middle.toPoint()), Qt::LeftButton,
                      down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
}

/** Milliseconds on the clock from the delivery of a press to the signal that it ends in; `afterwards` takes back what
 * it did. */
template <typename Sender, typename Signal>
double pressMs(const Stage& stage, Sender* sender, Signal signal, const std::function<void()>& afterwards)
{
    Least least;
    for (int i = 0; i < presses; ++i) {
        stage.waitMs(betweenPressesMs);
        QEventLoop loop;
        bool heard = false;
        Span span;
        const Stopwatch clock;
        QObject::connect(sender, signal, &loop, [&] {
            span = clock.elapsed();
            heard = true;
            loop.quit();
        });
        QTimer::singleShot(longestMs, &loop, &QEventLoop::quit);
        send(stage.window(), QEvent::MouseButtonPress);
        if (!heard)
            loop.exec();
        if (!heard)
            qFatal("Nothing heard the press.");
        least.add(span);
        send(stage.window(), QEvent::MouseButtonRelease);
        stage.waitFrames(4);
        afterwards();
    }
    return least.span().wallMs;
}

} // namespace

FigureList measurePicking(Stage::Kind stage)
{
    const LiveScene& scene = *new LiveScene(stage);
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("town"));
    if (const QString error = makeGridTown(folder, pipes); !error.isEmpty())
        qFatal("%s", qPrintable(error));
    const auto project = scene.open(folder);
    const auto& nodes = SceneEntities::instance().getNodes();
    // One amidst the town, whatever the order of their keys.
    QVector3D middle;
    for (const auto* node : nodes)
        middle += node->position() / static_cast<float>(nodes.size());
    const auto nearest = *std::min_element(nodes.begin(), nodes.end(), [&](const auto* a, const auto* b) {
        return a->position().distanceToPoint(middle) < b->position().distanceToPoint(middle);
    });
    scene.lookDown(nearest->position(), eyeM);

    const Idle idle = idleSecond(scene.stage());
    const double selection = pressMs(scene.stage(), &scene.root(), &View3d::SceneRoot::selectedRenderableChanged, [&] {
        if (!scene.root().isSelected(nearest->guid()))
            qFatal("The press did not select what is under it.");
        scene.root().deselectAll();
    });
    BareTwin& twin = *new BareTwin;
    twin.remember(scene.root());
    scene.close(project);
    // Open again, so that the store looks for the writes of others as before, but not in the scene.
    const auto unseen = Database::ProjectStore::instance().open(folder);

    auto* const holder = new Qt3DCore::QEntity(scene.stage().root());
    twin.build(holder);
    const Idle plainIdle = idleSecond(scene.stage());
    auto* const picker = new QObjectPicker(holder);
    holder->addComponent(picker);
    const double plainPress = pressMs(scene.stage(), picker, &QObjectPicker::pressed, [] {});

    FigureList figures;
    const auto add = [&figures](const QString& name, double product, double plain, int decimals, bool ratio) {
        figures.add(name + QStringLiteral(", the product's objects"), product, decimals);
        figures.add(name + QStringLiteral(", plain entities"), plain, decimals);
        if (ratio)
            figures.add(name + QStringLiteral(", ratio"), product / plain, 2);
    };
    add(QStringLiteral("idle second, process, ms"), idle.processMs, plainIdle.processMs, 0, true);
    add(QStringLiteral("idle second, main thread, ms"), idle.mainThreadMs, plainIdle.mainThreadMs, 0, true);
    add(QStringLiteral("from the press to its object, ms on the clock"), selection, plainPress, 1, true);
    return figures;
}

} // namespace Torvik::Bench
