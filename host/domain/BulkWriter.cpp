#include "host/domain/BulkWriter.h"

#include "domain/boundary/GUID.h"
#include "host/domain/DatabaseCheck.h"
#include "host/domain/ProjectStore.h"
#include "host/domain/TableReader.h"

#include <QDateTime>
#include <QDir>

#include <vector>

namespace Torvik::Database {

namespace {

QString now()
{
    return QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss.zzzZ"));
}

} // namespace

/** The prepared statement that inserts into one table. */
class BulkTable {
public:
    BulkTable(const SqlConnection& connection, const Schema::Table& table, std::shared_ptr<ColumnLayout> layout)
        : m_connection(connection)
        , m_table(table)
        , m_layout(std::move(layout))
        , m_query(connection.database())
    {
        QStringList names;
        QStringList places;
        for (int column = 0; column < m_layout->count(); ++column) {
            names.append(QLatin1Char('[') + m_layout->name(column) + QLatin1Char(']'));
            places.append(QStringLiteral("?"));
        }
        m_query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(table.name, names.join(QLatin1Char(',')), places.join(QLatin1Char(','))));
    }

    const Schema::Table& table() const { return m_table; }

    StoreStatus insert(const QVariantMap& values)
    {
        std::vector<QVariant> row(std::size_t(m_layout->count()));
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            const int column = m_layout->indexOf(value.key());
            if (column < 0) {
                return {QStringLiteral("%1: table %2 has no column %3")
                            .arg(m_connection.file(), m_table.name, value.key())};
            }
            row[std::size_t(column)] = *value;
        }
        for (int column = 0; column < m_layout->count(); ++column) {
            m_query.bindValue(column, row[std::size_t(column)]);
        }
        return m_query.exec() ? StoreStatus {} : m_connection.failure(m_query.lastError());
    }

private:
    const SqlConnection& m_connection;
    const Schema::Table& m_table;
    std::shared_ptr<ColumnLayout> m_layout;
    QSqlQuery m_query;
};

BulkWriter::BulkWriter() = default;

BulkWriter::~BulkWriter()
{
    m_tables.clear();
    m_transaction.reset();
    m_connection.reset();
}

StoreStatus BulkWriter::begin(const QString& folder)
{
    const QString file = ProjectStore::databaseFile(folder);
    StoreStatus status = DatabaseCheck::header(file);
    if (status) {
        status = DatabaseCheck::writable(file);
    }
    if (status) {
        status = DatabaseCheck::content(file);
    }
    if (!status) {
        return status;
    }
    m_connection = SqlConnection::open(file, SqlConnection::ReadWrite, status);
    if (!m_connection) {
        return status;
    }
    m_transaction = std::make_unique<SqlTransaction>(*m_connection);
    if (!m_transaction->begun()) {
        return m_transaction->begun();
    }
    for (const QString& statement : Schema::dropTriggerStatements()) {
        status = m_connection->execute(statement);
        if (!status) {
            return status;
        }
    }
    return {};
}

BulkTable* BulkWriter::tableFor(ObjectType type, StoreStatus& status)
{
    const Schema::Table* const table = Schema::table(type);
    if (!table || type == ProjectObjectType || !m_transaction) {
        status = {QStringLiteral("Objects of type %1 cannot be added").arg(int(type))};
        return nullptr;
    }
    for (const auto& known : m_tables) {
        if (&known->table() == table) {
            return known.get();
        }
    }
    auto layout = TableReader::readLayout(*m_connection, *table, status);
    if (!layout) {
        return nullptr;
    }
    m_tables.push_back(std::make_unique<BulkTable>(*m_connection, *table, std::move(layout)));
    return m_tables.back().get();
}

StoreStatus BulkWriter::insert(ObjectType type, const QString& parentId, const QVariantMap& values, QString* id)
{
    StoreStatus status;
    BulkTable* const target = tableFor(type, status);
    if (target) {
        const Schema::Table& table = target->table();
        QVariantMap row = values;
        const QString key = row.value(table.keyColumn, CGuidHelper::createGuid()).toString();
        row.insert(table.keyColumn, key);
        if (!table.parentColumn.isEmpty()) {
            row.insert(table.parentColumn, parentId);
        }
        if (type == SectionObjectType || type == LateralObjectType) {
            row.insert(QStringLiteral("OBJ_Kind"), int(type));
        }
        if (!row.contains(table.timeStampColumn)) {
            row.insert(table.timeStampColumn, now());
        }
        status = target->insert(row);
        if (status && id) {
            *id = key;
        }
    }
    if (!status && m_firstError) {
        m_firstError = status;
    }
    return status;
}

StoreStatus BulkWriter::update(ObjectType type, const QString& id, const QVariantMap& values)
{
    const Schema::Table* const table = Schema::table(type);
    StoreStatus status;
    if (!table || type == ProjectObjectType || !m_transaction) {
        status = {QStringLiteral("Objects of type %1 cannot be changed").arg(int(type))};
    } else {
        QVariantMap row = values;
        if (!row.contains(table->timeStampColumn)) {
            row.insert(table->timeStampColumn, now());
        }
        QStringList assignments;
        for (const QString& column : row.keys()) {
            assignments.append(QStringLiteral("[%1] = ?").arg(column));
        }
        QSqlQuery query(m_connection->database());
        query.prepare(QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                          .arg(table->name, assignments.join(QStringLiteral(", ")), table->keyColumn));
        for (const QVariant& value : qAsConst(row)) {
            query.addBindValue(value);
        }
        query.addBindValue(id);
        if (!query.exec()) {
            status = m_connection->failure(query.lastError());
        } else if (query.numRowsAffected() != 1) {
            status = {QStringLiteral("%1: there is no %2 in table %3").arg(m_connection->file(), id, table->name)};
        }
    }
    if (!status && m_firstError) {
        m_firstError = status;
    }
    return status;
}

StoreStatus BulkWriter::setProjectValues(const QVariantMap& values)
{
    if (!m_transaction) {
        return {QStringLiteral("Nothing has been begun")};
    }
    QSqlQuery query(m_connection->database());
    QStringList assignments;
    for (const QString& key : values.keys()) {
        assignments.append(QStringLiteral("[%1] = ?").arg(key));
    }
    query.prepare(QStringLiteral("UPDATE PROJECT SET %1").arg(assignments.join(QStringLiteral(", "))));
    for (const QVariant& value : values) {
        query.addBindValue(value);
    }
    const StoreStatus status = query.exec() ? StoreStatus {} : m_connection->failure(query.lastError());
    if (!status && m_firstError) {
        m_firstError = status;
    }
    return status;
}

StoreStatus BulkWriter::commit()
{
    if (!m_firstError || !m_transaction) {
        return m_firstError ? StoreStatus {QStringLiteral("Nothing has been begun")} : m_firstError;
    }
    m_tables.clear();
    QStringList closing = Schema::triggerStatements();
    closing << QStringLiteral("DELETE FROM CHANGELOG")
            << QStringLiteral("INSERT INTO CHANGELOG(CHG_Table, CHG_Object, CHG_Kind) VALUES ('', '', '%1')")
                   .arg(QLatin1Char(Schema::changeAll));
    for (const QString& statement : closing) {
        const StoreStatus status = m_connection->execute(statement);
        if (!status) {
            return status;
        }
    }
    const StoreStatus status = m_transaction->commit();
    m_transaction.reset();
    m_connection.reset();
    return status;
}

} // namespace Torvik::Database
