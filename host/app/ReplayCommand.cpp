#include "host/app/ReplayCommand.h"

#include "host/app/Commands.h"
#include "host/app/EndSignals.h"
#include "host/app/HeadlessScene.h"
#include "host/app/InspectionLookup.h"
#include "host/app/TroubleReport.h"
#include "host/domain/ProjectStore.h"
#include "host/vehicle/Recording.h"

#include <QEventLoop>
#include <QFile>
#include <QTextStream>

#include <algorithm>

namespace Torvik::Viewer {

using Database::ProjectStore;

std::optional<ReplayRun::Wishes> readReplay(const Options& options)
{
    QFile file(options.replayFile);
    if (!file.open(QIODevice::ReadOnly)) {
        Commands::failure(QStringLiteral("%1: %2").arg(options.replayFile, file.errorString()));
        return std::nullopt;
    }
    const Vehicle::Recording recording = Vehicle::parseRecording(file.readAll());
    for (const Vehicle::LineProblem& problem : recording.problems)
        Commands::failure(QStringLiteral("%1:%2: %3").arg(options.replayFile).arg(problem.line).arg(problem.text));
    const auto& readings = recording.readings;
    if (readings.isEmpty()) {
        Commands::failure(QStringLiteral("%1 holds no readings").arg(options.replayFile));
        return std::nullopt;
    }
    const bool sensor = std::any_of(readings.cbegin(), readings.cend(),
                                    [](const Vehicle::Reading& reading) { return reading.sensor.has_value(); });
    if (options.realTime && !sensor) {
        Commands::failure(QStringLiteral("%1 has no sensor's places for --real-time").arg(options.replayFile));
        return std::nullopt;
    }
    return ReplayRun::Wishes {readings, options.speed.value_or(Vehicle::Replay::fastest), options.realTime};
}

QString noSuchInspection(const Options& options)
{
    return QStringLiteral("%1 has no inspection \"%2\"").arg(options.project, options.inspectKey);
}

int report(const ReplayRun::Outcome& outcome)
{
    if (!outcome.error.isEmpty())
        return Commands::failure(outcome.error);
    QTextStream(stdout) << "counter  " << QString::number(outcome.counter, 'f', 2) << " m\n"
                        << "points   " << outcome.points << '\n'
                        << "length   " << QString::number(outcome.length, 'f', 2) << " m\n";
    return 0;
}

int Commands::replay(const Options& options)
{
    EndSignals endSignals;
    const QString folder = projectFolder(options);
    const auto wishes = folder.isEmpty() ? std::nullopt : readReplay(options);
    if (!wishes)
        return 1;
    const auto opened = ProjectStore::instance().open(folder);
    if (!opened.project)
        return failure(opened.error);
    const auto inspection = inspectionOfKey(*opened.project, options.inspectKey);
    if (!inspection)
        return failure(noSuchInspection(options));
    HeadlessScene::show(opened.project);

    TroubleReport trouble;
    ReplayRun run;
    QEventLoop untilStored;
    QObject::connect(&run, &ReplayRun::finished, &untilStored, &QEventLoop::quit);
    QObject::connect(&endSignals, &EndSignals::asked, &untilStored, &QEventLoop::quit);
    run.start(inspection, *wishes);
    untilStored.exec();
    if (endSignals.came())
        run.stop();
    ProjectStore::instance().close(opened.project);
    const bool lost = trouble.somethingIsLost();
    if (endSignals.came())
        return endSignals.exitStatus();
    return lost ? 1 : report(run.outcome());
}

} // namespace Torvik::Viewer
