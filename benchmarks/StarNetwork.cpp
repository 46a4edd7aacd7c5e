#include "benchmarks/StarNetwork.h"

#include "host/domain/ProjectStore.h"

#include <QStringList>
#include <QtMath>

#include <cmath>

namespace Torvik::Bench {

using namespace Torvik::Database;

namespace {

constexpr double eastM = 400000.0;
constexpr double northM = 5600000.0;
constexpr double groundM = 100.0;
constexpr double depthM = 2.0;
constexpr double diameterMm = 300.0;
/** In the m of stored points: from a map; derived from an inspection downstream, so that the pipe follows its start. */
constexpr int fromGis = 16;
constexpr int followingDownstream = 257;
constexpr int kinds = 5;
constexpr int bendKind = 1;
constexpr int connectionKind = 3;

class Star {
public:
    Star(BulkWriter& writer, const StarOptions& options)
        : m_writer(writer)
        , m_options(options)
    {
    }

    StoreStatus write()
    {
        StoreStatus status = node(starCentre(), 0, 0.0);
        for (int pipe = 0; status && pipe < m_options.pipes; ++pipe)
            status = writePipe(pipe);
        return status;
    }

private:
    QString point(int pipe, double distance, double height, int m) const
    {
        const double angle = 2.0 * M_PI * pipe / m_options.pipes;
        return QStringLiteral("%1 %2 %3 %4")
            .arg(eastM + distance * std::sin(angle), 0, 'f', 3)
            .arg(northM + distance * std::cos(angle), 0, 'f', 3)
            .arg(height, 0, 'f', 3)
            .arg(m);
    }

    double lengthM() const { return m_options.segmentsPerPipe * m_options.segmentM; }

    /** Stored from the end to the start; every second joint stands a little higher, so that the pipe bends there. */
    QString course(int pipe) const
    {
        QStringList points;
        for (int i = m_options.segmentsPerPipe; i >= 0; --i) {
            const double height = groundM - depthM + (i % 2) * 0.02 * m_options.segmentM;
            points.append(point(pipe, i * m_options.segmentM, height, points.isEmpty() ? followingDownstream : 0));
        }
        return QStringLiteral("LINESTRING ZM(%1)").arg(points.join(QStringLiteral(", ")));
    }

    StoreStatus node(const QString& id, int pipe, double distance)
    {
        return m_writer.insert(NodeObjectType, {},
                               {{QStringLiteral("OBJ_PK"), id},
                                {QStringLiteral("OBJ_Key"), id},
                                {QStringLiteral("OBJ_Type"), QStringLiteral("MH")},
                                {QStringLiteral("OBJ_DepthToInvert"), depthM},
                                {QStringLiteral("OBJ_Shape_WKT"),
                                 QStringLiteral("POINT ZM(%1)").arg(point(pipe, distance, groundM, fromGis))}});
    }

    StoreStatus writePipe(int pipe)
    {
        const QString end = QStringLiteral("end-%1").arg(pipe);
        StoreStatus status = node(end, pipe, lengthM());
        if (status)
            status = m_writer.insert(SectionObjectType, {},
                                     {{QStringLiteral("OBJ_PK"), sectionId(pipe)},
                                      {QStringLiteral("OBJ_Key"), sectionId(pipe)},
                                      {QStringLiteral("OBJ_FromNode_REF"), starCentre()},
                                      {QStringLiteral("OBJ_ToNode_REF"), end},
                                      {QStringLiteral("OBJ_FromNodeDepth"), depthM},
                                      {QStringLiteral("OBJ_ToNodeDepth"), depthM},
                                      {QStringLiteral("OBJ_Size1"), diameterMm},
                                      {QStringLiteral("OBJ_Length"), lengthM()}});
        if (status)
            status = m_writer.insert(PipeInspectionObjectType, sectionId(pipe),
                                     {{QStringLiteral("INS_PK"), starInspection(pipe)},
                                      {QStringLiteral("INS_InspectionDir"), 1},
                                      {QStringLiteral("INS_StartNode_REF"), starCentre()},
                                      {QStringLiteral("INS_EndNode_REF"), end},
                                      {QStringLiteral("INS_Shape_WKT"), course(pipe)}});
        for (int i = 0; status && i < m_options.observationsPerPipe; ++i)
            status = writeObservation(pipe, i);
        return status;
    }

    StoreStatus writeObservation(int pipe, int index)
    {
        const double share = (index + 0.5) / m_options.observationsPerPipe;
        QVariantMap values {{QStringLiteral("OBS_Code"), QStringLiteral("BAB")},
                            {QStringLiteral("OBS_Distance"), std::round(share * lengthM())}};
        if (index % kinds == bendKind) {
            values[QStringLiteral("OBS_Code")] = QStringLiteral("BCC");
            values[QStringLiteral("OBS_BendClkH")] = 12;
            values[QStringLiteral("OBS_JointAngle")] = 2.0;
        }
        if (index % kinds == connectionKind) {
            values[QStringLiteral("OBS_Code")] = QStringLiteral("BCA");
            values[QStringLiteral("OBS_ClockPos1")] = 3;
            values[QStringLiteral("OBS_JointAngle")] = 90.0;
            if (m_options.laterals) {
                const QString lateral = QStringLiteral("lateral-%1-%2").arg(pipe).arg(index);
                if (const auto written = writeLateral(lateral, pipe); !written)
                    return written;
                values[QStringLiteral("OBS_LateralSection_REF")] = lateral;
            }
        }
        return m_writer.insert(PipeObservationObjectType, starInspection(pipe), values);
    }

    StoreStatus writeLateral(const QString& id, int pipe)
    {
        const auto written = m_writer.insert(LateralObjectType, {},
                                             {{QStringLiteral("OBJ_PK"), id},
                                              {QStringLiteral("OBJ_Key"), id},
                                              {QStringLiteral("OBJ_Section_REF"), sectionId(pipe)}});
        return written ? m_writer.insert(PipeInspectionObjectType, id, {{QStringLiteral("INS_InspectionDir"), 2}})
                       : written;
    }

    static QString sectionId(int pipe) { return QStringLiteral("pipe-%1").arg(pipe); }

    BulkWriter& m_writer;
    const StarOptions& m_options;
};

} // namespace

QString makeStar(const QString& folder, const StarOptions& options)
{
    const auto made = ProjectStore::create(folder,
                                           {{QStringLiteral("PRJ_Name"), QStringLiteral("Star")},
                                            {QStringLiteral("PRJ_ProjectionWKT"), QStringLiteral("EPSG:25832")}},
                                           [&options](BulkWriter& writer) { return Star(writer, options).write(); });
    return made ? QString() : made.error;
}

QString starCentre()
{
    return QStringLiteral("centre");
}

QString starInspection(int pipe)
{
    return QStringLiteral("inspection-%1").arg(pipe);
}

} // namespace Torvik::Bench
