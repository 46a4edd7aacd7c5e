#include "host/domain/TableReader.h"

namespace Torvik::Database {

namespace {

const QString kindColumn = QStringLiteral("OBJ_Kind");

} // namespace

TableReader::TableReader(const SqlConnection& connection, const Schema::Table& table,
                         std::shared_ptr<ColumnLayout> layout)
    : m_connection(connection)
    , m_table(table)
    , m_layout(std::move(layout))
    , m_query(connection.database())
{
    m_query.setForwardOnly(true);
    while (m_columnCount < m_layout->count() && m_layout->isStored(m_columnCount)) {
        ++m_columnCount;
    }
    m_lastTexts.resize(m_columnCount);
    m_keyIndex = m_layout->indexOf(table.keyColumn);
    m_parentIndex = table.parentColumn.isEmpty() ? -1 : m_layout->indexOf(table.parentColumn);
    m_kindIndex = m_layout->indexOf(kindColumn);
}

std::shared_ptr<ColumnLayout> TableReader::readLayout(const SqlConnection& connection, const Schema::Table& table,
                                                      StoreStatus& status)
{
    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table.name))) {
        status = connection.failure(query.lastError());
        return nullptr;
    }
    auto layout = std::make_shared<ColumnLayout>();
    while (query.next()) {
        layout->addColumn(query.value(1).toString(), query.value(2).toString());
    }
    for (const QString& needed : {table.keyColumn, table.parentColumn}) {
        if (!needed.isEmpty() && layout->indexOf(needed) < 0) {
            status = {
                QStringLiteral("%1: it is damaged (table %2 lacks %3)").arg(connection.file(), table.name, needed)};
            return nullptr;
        }
    }
    return layout;
}

StoreStatus TableReader::selectAll()
{
    return start(QStringLiteral("ORDER BY rowid"), {});
}

StoreStatus TableReader::selectOne(const QString& id)
{
    return start(QStringLiteral("WHERE %1 = ?").arg(m_table.keyColumn), id);
}

StoreStatus TableReader::start(const QString& condition, const QVariant& bound)
{
    QStringList names;
    for (int column = 0; column < m_columnCount; ++column) {
        names.append(QLatin1Char('[') + m_layout->name(column) + QLatin1Char(']'));
    }
    m_query.prepare(QStringLiteral("SELECT %1 FROM %2 %3").arg(names.join(QLatin1Char(',')), m_table.name, condition));
    if (bound.isValid()) {
        m_query.addBindValue(bound);
    }
    m_status = m_query.exec() ? StoreStatus {} : m_connection.failure(m_query.lastError());
    return m_status;
}

bool TableReader::next()
{
    if (m_query.next()) {
        return true;
    }
    if (m_query.lastError().isValid()) {
        m_status = m_connection.failure(m_query.lastError());
    }
    m_query.finish();
    return false;
}

QString TableReader::id() const
{
    return m_query.value(m_keyIndex).toString();
}

QString TableReader::parentId() const
{
    return m_parentIndex < 0 ? QString() : m_query.value(m_parentIndex).toString();
}

ObjectType TableReader::type() const
{
    if (m_kindIndex < 0) {
        return m_table.type;
    }
    return m_query.value(m_kindIndex).toInt() == LateralObjectType ? LateralObjectType : SectionObjectType;
}

void TableReader::readInto(ObjectValues& values)
{
    for (int column = 0; column < m_columnCount; ++column) {
        QVariant read = m_query.value(column);
        if (read.isNull()) {
            continue;
        }
        if (read.type() == QVariant::String) {
            QVariant& last = m_lastTexts[column];
            if (last == read) {
                read = last;
            } else {
                last = read;
            }
        }
        values.set(column, read);
    }
}

} // namespace Torvik::Database
