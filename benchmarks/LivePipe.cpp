#include "benchmarks/LivePipe.h"

#include "domain/boundary/AppState.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/SqlConnection.h"
#include "measurement/MeasurementPointsHandler.h"
#include "measurement/SystemControlProxy.h"
#include "network/Crawler.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::Bench {

using namespace Torvik::Database;
using View3d::SceneEntities;
using View3d::SystemControlProxy;

namespace {

const QString pipeId = QStringLiteral("pipe");
const QString inspectionId = QStringLiteral("inspection");
/** Placed from a map, in the m of a stored point. */
constexpr int fromGis = 16;
constexpr double eastM = 400000.0;
constexpr double northM = 5600000.0;

StoreStatus writeNode(BulkWriter& writer, const QString& id, double north)
{
    return writer.insert(
        NodeObjectType, {},
        {{QStringLiteral("OBJ_PK"), id},
         {QStringLiteral("OBJ_Key"), id},
         {QStringLiteral("OBJ_Type"), QStringLiteral("MH")},
         {QStringLiteral("OBJ_DepthToInvert"), 2.0},
         {QStringLiteral("OBJ_Shape_WKT"),
          QStringLiteral("POINT ZM(%1 %2 100 %3)").arg(eastM, 0, 'f', 3).arg(north, 0, 'f', 3).arg(fromGis)}});
}

StoreStatus writePipe(BulkWriter& writer, double lengthM)
{
    StoreStatus status = writeNode(writer, QStringLiteral("start"), northM);
    if (status)
        status = writeNode(writer, QStringLiteral("end"), northM + lengthM);
    if (status)
        status = writer.insert(SectionObjectType, {},
                               {{QStringLiteral("OBJ_PK"), pipeId},
                                {QStringLiteral("OBJ_Key"), pipeId},
                                {QStringLiteral("OBJ_FromNode_REF"), QStringLiteral("start")},
                                {QStringLiteral("OBJ_ToNode_REF"), QStringLiteral("end")},
                                {QStringLiteral("OBJ_Size1"), 300.0},
                                {QStringLiteral("OBJ_Length"), lengthM}});
    if (status)
        status = writer.insert(PipeInspectionObjectType, pipeId,
                               {{QStringLiteral("INS_PK"), inspectionId},
                                {QStringLiteral("INS_InspectionDir"), 1},
                                {QStringLiteral("INS_StartNode_REF"), QStringLiteral("start")},
                                {QStringLiteral("INS_EndNode_REF"), QStringLiteral("end")}});
    return status;
}

StoreStatus writeLateral(BulkWriter& writer, const QString& id)
{
    const auto written = writer.insert(
        LateralObjectType, {},
        {{QStringLiteral("OBJ_PK"), id}, {QStringLiteral("OBJ_Key"), id}, {QStringLiteral("OBJ_Section_REF"), pipeId}});
    return written ? writer.insert(PipeInspectionObjectType, id, {{QStringLiteral("INS_InspectionDir"), 2}}) : written;
}

/** Evenly along the pipe, those with a lateral among them. */
StoreStatus writeObservation(BulkWriter& writer, const LivePipe::Options& options, int index)
{
    QVariantMap values {{QStringLiteral("OBS_Code"), QStringLiteral("BAB")},
                        {QStringLiteral("OBS_Distance"), options.lengthM * (index + 0.5) / options.observations}};
    const int spacing = options.laterals > 0 ? options.observations / options.laterals : 0;
    if (spacing > 0 && index % spacing == spacing / 2) {
        const QString lateral = QStringLiteral("lateral-%1").arg(index);
        if (const auto written = writeLateral(writer, lateral); !written)
            return written;
        values[QStringLiteral("OBS_Code")] = QStringLiteral("BCA");
        values[QStringLiteral("OBS_ClockPos1")] = 3;
        values[QStringLiteral("OBS_JointAngle")] = 90.0;
        values[QStringLiteral("OBS_LateralSection_REF")] = lateral;
    }
    return writer.insert(PipeObservationObjectType, inspectionId, values);
}

void makeProject(const QString& folder, const LivePipe::Options& options)
{
    const auto made = ProjectStore::create(folder,
                                           {{QStringLiteral("PRJ_Name"), QStringLiteral("Live")},
                                            {QStringLiteral("PRJ_ProjectionWKT"), QStringLiteral("EPSG:25832")}},
                                           [&options](BulkWriter& writer) {
                                               StoreStatus status = writePipe(writer, options.lengthM);
                                               for (int i = 0; status && i < options.observations; ++i)
                                                   status = writeObservation(writer, options, i);
                                               return status;
                                           });
    if (!made)
        qFatal("%s", qPrintable(made.error));
}

} // namespace

LivePipe::LivePipe(Stage::Kind kind, const Options& options)
    : m_scene(kind)
{
    const QString folder = m_dir.filePath(QStringLiteral("live"));
    makeProject(folder, options);
    auto* const crawler = new View3d::Crawler(&m_scene.root());
    m_scene.root().setCrawler(crawler);
    crawler->setActive(true);
    m_project = m_scene.open(folder);
    AppState::instance().setActiveInspection(m_project->lookupObject(inspectionId));
    m_section = SceneEntities::instance().getActiveSectionEntity();
    if (!m_section || SceneEntities::instance().getObservations().size() != options.observations ||
        crawler->section() != m_section)
        qFatal("The pipe is not in the scene.");
    m_scene.lookDown(m_section->position(), 60.0F);
}

QString LivePipe::databaseFile() const
{
    return ProjectStore::databaseFile(m_dir.filePath(QStringLiteral("live")));
}

void LivePipe::startMeasuring() const
{
    View3d::GlobalNav::instance()->setRealTimeEnabled(true);
    View3d::MeasurementPointsHandler::instance()->waitUntilStored();
}

void LivePipe::read(const QVector3D& place, double counter)
{
    auto& vehicle = SystemControlProxy::instance();
    vehicle.setSectionDistanceCounter(static_cast<float>(counter));
    emit vehicle.latestCameraSensorPositionChanged(
        View3d::Vector3D<double>(double(place.x()), -double(place.z()), double(place.y())),
        static_cast<float>(counter));
}

QString LivePipe::textOf(const QString& statement) const
{
    StoreStatus status;
    const auto connection = SqlConnection::open(databaseFile(), SqlConnection::ReadOnly, status);
    const QVariant value = connection ? connection->value(statement, status) : QVariant();
    if (!status)
        qFatal("%s", qPrintable(status.error));
    return value.toString();
}

int LivePipe::storedPoints() const
{
    return textOf(QStringLiteral("SELECT count(*) FROM SECMP")).toInt();
}

int LivePipe::pointsOfStoredLine() const
{
    const QString line = textOf(QStringLiteral("SELECT MES_TxtValues FROM SECMES"));
    return line.isEmpty() ? 0 : line.count(QLatin1Char(',')) + 1;
}

int LivePipe::pointsOfStoredCourse() const
{
    const QString course =
        textOf(QStringLiteral("SELECT INS_Shape_WKT FROM SECINSP WHERE INS_PK = '%1'").arg(inspectionId));
    return course.isEmpty() ? 0 : course.count(QLatin1Char(',')) + 1;
}

} // namespace Torvik::Bench
