#include "domain/boundary/ColumnNames.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/Commands.h"
#include "host/app/InspectionLookup.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/WholeFile.h"
#include "host/vehicle/Course.h"
#include "host/vehicle/Recording.h"

#include <QTextStream>

namespace Torvik::Viewer::Commands {

using Database::ProjectStore;

namespace {

/** Metres on the ground of one unit of the shape's system. */
double scaleAt(const QString& wkt, QString projection)
{
    QVector<Database::WktPoint> points;
    QString prefix;
    Database::ShapeWKTHelper::wktStringToWktPoints(Database::WktParser::parseWkt(wkt).value(0), points, prefix);
    if (points.isEmpty())
        return 1.0;
    auto* const projector = View3d::GdalGeoProjector::instance();
    projector->init(points.first(), projection);
    return projector->scale();
}

int writeRun(const QString& wkt, const Options& options, const QString& projection)
{
    const auto course = Vehicle::courseOfShape(wkt, scaleAt(wkt, projection));
    const auto run = Vehicle::runAlong(course, options.run);
    if (run.isEmpty())
        return failure(QStringLiteral("the inspection %1 has no stored course to record").arg(options.inspectKey));
    const QString error = Database::WholeFile::write(options.outputFile, Vehicle::writeRecording(run));
    if (!error.isEmpty())
        return failure(error);
    QTextStream(stdout) << "readings  " << run.size() << '\n'
                        << "length    " << QString::number(Vehicle::lengthOf(course), 'f', 2) << " m\n"
                        << "duration  " << QString::number(run.last().seconds, 'f', 1) << " s\n";
    return 0;
}

} // namespace

int record(const Options& options)
{
    const auto opened = ProjectStore::instance().open(options.project, ProjectStore::ReadOnly);
    if (!opened.project)
        return failure(opened.error);
    int status = 0;
    if (const auto inspection = inspectionOfKey(*opened.project, options.inspectKey)) {
        const QString wkt = inspection->readValue(Database::SECINSP_SHAPE_WKT_COLUMN).toString();
        status = writeRun(wkt, options, opened.project->projectionWKT());
    } else {
        status = failure(QStringLiteral("%1 has no inspection \"%2\"").arg(options.project, options.inspectKey));
    }
    ProjectStore::instance().close(opened.project);
    return status;
}

} // namespace Torvik::Viewer::Commands
