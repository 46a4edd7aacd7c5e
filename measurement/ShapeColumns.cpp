#include "measurement/ShapeColumns.h"

#include "domain/boundary/ColumnNames.h"

namespace Torvik::View3d {

const QHash<Database::ObjectType, QString>& shapeColumns()
{
    static const QHash<Database::ObjectType, QString> columns {
        {Database::SectionObjectType, Database::SECTION_SHAPE_WKT_COLUMN},
        {Database::LateralObjectType, Database::SECTION_SHAPE_WKT_COLUMN},
        {Database::PipeInspectionObjectType, Database::SECINSP_SHAPE_WKT_COLUMN},
        {Database::PipeObservationObjectType, Database::SECOBS_SHAPE_WKT_COLUMN},
        {Database::NodeObjectType, Database::NODE_SHAPE_WKT_COLUMN}};
    return columns;
}

} // namespace Torvik::View3d
