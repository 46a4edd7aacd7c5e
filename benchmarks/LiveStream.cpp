#include "benchmarks/LiveCases.h"
#include "benchmarks/LivePipe.h"
#include "benchmarks/ResidentMemory.h"
#include "benchmarks/Samples.h"
#include "benchmarks/Stopwatch.h"
#include "host/vehicle/VehicleFeed.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/SystemControlProxy.h"
#include "network/Pipe.h"
#include "network/Section.h"

#include <QThread>

#include <algorithm>
#include <cmath>

#include <malloc.h>

namespace Torvik::Bench {

using View3d::MeasurementPointsHandler;
using View3d::SystemControlProxy;

namespace {

constexpr int perSecond = 100;
constexpr int seconds = 600;
constexpr int readings = perSecond * seconds;
/** The vehicle's time runs so many times faster, unless KX_LIVE_SPEED says otherwise. */
constexpr double usualSpeed = 4.0;
constexpr double speedMs = 0.15; ///< of the vehicle, metres a second
constexpr double radiusM = 400.0;
constexpr double slack = 1.002;
constexpr double aheadM = 0.05;
constexpr double boundUntilEmptyMs = 2000.0;
constexpr int quarters = 4;
/** What the run's 90 m take in steps of 5 cm. */
constexpr double boundGrownMb = 16.0;

QVector3D placeAt(double way)
{
    const double angle = way / radiusM;
    return {static_cast<float>(radiusM * (1.0 - std::cos(angle))), 0.0F, static_cast<float>(radiusM * std::sin(angle))};
}

/** What is allocated, not what the allocator keeps. */
double heapMb()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / (1024.0 * 1024.0);
}

struct Quarter {
    double heap = 0.0;
    int segments = 0;
    int waiting = 0; ///< most statements in the queue
};

double speed()
{
    const double asked = qEnvironmentVariable("KX_LIVE_SPEED").toDouble();
    return asked > 0.0 ? asked : usualSpeed;
}

FigureList drive(Stage::Kind stage, bool everyReading)
{
    const LivePipe& pipe = *new LivePipe(stage, {speedMs * seconds, 20, 0});
    auto* const handler = MeasurementPointsHandler::instance();
    Vehicle::VehicleFeed feed;
    int places = 0;
    const QObject counting;
    QObject::connect(&SystemControlProxy::instance(), &SystemControlProxy::latestCameraSensorPositionChanged, &counting,
                     [&places] { ++places; });
    pipe.startMeasuring();
    const double begin = heapMb();
    const double beginResident = ResidentMemory::megabytes();
    const double periodMs = 1000.0 / perSecond / speed();
    QVector<Quarter> byQuarter(quarters);
    Samples cost;
    int late = 0;
    const Stopwatch clock;
    for (int i = 1; i <= readings; ++i) {
        const double way = speedMs * i / perSecond;
        const Stopwatch one;
        const QVector3D place = placeAt(way);
        const double counter = way * slack + aheadM;
        if (everyReading)
            LivePipe::read(place, counter);
        else
            feed.take({double(i) / perSecond, counter,
                       Vehicle::SensorPlace {-double(place.x()), double(place.z()), double(place.y())}});
        cost.add(one.elapsed().processorMs);
        pipe.stage().waitFrames(1);
        Quarter& quarter = byQuarter[(i - 1) * quarters / readings];
        quarter.waiting = std::max(quarter.waiting, handler->waitingStatements());
        if (i % (readings / quarters) == 0) {
            quarter.heap = heapMb();
            quarter.segments = pipe.section().pipe()->segmentCount();
        }
        const double restMs = i * periodMs - clock.elapsed().wallMs;
        if (restMs > 0.0)
            QThread::usleep(static_cast<unsigned long>(restMs * 1000.0));
        else if (-restMs > periodMs)
            ++late;
    }
    const double runMs = clock.elapsed().wallMs;
    const int atTheEnd = handler->waitingStatements();
    const Stopwatch emptying;
    handler->waitUntilStored();
    const double untilEmptyMs = emptying.elapsed().wallMs;
    const double resident = ResidentMemory::megabytes();
    const double dropped = places + 1 - pipe.storedPoints();
    const double missing = places + 1 - pipe.pointsOfStoredLine();

    FigureList figures;
    figures.add(QStringLiteral("vehicle's time against the clock"), seconds * 1000.0 / runMs, 2);
    figures.add(QStringLiteral("readings that began more than a period late"), late, 0);
    figures.add(QStringLiteral("places of the sensor that the view gets"), places, 0);
    figures.add(QStringLiteral("of them without a stored point"), dropped, 0, 0.0);
    figures.add(QStringLiteral("points missing in the stored line"), missing, 0, 0.0);
    figures.add(QStringLiteral("99 of 100 readings, ms"), cost.percentile99(), 3);
    for (int i = 0; i < quarters; ++i)
        figures.add(QStringLiteral("most statements waiting, quarter %1").arg(i + 1), byQuarter[i].waiting, 0);
    figures.add(QStringLiteral("statements waiting at the end"), atTheEnd, 0);
    figures.add(QStringLiteral("until the queue is empty, ms on the clock"), untilEmptyMs, 0, boundUntilEmptyMs);
    figures.add(QStringLiteral("memory before, MB"), begin, 1);
    for (int i = 0; i < quarters; ++i)
        figures.add(QStringLiteral("memory after quarter %1, MB").arg(i + 1), byQuarter[i].heap, 1);
    const double grown = byQuarter.last().heap - begin;
    figures.add(QStringLiteral("memory grown, MB"), grown, 1, everyReading ? std::optional<double>() : boundGrownMb);
    figures.add(QStringLiteral("segments of the pipe"), byQuarter.last().segments, 0);
    figures.add(QStringLiteral("memory a segment, KB"), grown * 1024.0 / byQuarter.last().segments, 2);
    figures.add(QStringLiteral("memory a segment, last quarter, KB"),
                (byQuarter[quarters - 1].heap - byQuarter[quarters - 2].heap) * 1024.0 /
                    (byQuarter[quarters - 1].segments - byQuarter[quarters - 2].segments),
                2);
    figures.add(QStringLiteral("resident, before and after, MB: before"), beginResident, 0);
    figures.add(QStringLiteral("resident, before and after, MB: after"), resident, 0);
    return figures;
}

} // namespace

FigureList measureStream(Stage::Kind stage)
{
    return drive(stage, false);
}

FigureList measureFlood(Stage::Kind stage)
{
    return drive(stage, true);
}

} // namespace Torvik::Bench
