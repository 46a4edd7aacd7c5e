#include "host/import/ProjectFindings.h"

#include "domain/boundary/WktPoint.h"
#include "host/domain/Foot.h"
#include "host/domain/ProjectStore.h"
#include "host/import/CoordinateSystem.h"
#include "host/import/CourseGeometry.h"
#include "host/import/FindingsAssembler.h"
#include "host/import/ProjectWriter.h"

#include <QFile>
#include <QHash>

#include <cmath>

namespace Torvik::Import {

using namespace Torvik::Database;

namespace {

constexpr int FeetUnit = 2;
/** In the first vertex of a pipe's shape: its course is not surveyed. */
constexpr int ObservationsFlag = 1;
/** A stored course this near to the one that follows from its bends is that one: the view keeps whole centimetres. */
constexpr double SameCourseM = 0.02;

/** A shape as it is stored. */
struct Shape {
    QVector<Point> points;
    int flags = 0;
};

Shape shapeOf(const CDomainObjectPointer& object, const char* column)
{
    QVector<WktPoint> points;
    QString prefix;
    ShapeWKTHelper::wktStringToWktPoints(object->readValue(QLatin1String(column)).toString(), points, prefix);
    Shape shape;
    for (const WktPoint& point : qAsConst(points))
        shape.points.append({point.x().toDouble(), point.y().toDouble(), point.z().toDouble()});
    if (!points.isEmpty())
        shape.flags = int(points.first().m().toDouble());
    return shape;
}

std::optional<double> numberOf(const CDomainObjectPointer& object, const char* column)
{
    const QVariant value = object->readValue(QLatin1String(column));
    bool ok = false;
    const double number = value.toDouble(&ok);
    return ok && !value.isNull() ? std::optional<double>(number) : std::nullopt;
}

QString textOf(const CDomainObjectPointer& object, const char* column)
{
    return object->readValue(QLatin1String(column)).toString();
}

/** Adds findings to one project. */
class Addition {
public:
    Addition(const CProjectObject& project, ImportReport& report)
        : m_metresPerUnit(project.readValue(QStringLiteral("PRJ_DistanceUnit")).toInt() == FeetUnit ? metresPerFoot
                                                                                                    : 1.0)
        , m_findings(pipesOf(project), report)
        , m_report(report)
    {
        int index = 0;
        forEachPipe(project, [&](const QSharedPointer<CGenericPipeObject>& pipe) {
            for (int i = 0; i < pipe->inspectionCount(); ++i)
                addInspection(pipe->inspection(i), index);
            ++index;
        });
    }

    void take(const QVector<FindingRecord>& records)
    {
        for (const FindingRecord& record : records)
            m_findings.take(record);
        m_findings.connectLaterals();
    }

    StoreStatus write(const QString& folder) const
    {
        QVector<ObservationRow> rows = m_findings.rows();
        if (rows.isEmpty())
            return {};
        BulkWriter writer;
        StoreStatus status = writer.begin(folder);
        for (int i = 0; status && i < rows.size(); ++i) {
            rows[i].finding.distance /= m_metresPerUnit;
            status = ProjectWriter::insert(writer, rows[i]);
        }
        for (int i = 0; status && i < m_inspections.size(); ++i) {
            const QString shape = bentShape(i);
            if (!shape.isEmpty())
                status = writer.update(PipeInspectionObjectType, m_inspections[i].id,
                                       {{QStringLiteral("INS_Shape_WKT"), shape}});
        }
        return status ? writer.commit() : status;
    }

private:
    struct Inspected {
        QString id;
        int pipe;
        Direction direction;
        Shape shape;
    };

    template <typename Visit>
    static void forEachPipe(const CProjectObject& project, const Visit& visit)
    {
        for (int i = 0; i < project.sectionCount(); ++i)
            visit(project.section(i));
        for (int i = 0; i < project.lateralCount(); ++i)
            visit(project.lateral(i));
    }

    static QVector<FindingsAssembler::Pipe> pipesOf(const CProjectObject& project)
    {
        QVector<FindingsAssembler::Pipe> pipes;
        forEachPipe(project, [&](const QSharedPointer<CGenericPipeObject>& pipe) {
            const Shape shape = shapeOf(pipe, "OBJ_Shape_WKT");
            FindingsAssembler::Pipe entry;
            entry.id = pipe->id();
            entry.key = textOf(pipe, "OBJ_Key");
            entry.kind = pipe->objectType() == LateralObjectType ? PipeKind::Lateral : PipeKind::Section;
            entry.fromNodeId = textOf(pipe, "OBJ_FromNode_REF");
            entry.toNodeId = textOf(pipe, "OBJ_ToNode_REF");
            entry.sectionId = textOf(pipe, "OBJ_Section_REF");
            entry.course = shape.points;
            entry.isSurveyed = !(shape.flags & ObservationsFlag);
            entry.length = numberOf(pipe, "OBJ_Length");
            pipes.append(entry);
        });
        return pipes;
    }

    void addInspection(const CDomainObjectPointer& object, int pipe)
    {
        const auto inspection = qSharedPointerDynamicCast<CPipeInspectionObject>(object);
        const Direction direction =
            inspection->inspectionDirection() == int(Direction::Upstream) ? Direction::Upstream : Direction::Downstream;
        const int index = m_findings.addInspection(
            {inspection->id(), pipe, direction, numberOf(inspection, "INS_Length"),
             textOf(inspection, "INS_Date") + QLatin1Char(' ') + textOf(inspection, "INS_Time")});
        m_inspections.append({inspection->id(), pipe, direction, shapeOf(inspection, "INS_Shape_WKT")});
        for (int i = 0; i < inspection->observationCount(); ++i) {
            const auto observation = inspection->observation(i);
            ObservationRow row;
            row.id = observation->id();
            row.inspectionId = inspection->id();
            row.lateralId = textOf(observation, "OBS_LateralSection_REF");
            row.finding.code = textOf(observation, "OBS_Code");
            row.finding.ch1 = textOf(observation, "OBS_Ch1");
            row.finding.ch2 = textOf(observation, "OBS_Ch2");
            row.finding.distance = numberOf(observation, "OBS_Distance").value_or(0.0) * m_metresPerUnit;
            const std::optional<double> clock = numberOf(observation, "OBS_BendClkH");
            if (clock)
                row.finding.bendClock = int(std::lround(*clock));
            row.finding.angle = numberOf(observation, "OBS_JointAngle");
            m_findings.addExisting(index, row);
        }
    }

    /** The stored course with new bends in it, where it is still the one that follows from the bends before; else
     * empty. */
    QString bentShape(int index) const
    {
        const Inspected& inspected = m_inspections[index];
        if (!m_findings.hasNewBends(index) || m_findings.pipe(inspected.pipe).isSurveyed)
            return {};
        const auto turned = [&](const QVector<Point>& course) {
            return inspected.direction == Direction::Downstream ? Course::reversed(course) : course;
        };
        const QVector<Point> walked = turned(inspected.shape.points);
        const auto warn = [&](const QString& reason) {
            m_report.warn(Kinds::Inspections, m_findings.pipe(inspected.pipe).key, {}, reason);
            return QString();
        };
        if (walked.size() < 2)
            return warn(QStringLiteral("has bends, but no stored course that could turn"));
        const double length = Course::length(walked);
        const Course::Vector heading = Course::between(walked[0], walked[1]);
        QVector<Course::Bend> before;
        for (const Course::Bend& bend : m_findings.bends(index, FindingsAssembler::Which::Existing)) {
            // What turned the heading is in the heading.
            if (bend.distance > 0.0)
                before.append(bend);
        }
        if (!isSame(walked, Course::bentCourse(walked[0], heading, length, before)))
            return warn(QStringLiteral("has new bends, but its course was changed; it stays as it is"));
        QVector<Course::Bend> all = before;
        all += m_findings.bends(index).mid(m_findings.bends(index, FindingsAssembler::Which::Existing).size());
        return Course::lineWkt(turned(Course::bentCourse(walked[0], heading, length, all)), inspected.shape.flags);
    }

    static bool isSame(const QVector<Point>& a, const QVector<Point>& b)
    {
        if (a.size() != b.size())
            return false;
        for (int i = 0; i < a.size(); ++i) {
            if (Course::length({a[i], b[i]}) > SameCourseM)
                return false;
        }
        return true;
    }

    double m_metresPerUnit;
    FindingsAssembler m_findings;
    ImportReport& m_report;
    QVector<Inspected> m_inspections;
};

} // namespace

bool addFindings(const FindingsOptions& options, ImportReport& report)
{
    report.project = options.project;
    report.files = options.files;
    report.format = QStringLiteral("findings");
    ProjectStore& store = ProjectStore::instance();
    const OpenedProject opened = store.open(options.project, ProjectStore::ReadOnly);
    if (!opened.project) {
        report.fail({}, opened.error);
        return false;
    }
    const std::optional<CoordinateSystem> system = CoordinateSystem::fromText(opened.project->projectionWKT(), nullptr);
    report.crs = system ? system->label() : QString();
    QVector<FindingRecord> records;
    for (const QString& path : options.files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            report.fail({path, 0, {}}, file.errorString());
            break;
        }
        records += FindingsFile::read(file.readAll(), path, report);
        if (report.failed())
            break;
    }
    std::optional<Addition> addition;
    if (!report.failed()) {
        addition.emplace(*opened.project, report);
        addition->take(records);
    }
    store.close(opened.project);
    if (!addition)
        return false;
    const StoreStatus written = addition->write(options.project);
    if (!written)
        report.fail({}, written.error);
    return !report.failed();
}

int runFindings(const FindingsOptions& options, QTextStream& out, QTextStream& err)
{
    ImportReport report;
    const bool ok = addFindings(options, report);
    return report.tell(ok, options.report, out, err);
}

} // namespace Torvik::Import
