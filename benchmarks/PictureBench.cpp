/* kx_picture_bench: what the largest picture under the network costs, each kind in a process of its own. */

#include "benchmarks/CaseRunner.h"
#include "benchmarks/Heartbeat.h"
#include "benchmarks/LiveScene.h"
#include "benchmarks/ResidentMemory.h"
#include "plans/BackgroundImage.h"
#include "plans/PictureReader.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QRgba64>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <random>

using namespace Torvik::Bench;
using Torvik::View3d::BackgroundImage;
using Torvik::View3d::IBackgroundPlan;

namespace {

constexpr int largestSide = 4048;
constexpr double largestBytes = 4.0 * largestSide * largestSide;
constexpr int rounds = 5;
constexpr int settleMs = 1500;
constexpr double blockedBoundMs = 50.0;

/** Smooth shades with the grain of a photograph, so that files get as large as theirs. */
QImage photograph(int side, QImage::Format format)
{
    QImage image(side, side, format);
    std::minstd_rand chance(1);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double shade = 0.5 + 0.3 * std::sin(x * 0.004) * std::cos(y * 0.003);
            const double grain = static_cast<double>(chance() % 1000) / 1000.0 * 0.08;
            image.setPixelColor(x, y, QColor::fromRgbF(shade, shade * 0.9 + grain, 0.3 + grain));
        }
    }
    return image;
}

void write(const QString& path, const QByteArray& form, const QImage& image)
{
    QImageWriter writer(path, form);
    if (form == "png")
        writer.setQuality(90);
    if (!writer.write(image))
        qFatal("the picture could not be written: %s", qPrintable(writer.errorString()));
}

/** A plan on its way from the file to the window. */
struct Cost {
    double ms = 0.0;
    double blockedReadingMs = 0.0;
    double blockedShowingMs = 0.0;
    double peakReading = 0.0;
    double peakShowing = 0.0;
    double kept = 0.0;
};

Cost load(const LiveScene& scene, const QString& path)
{
    Cost cost;
    scene.stage().waitMs(settleMs);
    const double before = ResidentMemory::bytes();
    if (!ResidentMemory::forgetPeak())
        qFatal("the highest memory cannot be told here");
    QElapsedTimer clock;
    clock.start();
    auto* const plan = new BackgroundImage(path, &scene.root());
    {
        const Heartbeat heartbeat;
        QEventLoop loop;
        QObject::connect(plan, &IBackgroundPlan::backgroundLoadingFinished, &loop, &QEventLoop::quit);
        QObject::connect(plan, &IBackgroundPlan::fileCorrupted, plan, [] { qFatal("the picture could not be read"); });
        plan->load();
        loop.exec();
        cost.blockedReadingMs = heartbeat.longestMs();
        cost.peakReading = ResidentMemory::peakBytes() - before;
    }
    {
        const Heartbeat heartbeat;
        scene.stage().waitFrames(4);
        cost.ms = static_cast<double>(clock.nsecsElapsed()) / 1e6;
        scene.stage().waitMs(settleMs);
        cost.blockedShowingMs = heartbeat.longestMs();
        cost.peakShowing = ResidentMemory::peakBytes() - before;
        cost.kept = ResidentMemory::bytes() - before;
    }
    delete plan;
    scene.stage().waitFrames(4);
    return cost;
}

FigureList measure(Stage::Kind stage, const QByteArray& form, QImage::Format format)
{
    const QTemporaryDir folder;
    const QString small = folder.filePath(QLatin1String("small.") + form);
    const QString large = folder.filePath(QLatin1String("large.") + form);
    write(small, form, photograph(64, format));
    write(large, form, photograph(largestSide, format));
    const LiveScene scene(stage);
    scene.lookDown({}, 150.0F);
    // What the first plan of all brings along (plug-ins, shaders) is none of a large one.
    load(scene, small);
    Cost least = load(scene, large);
    double highestReading = least.peakReading;
    for (int i = 1; i < rounds; ++i) {
        const Cost cost = load(scene, large);
        least.ms = std::min(least.ms, cost.ms);
        least.blockedReadingMs = std::min(least.blockedReadingMs, cost.blockedReadingMs);
        least.blockedShowingMs = std::min(least.blockedShowingMs, cost.blockedShowingMs);
        highestReading = std::max(highestReading, cost.peakReading);
    }
    FigureList list;
    list.add(QStringLiteral("size of the file, MB"), double(QFileInfo(large).size()) / 1e6, 1);
    list.add(QStringLiteral("loaded and on the screen, ms"), least.ms, 0);
    list.add(QStringLiteral("highest memory while it loads, bytes"), highestReading, 0, 2.0 * largestBytes);
    list.add(QStringLiteral("the same as a part of the picture's bytes"), highestReading / largestBytes, 2, 2.0);
    list.add(QStringLiteral("longest time without the main thread while it loads, ms"), least.blockedReadingMs, 1,
             blockedBoundMs);
    list.add(QStringLiteral("the same in the upload and the frames after it, ms"), least.blockedShowingMs, 1);
    list.add(QStringLiteral("highest memory, the renderer's own textures included, MB"), least.peakShowing / 1e6, 1);
    list.add(QStringLiteral("memory kept, those included, MB"), least.kept / 1e6, 1);
    return list;
}

FigureList measureJpeg(Stage::Kind stage)
{
    return measure(stage, "jpg", QImage::Format_RGB32);
}

FigureList measurePng(Stage::Kind stage)
{
    return measure(stage, "png", QImage::Format_RGB32);
}

FigureList measureWidePng(Stage::Kind stage)
{
    return measure(stage, "png", QImage::Format_RGBA64);
}

FigureList measureTiff(Stage::Kind stage)
{
    return measure(stage, "tiff", QImage::Format_RGB32);
}

FigureList measureBitmap(Stage::Kind stage)
{
    return measure(stage, "bmp", QImage::Format_RGB32);
}

} // namespace

int main(int argc, char** argv)
{
    const auto title = [](const char* kind) {
        return QStringLiteral("%1 of 4048 x 4048 pixels").arg(QLatin1String(kind));
    };
    return runCases(argc, argv, QStringLiteral("Measures what the largest picture under the network costs."),
                    {
                        {QStringLiteral("jpeg"), title("JPEG"), measureJpeg, true, false},
                        {QStringLiteral("png"), title("PNG"), measurePng, true, false},
                        {QStringLiteral("png16"), title("PNG with 16 bits a channel"), measureWidePng, true, false},
                        {QStringLiteral("tiff"), title("TIFF"), measureTiff, true, false},
                        {QStringLiteral("bmp"), title("Bitmap"), measureBitmap, true, false},
                    });
}
