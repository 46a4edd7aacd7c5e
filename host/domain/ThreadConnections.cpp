#include "host/domain/ThreadConnections.h"

#include <QThreadStorage>

#include <map>

namespace Torvik::Database::ThreadConnections {

namespace {

using Connections = std::map<QString, std::unique_ptr<SqlConnection>>;

QThreadStorage<Connections*>& storage()
{
    // Never deleted: the threads of objects that go with the process end after whatever is static.
    static auto* const connections = new QThreadStorage<Connections*>;
    return *connections;
}

} // namespace

const SqlConnection* get(const QString& file, StoreStatus& status)
{
    if (!storage().hasLocalData()) {
        storage().setLocalData(new Connections);
    }
    std::unique_ptr<SqlConnection>& connection = (*storage().localData())[file];
    if (!connection) {
        connection = SqlConnection::open(file, SqlConnection::ReadWrite, status);
    }
    return connection.get();
}

void release()
{
    if (storage().hasLocalData()) {
        storage().localData()->clear();
    }
}

} // namespace Torvik::Database::ThreadConnections
