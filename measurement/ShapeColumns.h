#pragma once

#include "domain/boundary/ObjectType.h"

#include <QHash>
#include <QString>

namespace Torvik::View3d {

/** The column that holds the shape of an object of each type; types without a shape are not in it. */
const QHash<Database::ObjectType, QString>& shapeColumns();

} // namespace Torvik::View3d
