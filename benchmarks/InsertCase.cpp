#include "benchmarks/GridTown.h"
#include "benchmarks/LiveScene.h"
#include "benchmarks/Stopwatch.h"
#include "benchmarks/TouchCases.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "host/domain/ProjectStore.h"
#include "scene/SceneEntities.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <memory>

namespace Torvik::Bench {

using namespace Torvik::Database;

namespace {

constexpr int pipes = 1000;
constexpr int observations = 1000;
constexpr int perPipe = 10;
/** Observations that are stored in the time of a frame. */
constexpr int perTurn = 20;
constexpr int rounds = 3;
/** Editing counts as over 750 ms after a change, and what it changed is written 700 ms later. */
constexpr int untilStoredMs = 4000;
/** Of ten observations on a pipe these two carry a lateral, and this one is a bend. */
constexpr int firstConnection = 2;
constexpr int secondConnection = 7;
constexpr int bend = 5;

CDomainObjectPointer insert(const CDomainObjectPointer& parent, ObjectType type, const QVariantMap& values)
{
    const auto inserted = ProjectStore::instance().insertObject(parent, type, values);
    if (!inserted.object)
        qFatal("%s", qPrintable(inserted.error));
    return inserted.object;
}

bool isConnection(int index)
{
    return index % perPipe == firstConnection || index % perPipe == secondConnection;
}

/** A town with an inspected lateral for every connection that is to come. */
class Town {
public:
    Town()
    {
        if (const QString error = makeGridTown(folder(), pipes); !error.isEmpty())
            qFatal("%s", qPrintable(error));
        const auto opened = ProjectStore::instance().open(folder());
        if (!opened.project)
            qFatal("%s", qPrintable(opened.error));
        for (int i = 0; i < observations; ++i) {
            if (isConnection(i))
                addLateral(opened.project, i);
        }
        ProjectStore::instance().close(opened.project);
    }

    QString folder() const { return m_dir.filePath(QStringLiteral("town")); }
    static QString lateralId(int index) { return QStringLiteral("lateral-%1").arg(index); }

private:
    static void addLateral(const QSharedPointer<CProjectObject>& project, int index)
    {
        const auto lateral = insert(project, LateralObjectType,
                                    {{QStringLiteral("OBJ_PK"), lateralId(index)},
                                     {QStringLiteral("OBJ_Key"), QStringLiteral("L%1").arg(index)},
                                     {QStringLiteral("OBJ_Section_REF"), project->section(index / perPipe)->id()}});
        insert(lateral, PipeInspectionObjectType, {{QStringLiteral("INS_InspectionDir"), 2}});
    }

    QTemporaryDir m_dir;
};

QVariantMap observation(int index)
{
    constexpr double firstM = 2.0;
    constexpr double stepM = 4.0;
    QVariantMap values {{QStringLiteral("OBS_Code"), QStringLiteral("BAB")},
                        {QStringLiteral("OBS_Distance"), firstM + (index % perPipe) * stepM}};
    if (isConnection(index)) {
        values[QStringLiteral("OBS_Code")] = QStringLiteral("BCA");
        values[QStringLiteral("OBS_LateralSection_REF")] = Town::lateralId(index);
        values[QStringLiteral("OBS_ClockPos1")] = 3;
        values[QStringLiteral("OBS_JointAngle")] = 90.0;
    } else if (index % perPipe == bend) {
        values[QStringLiteral("OBS_Code")] = QStringLiteral("BCC");
        values[QStringLiteral("OBS_BendClkH")] = 3;
        values[QStringLiteral("OBS_JointAngle")] = 10.0;
    }
    return values;
}

/** One by one, each with what it sets off; the event loop, and in a window a frame, come as often as they do while a
 *  host is writing. */
template <typename Turn>
Span insertAll(const CProjectObject& project, Turn turnOfLoop)
{
    const Stopwatch clock;
    for (int i = 0; i < observations; ++i) {
        insert(project.section(i / perPipe)->inspection(0), PipeObservationObjectType, observation(i));
        QCoreApplication::sendPostedEvents();
        if (i % perTurn == perTurn - 1)
            turnOfLoop();
    }
    return clock.elapsed();
}

Span insertAllWithoutScene()
{
    const Town town;
    const auto opened = ProjectStore::instance().open(town.folder());
    const Span span = insertAll(*opened.project, [] { QCoreApplication::processEvents(); });
    ProjectStore::instance().close(opened.project);
    return span;
}

} // namespace

FigureList measureInserting(Stage::Kind stage)
{
    Least without;
    for (int i = 0; i < rounds; ++i)
        without.add(insertAllWithoutScene());

    const LiveScene& scene = *new LiveScene(stage);
    Least with;
    for (int i = 0; i < rounds; ++i) {
        const Town town;
        const auto project = scene.open(town.folder());
        // What opening has still to write is no part of it.
        scene.stage().waitMs(untilStoredMs);
        with.add(insertAll(*project, [&] { scene.stage().waitFrames(1); }));
        if (View3d::SceneEntities::instance().getObservations().size() != observations)
            qFatal("Only %d observations came into the scene.",
                   int(View3d::SceneEntities::instance().getObservations().size()));
        scene.stage().waitMs(untilStoredMs);
        scene.close(project);
    }

    FigureList figures;
    figures.add(QStringLiteral("an observation without a scene, ms"), without.span().processorMs / observations, 3);
    figures.add(QStringLiteral("an observation with the scene, ms"), with.span().processorMs / observations, 3);
    figures.add(QStringLiteral("ratio"), with.span().processorMs / without.span().processorMs, 2);
    return figures;
}

} // namespace Torvik::Bench
