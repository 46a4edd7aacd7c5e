#include "host/drawing/DrawingTask.h"

#include "domain/boundary/CLogger.h"
#include "host/drawing/DrawingTexts.h"
#include "host/drawing/OgrDrawingReader.h"

#include <QFileInfo>

#include <algorithm>
#include <new>

namespace Torvik::DXF {

namespace {

using Logging::CLogger;

QString category()
{
    return QStringLiteral("Torvik::DXF");
}

void describe(DrawingReport& report, const DrawingFile& file)
{
    const QString release = releaseOf(file.version);
    const bool dwg = file.kind == DrawingFile::Dwg;
    report.format = (dwg ? QStringLiteral("DWG ") : QStringLiteral("DXF ")) + release;
    report.format = report.format.trimmed();
    report.metresPerUnit = metresPerUnit(file.census.unitCode).value_or(0.0);
    report.entities = file.census.inModel;
    report.problem = file.problem;
}

void log(const DrawingReport& report, const DrawingRead& read)
{
    for (const QString& warning : report.warnings)
        CLogger::logMessage(Logging::LogWarning, category(), warning);
    CLogger::logMessage(
        Logging::LogInformation, category(),
        QStringLiteral("%1: %2, %3 features, %4 segments, %5 triangles, %6 points; %7 features hidden by "
                       "their layer, %8 on sheets")
            .arg(report.path, report.format)
            .arg(read.features)
            .arg(report.segments)
            .arg(report.triangles)
            .arg(report.points)
            .arg(read.hidden)
            .arg(read.inPaper));
    if (!read.losses.passedOver.empty())
        CLogger::logMessage(Logging::LogInformation, category(),
                            QStringLiteral("%1: passed over %2").arg(report.path, listed(read.losses.passedOver)));
}

void fail(DrawingReport& report, DrawingFile& file, DrawingProblem problem, const QString& complaint,
          const QString& message = {})
{
    file.problem = problem;
    report.problem = problem;
    report.message = message.isEmpty() ? explain(file, report.path) : message;
    if (problem != DrawingProblem::Cancelled)
        CLogger::logMessage(Logging::LogError, category(),
                            complaint.isEmpty() ? report.message
                                                : QStringLiteral("%1 (%2)").arg(report.message, complaint));
}

void measure(DrawingReport& report, const DrawingMeshes& drawing)
{
    if (drawing.meshes.isEmpty())
        return;
    QVector3D smallest = drawing.meshes.first().smallest;
    QVector3D largest = drawing.meshes.first().largest;
    for (const DrawingMesh& mesh : drawing.meshes) {
        smallest = {std::min(smallest.x(), mesh.smallest.x()), 0.0F, std::min(smallest.z(), mesh.smallest.z())};
        largest = {std::max(largest.x(), mesh.largest.x()), 0.0F, std::max(largest.z(), mesh.largest.z())};
    }
    const QVector3D size = largest - smallest;
    QVector3D middle = drawing.cropOffset.value_or(QVector3D()) + (smallest + largest) / 2;
    middle.setY(0.0F);
    report.width = double(std::max(size.x(), size.z()));
    report.fromOrigin = double(middle.length());
}

void readInto(DrawingResult& result, const std::shared_ptr<const std::atomic<bool>>& cancelled)
{
    DrawingReport& report = result.report;
    DrawingFile file = inspectDrawing(report.path, *cancelled);
    describe(report, file);
    if (file.problem != DrawingProblem::None) {
        fail(report, file, file.problem, {});
        return;
    }
    const DrawingRead read = readDrawing(report.path, file, cancelled);
    report.lost = read.losses.lostAtLeast;
    report.segments = int(read.drawing.lines.size() / 2);
    report.triangles = int(read.drawing.fills.size() / 3);
    report.points = int(read.drawing.points.size());
    if (read.problem != DrawingProblem::None) {
        const bool gone = read.problem == DrawingProblem::Unread && !QFileInfo::exists(report.path);
        const bool few = !gone && read.problem == DrawingProblem::Unread && report.lost > 0;
        fail(report, file, gone ? DrawingProblem::Missing : read.problem, read.complaint,
             few ? explainLosses(file, read.losses, report.path) : QString());
        return;
    }
    report.warnings = warningsOf(file, read.losses, report.path);
    log(report, read);
    result.meshes = meshesOf(read.drawing);
    measure(report, result.meshes);
}

} // namespace

DrawingResult readToMeshes(const QString& path, const std::shared_ptr<const std::atomic<bool>>& cancelled)
{
    DrawingResult result;
    result.report.path = path;
    try {
        readInto(result, cancelled);
    } catch (const std::bad_alloc&) {
        DrawingFile file;
        result.meshes = {};
        fail(result.report, file, DrawingProblem::TooMuch, {});
    }
    return result;
}

} // namespace Torvik::DXF
