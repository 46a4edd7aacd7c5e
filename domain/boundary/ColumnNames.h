#pragma once

#include <QString>

/** Keys of the columns that the view reads and writes under a constant's name. */
namespace Torvik::Database {

inline const QString NODE_KEY_COLUMN = QStringLiteral("OBJ_Key");
inline const QString NODE_SHAPE_WKT_COLUMN = QStringLiteral("OBJ_Shape_WKT");
inline const QString SECTION_SHAPE_WKT_COLUMN = QStringLiteral("OBJ_Shape_WKT");
inline const QString SECTION_FROMNODE_REF_COLUMN = QStringLiteral("OBJ_FromNode_REF");
inline const QString SECTION_TONODE_REF_COLUMN = QStringLiteral("OBJ_ToNode_REF");
inline const QString SECINSP_SHAPE_WKT_COLUMN = QStringLiteral("INS_Shape_WKT");
inline const QString SECOBS_SHAPE_WKT_COLUMN = QStringLiteral("OBS_Shape_WKT");

} // namespace Torvik::Database
