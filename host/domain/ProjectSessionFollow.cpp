// How an open project follows what other connections write.

#include "domain/boundary/CLogger.h"
#include "host/domain/DomainObjectData.h"
#include "host/domain/NotificationManager.h"
#include "host/domain/ProjectSession.h"
#include "host/domain/TableReader.h"

#include <QSet>

namespace Torvik::Database {

namespace {

/** Parents before children. */
const ObjectType refreshOrder[] = {ProjectObjectType, NodeObjectType, SectionObjectType, PipeInspectionObjectType,
                                   PipeObservationObjectType};

void logFailure(const StoreStatus& status)
{
    Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::Database"),
                                 QStringLiteral("Changes by others cannot be read: %1").arg(status.error));
}

} // namespace

StoreStatus ProjectSession::readChanges(QVector<Change>& changes)
{
    QSqlQuery query(m_connection->database());
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT CHG_PK, CHG_Table, CHG_Object, CHG_Kind FROM CHANGELOG WHERE CHG_PK > ?"
                                 " ORDER BY CHG_PK"));
    query.addBindValue(m_project.seenChange);
    if (!query.exec()) {
        return m_connection->failure(query.lastError());
    }
    while (query.next()) {
        const QString kind = query.value(3).toString();
        changes.append({query.value(0).toLongLong(), query.value(1).toString(), query.value(2).toString(),
                        kind.isEmpty() ? '\0' : kind.at(0).toLatin1()});
    }
    if (query.lastError().isValid()) {
        return m_connection->failure(query.lastError());
    }
    const bool gap = !changes.isEmpty() && changes.first().number != m_project.seenChange + 1;
    if (gap) {
        changes.append({changes.last().number, {}, {}, Schema::changeAll});
    }
    return {};
}

StoreStatus ProjectSession::cutBackLog()
{
    constexpr qint64 longLog = 20000;
    constexpr qint64 keptRows = 10000;
    StoreStatus status;
    const qint64 first = m_connection->value(QStringLiteral("SELECT min(CHG_PK) FROM CHANGELOG"), status).toLongLong();
    const qint64 last = m_connection->value(QStringLiteral("SELECT max(CHG_PK) FROM CHANGELOG"), status).toLongLong();
    if (status && last - first > longLog) {
        status = m_connection->execute(QStringLiteral("DELETE FROM CHANGELOG WHERE CHG_PK <= %1").arg(last - keptRows));
    }
    return status;
}

void ProjectSession::poll()
{
    StoreStatus status;
    const qint64 version = m_connection->value(QStringLiteral("PRAGMA data_version"), status).toLongLong();
    if (status && version == m_dataVersion && m_foreign.isEmpty()) {
        return;
    }
    QVector<Change> changes;
    if (status) {
        status = readChanges(changes);
    }
    if (!status) {
        logFailure(status);
        return;
    }
    m_dataVersion = version;
    if (!changes.isEmpty()) {
        m_project.seenChange = changes.last().number;
    }
    changes = m_foreign + changes;
    m_foreign.clear();
    if (!changes.isEmpty()) {
        apply(changes);
    }
}

void ProjectSession::apply(const QVector<Change>& changes)
{
    QHash<QString, QSet<QString>> idsByTable;
    bool all = false;
    for (const Change& change : changes) {
        all = all || change.kind == Schema::changeAll;
        idsByTable[change.table].insert(change.object);
    }
    for (ObjectType type : refreshOrder) {
        const Schema::Table& table = *Schema::table(type);
        const QSet<QString> ids = idsByTable.value(table.name);
        for (auto id = ids.cbegin(); !all && id != ids.cend(); ++id) {
            all = !refreshOne(table, *id);
        }
    }
    if (all) {
        const StoreStatus status = refreshAll();
        if (!status) {
            logFailure(status);
        }
    }
    NotificationManager::instance().notify(CDomainNotification::TransactionCompleted, {});
}

bool ProjectSession::refreshOne(const Schema::Table& table, const QString& id)
{
    TableReader reader(*m_connection, table, m_project.layouts.value(table.type));
    const StoreStatus status = reader.selectOne(id);
    if (status && reader.next()) {
        return takeOver(reader, table);
    }
    if (!status || !reader.status()) {
        logFailure(status ? reader.status() : status);
        return true;
    }
    if (const CDomainObjectPointer gone = m_project.index.value(id)) {
        announceRemoval(gone);
    }
    return true;
}

StoreStatus ProjectSession::refreshAll()
{
    QSet<QString> present;
    for (ObjectType type : refreshOrder) {
        const Schema::Table& table = *Schema::table(type);
        TableReader reader(*m_connection, table, m_project.layouts.value(type));
        StoreStatus status = reader.selectAll();
        while (status && reader.next()) {
            const QString id = reader.id();
            present.insert(id);
            if (!takeOver(reader, table)) {
                announceRemoval(m_project.index.value(id));
                takeOver(reader, table);
            }
        }
        if (!status || !reader.status()) {
            return status ? reader.status() : status;
        }
    }
    const QStringList known = m_project.index.keys();
    for (const QString& id : known) {
        const CDomainObjectPointer object = present.contains(id) ? nullptr : m_project.index.value(id);
        if (object) {
            announceRemoval(object);
        }
    }
    return {};
}

bool ProjectSession::takeOver(TableReader& reader, const Schema::Table& table)
{
    const QString id = reader.id();
    const CDomainObjectPointer project = projectObject();
    const CDomainObjectPointer object = table.type == ProjectObjectType ? project : m_project.index.value(id);
    const QString parentId = reader.parentId();
    const CDomainObjectPointer parent = parentId.isEmpty() ? project : m_project.index.value(parentId);
    if (!object) {
        if (parent) {
            createFrom(reader, parent);
        }
        return true;
    }
    CDomainObjectPrivate& data = *CDomainObjectPrivate::of(object);
    if (table.type != ProjectObjectType && (reader.type() != data.type || data.parent != parent)) {
        return false;
    }
    for (int column = 0; column < reader.columnCount(); ++column) {
        // What was changed here and not yet written stays; it will replace what is stored.
        const QVariant before = data.values.value(column);
        if (data.isChanged(column) || !data.values.set(column, reader.value(column)) ||
            data.layout->name(column) == table.timeStampColumn) {
            continue;
        }
        NotificationManager::instance().notifyValueChanged(object, data.layout->name(column), before, foreignOrigin);
    }
    return true;
}

void ProjectSession::createFrom(TableReader& reader, const CDomainObjectPointer& parent)
{
    const ObjectType type = reader.type();
    auto data = std::make_unique<CDomainObjectPrivate>(type, reader.id(), m_project.layouts.value(type));
    reader.readInto(data->values);
    const CDomainObjectPointer object = CDomainObjectPrivate::make(std::move(data));
    m_project.attach(parent, object);
    NotificationManager::instance().notify(CDomainNotification::ObjectCreated, object);
    NotificationManager::instance().notifyListChanged(parent);
}

void ProjectSession::announceRemoval(const CDomainObjectPointer& object)
{
    const CDomainObjectPointer parent = object->parentObject().toStrongRef();
    for (const CDomainObjectPointer& removed : m_project.detach(object)) {
        NotificationManager::instance().notify(CDomainNotification::ObjectDeleted, removed);
    }
    NotificationManager::instance().notifyListChanged(parent);
}

} // namespace Torvik::Database
