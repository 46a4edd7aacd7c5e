#pragma once

#include "host/domain/ObjectValues.h"
#include "host/domain/ProjectSchema.h"
#include "host/domain/SqlConnection.h"

#include <QSqlQuery>

namespace Torvik::Database {

/** Reads rows of one table into values. On the connection's thread. */
class TableReader {
public:
    TableReader(const SqlConnection& connection, const Schema::Table& table, std::shared_ptr<ColumnLayout> layout);

    /** The columns that the table has; null with an error when it is missing or lacks its key. */
    static std::shared_ptr<ColumnLayout> readLayout(const SqlConnection& connection, const Schema::Table& table,
                                                    StoreStatus& status);

    /** Starts over with all rows, in the order of their making. */
    StoreStatus selectAll();
    StoreStatus selectOne(const QString& id);
    /** False at the end, also at one by an error, which status() tells. */
    bool next();
    const StoreStatus& status() const { return m_status; }

    QString id() const;
    /** Id of the parent; empty when that is the project. */
    QString parentId() const;
    /** The table's type, or what the row says where sections and laterals share a table. */
    ObjectType type() const;
    QVariant value(int column) const { return m_query.value(column); }
    int columnCount() const { return m_columnCount; }
    /** Equal texts in a row of rows share their memory. */
    void readInto(ObjectValues& values);

private:
    StoreStatus start(const QString& condition, const QVariant& bound);

    const SqlConnection& m_connection;
    const Schema::Table& m_table;
    std::shared_ptr<ColumnLayout> m_layout;
    QSqlQuery m_query;
    StoreStatus m_status;
    int m_columnCount = 0;
    int m_keyIndex = -1;
    int m_parentIndex = -1;
    int m_kindIndex = -1;
    QVector<QVariant> m_lastTexts;
};

} // namespace Torvik::Database
