#include "host/domain/ProjectSession.h"

#include "domain/boundary/CLogger.h"
#include "domain/boundary/GUID.h"
#include "host/domain/DomainObjectData.h"
#include "host/domain/NotificationManager.h"
#include "host/domain/TableReader.h"
#include "host/domain/WriteTurn.h"

#include <QDateTime>

namespace Torvik::Database {

namespace {

QString now()
{
    return QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss.zzzZ"));
}

bool isUnwritable(const Schema::Table& table, const QString& column)
{
    return column == table.keyColumn || column == table.parentColumn || column == QLatin1String("OBJ_Kind");
}

} // namespace

ProjectSession::ProjectSession(std::unique_ptr<SqlConnection> connection, ProjectData& project, bool readOnly)
    : m_connection(std::move(connection))
    , m_project(project)
    , m_readOnly(readOnly)
{
    m_pollTimer.setInterval(pollIntervalMs);
    connect(&m_pollTimer, &QTimer::timeout, this, &ProjectSession::poll);
    m_pollTimer.start();
}

CDomainObjectPointer ProjectSession::projectObject() const
{
    return m_project.self.toStrongRef();
}

template <typename Write>
StoreStatus ProjectSession::inTransaction(const Write& write, int waitMs)
{
    if (m_readOnly) {
        return {QStringLiteral("%1: it was opened for reading only").arg(m_connection->file())};
    }
    const WriteTurn turn(waitMs);
    if (!turn.hasCome()) {
        return {QStringLiteral("%1: it is being written to").arg(m_connection->file()), WriteTurn::notCome};
    }
    SqlTransaction transaction(*m_connection);
    if (!transaction.begun()) {
        return transaction.begun();
    }
    QVector<Change> foreign;
    StoreStatus status = readChanges(foreign);
    if (status) {
        status = write();
    }
    if (!status) {
        return status;
    }
    const qint64 last = m_connection->value(QStringLiteral("SELECT max(CHG_PK) FROM CHANGELOG"), status).toLongLong();
    if (status) {
        status = transaction.commit();
    }
    if (status) {
        m_project.seenChange = last;
        m_foreign += foreign;
        if (!m_foreign.isEmpty()) {
            QTimer::singleShot(0, this, &ProjectSession::poll);
        }
    }
    return status;
}

StoreStatus ProjectSession::update(const CDomainObjectPointer& object, int origin, int waitMs)
{
    CDomainObjectPrivate& data = *CDomainObjectPrivate::of(object);
    const Schema::Table& table = *Schema::table(data.type);
    QVector<int> columns;
    QVector<ColumnChange> written;
    QVector<ColumnChange> kept;
    for (const ColumnChange& change : qAsConst(data.changed)) {
        const bool writable =
            data.layout->isStored(change.column) && !isUnwritable(table, data.layout->name(change.column));
        (writable ? written : kept).append(change);
        if (writable) {
            columns.append(change.column);
        }
    }
    if (columns.isEmpty()) {
        return {};
    }
    const int stampColumn = data.layout->indexOf(table.timeStampColumn);
    const QString stamp = stampColumn < 0 || columns.contains(stampColumn) ? QString() : now();
    m_connection->setBusyTimeout(waitMs);
    const StoreStatus status =
        inTransaction([&] { return writeColumns(table, data.id, columns, *data.layout, data.values, stamp); }, waitMs);
    m_connection->setBusyTimeout(SqlConnection::busyTimeoutMs);
    if (!status) {
        return status;
    }
    if (!stamp.isEmpty()) {
        data.values.set(stampColumn, stamp);
    }
    data.changed = kept;
    auto& manager = NotificationManager::instance();
    for (const ColumnChange& change : qAsConst(written)) {
        manager.notifyValueChanged(object, data.layout->name(change.column), change.before, origin);
    }
    manager.notify(CDomainNotification::TransactionCompleted, {});
    return {};
}

StoreStatus ProjectSession::writeColumns(const Schema::Table& table, const QString& id, const QVector<int>& columns,
                                         const ColumnLayout& layout, const ObjectValues& values, const QString& stamp)
{
    QStringList assignments;
    for (int column : columns) {
        assignments.append(QStringLiteral("[%1] = ?").arg(layout.name(column)));
    }
    if (!stamp.isEmpty()) {
        assignments.append(QStringLiteral("[%1] = ?").arg(table.timeStampColumn));
    }
    QSqlQuery query(m_connection->database());
    query.prepare(QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                      .arg(table.name, assignments.join(QStringLiteral(", ")), table.keyColumn));
    for (int column : columns) {
        query.addBindValue(values.value(column));
    }
    if (!stamp.isEmpty()) {
        query.addBindValue(stamp);
    }
    query.addBindValue(id);
    if (!query.exec()) {
        return m_connection->failure(query.lastError());
    }
    if (query.numRowsAffected() == 0) {
        return {QStringLiteral("%1: %2 is not in %3 any more").arg(m_connection->file(), id, table.name)};
    }
    return {};
}

StoreStatus ProjectSession::insertRow(const Schema::Table& table, const QString& id, const QVariantMap& values)
{
    QStringList names {table.keyColumn};
    QVariantList bound {id};
    QVariantMap all = values;
    if (!all.contains(table.timeStampColumn)) {
        all.insert(table.timeStampColumn, now());
    }
    all.remove(table.keyColumn);
    for (auto value = all.cbegin(); value != all.cend(); ++value) {
        names.append(value.key());
        bound.append(*value);
    }
    QStringList places;
    for (int i = 0; i < names.size(); ++i) {
        places.append(QStringLiteral("?"));
    }
    QSqlQuery query(m_connection->database());
    query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(table.name, names.join(QLatin1Char(',')), places.join(QLatin1Char(','))));
    for (const QVariant& value : qAsConst(bound)) {
        query.addBindValue(value);
    }
    return query.exec() ? StoreStatus {} : m_connection->failure(query.lastError());
}

StoreStatus ProjectSession::insert(const CDomainObjectPointer& parent, ObjectType type, const QVariantMap& values,
                                   CDomainObjectPointer& inserted)
{
    const Schema::Table& table = *Schema::table(type);
    QVariantMap row = values;
    const QString id = row.value(table.keyColumn, CGuidHelper::createGuid()).toString();
    if (!table.parentColumn.isEmpty()) {
        row.insert(table.parentColumn, parent->id());
    } else if (type == SectionObjectType || type == LateralObjectType) {
        row.insert(QStringLiteral("OBJ_Kind"), int(type));
    }
    const StoreStatus written = inTransaction([&] { return insertRow(table, id, row); });
    if (!written) {
        return written;
    }
    TableReader reader(*m_connection, table, m_project.layouts.value(type));
    const StoreStatus read = reader.selectOne(id);
    if (!read || !reader.next()) {
        return read ? reader.status() : read;
    }
    createFrom(reader, parent);
    NotificationManager::instance().notify(CDomainNotification::TransactionCompleted, {});
    inserted = m_project.index.value(id);
    return {};
}

StoreStatus ProjectSession::remove(const CDomainObjectPointer& object)
{
    const Schema::Table& table = *Schema::table(object->objectType());
    const StoreStatus written = inTransaction([&] {
        QSqlQuery query(m_connection->database());
        query.prepare(QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(table.name, table.keyColumn));
        query.addBindValue(object->id());
        return query.exec() ? StoreStatus {} : m_connection->failure(query.lastError());
    });
    if (written) {
        announceRemoval(object);
        NotificationManager::instance().notify(CDomainNotification::TransactionCompleted, {});
    }
    return written;
}

StoreStatus ProjectSession::insertJob(const QVariantMap& values, CDomainObjectPointer& inserted)
{
    const Schema::Table& table = *Schema::table(Schema::JobObjectType);
    const QString id = values.value(table.keyColumn, CGuidHelper::createGuid()).toString();
    StoreStatus status = inTransaction([&] { return insertRow(table, id, values); });
    if (!status) {
        return status;
    }
    for (const CDomainObjectPointer& job : jobs(status)) {
        if (job->id() == id) {
            inserted = job;
        }
    }
    return status;
}

QVector<CDomainObjectPointer> ProjectSession::jobs(StoreStatus& status)
{
    const Schema::Table& table = *Schema::table(Schema::JobObjectType);
    const auto layout = TableReader::readLayout(*m_connection, table, status);
    if (!layout) {
        return {};
    }
    TableReader reader(*m_connection, table, layout);
    status = reader.selectAll();
    QVector<CDomainObjectPointer> result;
    while (status && reader.next()) {
        auto data = std::make_unique<CDomainObjectPrivate>(Schema::JobObjectType, reader.id(), layout);
        reader.readInto(data->values);
        data->parent = projectObject();
        result.append(CDomainObjectPrivate::make(std::move(data)));
    }
    return result;
}

} // namespace Torvik::Database
