// A program that measures an inspection as a host does, and tells each step when it is stored: FOLDER INSPECTION SEED
// BEGIN, the metre from which on it measures.
// It does not end by itself. Lines of its output: "ready", "fed N" before readings up to N come, "stored N" when those
// up to N are in the database, "flushed SHAPE" when the inspection's shape is.
#include "LiveRun.h"

#include "domain/boundary/AppState.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/CProjectObject.h"
#include "geo/GdalGeoProjector.h"
#include "host/domain/ProjectStore.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/SystemControlProxy.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRandomGenerator>

#include <cstdio>

#include <unistd.h>

using namespace Torvik;
using namespace Torvik::View3d;
namespace LiveRun = Kx::Test::LiveRun;

namespace {

/** Past every buffer of the process, since that is lost with it. */
void tell(const QString& line)
{
    const QByteArray text = line.toUtf8() + '\n';
    if (::write(STDOUT_FILENO, text.constData(), std::size_t(text.size())) != text.size())
        ::_exit(2);
}

int fail(const QString& why)
{
    std::fprintf(stderr, "%s\n", qPrintable(why));
    return 1;
}

void turnEventLoop(int ms)
{
    QElapsedTimer passed;
    passed.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    while (passed.elapsed() < ms);
}

void feed(int reading, float begin)
{
    const QVector3D place = LiveRun::place(reading, begin);
    SystemControlProxy& vehicle = SystemControlProxy::instance();
    vehicle.setSectionDistanceCounter(LiveRun::counter(reading, begin));
    emit vehicle.latestCameraSensorPositionChanged({double(place.x()), -double(place.z()), double(place.y())},
                                                   LiveRun::counter(reading, begin));
}

/** Tells a shape that has been written since it was told last. */
class Flushes {
public:
    explicit Flushes(CDomainObjectPointer inspection)
        : m_inspection(std::move(inspection))
        , m_told(shape())
    {
    }
    // The value in memory changes right before it is written, in one step of the event loop, so here it is stored.
    void tellNew()
    {
        if (m_told == shape())
            return;
        m_told = shape();
        tell(QStringLiteral("flushed ") + m_told);
    }

private:
    QString shape() const { return m_inspection->readValue(QStringLiteral("INS_Shape_WKT")).toString(); }

    CDomainObjectPointer m_inspection;
    QString m_told;
};

[[noreturn]] void measureForever(const CDomainObjectPointer& inspection, quint32 seed, float begin)
{
    constexpr int longerThanAFlush = 780;
    QRandomGenerator random(seed);
    Flushes flushes(inspection);
    int reading = 0;
    for (;;) {
        const int last = reading + random.bounded(1, 6);
        tell(QStringLiteral("fed %1").arg(last));
        while (reading < last)
            feed(++reading, begin);
        if (random.bounded(4) != 0) {
            MeasurementPointsHandler::instance()->waitUntilStored();
            tell(QStringLiteral("stored %1").arg(reading));
        }
        turnEventLoop(random.bounded(8) == 0 ? longerThanAFlush : random.bounded(12));
        flushes.tellNew();
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto opened = Database::ProjectStore::instance().open(arguments.value(1));
    if (!opened.project)
        return fail(opened.error);
    const CDomainObjectPointer inspection = opened.project->lookupObject(arguments.value(2));
    if (!inspection)
        return fail(QStringLiteral("no such inspection"));

    const float begin = arguments.value(4).toFloat();
    SceneRoot root;
    root.qmlOnCompleted();
    QString system = QStringLiteral("LOCAL_CS[\"site\"]");
    GdalGeoProjector::instance()->init(Database::WktPoint(QStringLiteral("POINT ZM(0 0 0 0)")), system);
    AppState::instance().setActiveProject(opened.project);
    AppState::instance().setActiveInspection(inspection);
    if (!SceneEntities::instance().getActiveSectionEntity())
        return fail(QStringLiteral("the inspection is not in the scene"));
    SystemControlProxy::instance().setSectionDistanceCounter(begin);
    GlobalNav::instance()->setRealTimeEnabled(true);
    tell(QStringLiteral("ready"));
    measureForever(inspection, arguments.value(3).toUInt(), begin);
}
