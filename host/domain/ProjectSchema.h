#pragma once

#include "domain/boundary/ObjectType.h"

#include <QStringList>

/** Tables of a project's database; docs/project-format.md tells what the columns mean. Pure values, any thread. */
namespace Torvik::Database::Schema {

constexpr int version = 1;
/** "KxPj" in the header of the file: what tells a project from any other SQLite database. */
constexpr int applicationId = 0x4B78506A;

/** A job has no type in the interface to the view; objects of the project's JOB table carry this one. */
constexpr auto JobObjectType = static_cast<ObjectType>(2);

/** How objects of one type stand in the database. Sections and laterals share a table. */
struct Table {
    ObjectType type;
    QString name;
    QString keyColumn;
    QString parentColumn;    ///< empty where the parent is the project
    QString timeStampColumn; ///< written with every change; its own changes are not notified
};

/** Null for a type without a table. */
const Table* table(ObjectType type);

/** All tables that a project's database has. */
QStringList tableNames();

/** Statements that build the tables, their indexes and their change log, in order. */
QStringList statements();
/** Statements that make and drop the triggers of the change log. */
QStringList triggerStatements();
QStringList dropTriggerStatements();

/** Kinds in the change log. "A" stands for any number of changes anywhere. */
constexpr char changeInserted = 'I';
constexpr char changeUpdated = 'U';
constexpr char changeDeleted = 'D';
constexpr char changeAll = 'A';

} // namespace Torvik::Database::Schema
