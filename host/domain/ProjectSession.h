#pragma once

#include "domain/boundary/CProjectObject.h"
#include "host/domain/SqlConnection.h"

#include <QMap>
#include <QObject>
#include <QTimer>
#include <QVariantMap>

namespace Torvik::Database {

class ProjectData;
namespace Schema {
struct Table;
}

/** The connection of an open project: writes its objects and follows what others write. Main thread only. */
class ProjectSession : public QObject {
    Q_OBJECT

public:
    static constexpr int pollIntervalMs = 250;
    /** Origin of changes that another connection made. */
    static constexpr int foreignOrigin = 0;

    ProjectSession(std::unique_ptr<SqlConnection> connection, ProjectData& project, bool readOnly);

    StoreStatus update(const CDomainObjectPointer& object, int origin, int waitMs);
    StoreStatus insert(const CDomainObjectPointer& parent, ObjectType type, const QVariantMap& values,
                       CDomainObjectPointer& inserted);
    StoreStatus remove(const CDomainObjectPointer& object);
    StoreStatus insertJob(const QVariantMap& values, CDomainObjectPointer& inserted);
    QVector<CDomainObjectPointer> jobs(StoreStatus& status);
    /** Drops old entries of the change log once it has grown long. */
    StoreStatus cutBackLog();

private:
    struct Change {
        qint64 number = 0;
        QString table;
        QString object;
        char kind = 0;
    };

    StoreStatus writeColumns(const Schema::Table& table, const QString& id, const QVector<int>& columns,
                             const class ColumnLayout& layout, const class ObjectValues& values, const QString& stamp);
    StoreStatus insertRow(const Schema::Table& table, const QString& id, const QVariantMap& values);
    /** Runs `write` in a transaction and keeps the change log's own entries apart from those of others. */
    template <typename Write>
    StoreStatus inTransaction(const Write& write, int waitMs = SqlConnection::busyTimeoutMs);
    /** Entries behind the last one known; where some are gone, one that stands for all follows. */
    StoreStatus readChanges(QVector<Change>& changes);
    void poll();
    void apply(const QVector<Change>& changes);
    bool refreshOne(const Schema::Table& table, const QString& id);
    StoreStatus refreshAll();
    /** Takes over the row that the reader stands on. False when the object has another parent or type now. */
    bool takeOver(class TableReader& reader, const Schema::Table& table);
    void createFrom(class TableReader& reader, const CDomainObjectPointer& parent);
    void announceRemoval(const CDomainObjectPointer& object);
    CDomainObjectPointer projectObject() const;

    std::unique_ptr<SqlConnection> m_connection;
    ProjectData& m_project;
    bool m_readOnly;
    QTimer m_pollTimer;
    qint64 m_dataVersion = -1;
    QVector<Change> m_foreign; ///< read while writing, not yet applied
};

} // namespace Torvik::Database
