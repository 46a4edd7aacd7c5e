#pragma once

#include "domain/boundary/ObjectType.h"
#include "host/domain/SqlConnection.h"

#include <QVariantMap>

namespace Torvik::Database {

class BulkTable;

/** Writes many objects into a project in one transaction, without opening it in the view. Programs that have the
 * project open see the result as a whole. On any thread, but one object on one thread. */
class BulkWriter {
public:
    BulkWriter();
    /** Undoes everything unless committed. */
    ~BulkWriter();
    BulkWriter(const BulkWriter&) = delete;
    BulkWriter& operator=(const BulkWriter&) = delete;

    /** `folder` is that of an existing project. */
    StoreStatus begin(const QString& folder);
    /** Adds an object; an unknown column is an error. `parentId` is the pipe of an inspection, the inspection of an
     *  observation, and empty for all others. The id is the value of the key column when there is one, a new one
     *  otherwise; it is put into `id`. */
    StoreStatus insert(ObjectType type, const QString& parentId, const QVariantMap& values, QString* id = nullptr);
    /** Changes columns of an object that is there; none is an error. */
    StoreStatus update(ObjectType type, const QString& id, const QVariantMap& values);
    /** Changes columns of the project itself. */
    StoreStatus setProjectValues(const QVariantMap& values);
    /** Ends the writing; durable when it returns without an error. */
    StoreStatus commit();

private:
    BulkTable* tableFor(ObjectType type, StoreStatus& status);

    std::unique_ptr<SqlConnection> m_connection;
    std::unique_ptr<SqlTransaction> m_transaction;
    std::vector<std::unique_ptr<BulkTable>> m_tables;
    StoreStatus m_firstError; ///< what makes commit() refuse
};

} // namespace Torvik::Database
