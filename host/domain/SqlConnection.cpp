#include "host/domain/SqlConnection.h"

#include "domain/boundary/CLogger.h"

#include <QFileInfo>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>

namespace Torvik::Database {

namespace {

QString nameFor(const QString& file, SqlConnection::Access access)
{
    if (access != SqlConnection::Immutable) {
        return file;
    }
    return QStringLiteral("file:") + QString::fromLatin1(QUrl::toPercentEncoding(file, "/")) +
           QStringLiteral("?immutable=1");
}

QString optionsFor(SqlConnection::Access access, int timeoutMs)
{
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(timeoutMs);
    if (access != SqlConnection::ReadWrite) {
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    }
    if (access == SqlConnection::Immutable) {
        options += QStringLiteral(";QSQLITE_OPEN_URI");
    }
    return options;
}

int primaryCode(const QSqlError& error)
{
    return error.nativeErrorCode().toInt() & 0xFF;
}

/** SQLite's primary result code in words. */
QString causeOf(const QSqlError& error)
{
    switch (primaryCode(error)) {
    case 5:
    case 6:
        return QStringLiteral("it is locked by another program");
    case 8:
        return QStringLiteral("it is read-only");
    case 10:
        return QStringLiteral("it cannot be read or written (%1)").arg(error.databaseText());
    case 11:
        return QStringLiteral("it is damaged (%1)").arg(error.databaseText());
    case 13:
        return QStringLiteral("the disk is full");
    case 14:
        return QStringLiteral("it cannot be opened");
    case 26:
        return QStringLiteral("it is no database, or damaged");
    default:
        return error.databaseText().isEmpty() ? error.text() : error.databaseText();
    }
}

} // namespace

SqlConnection::SqlConnection(const QString& file, Access access, int timeoutMs)
    : m_name(QUuid::createUuid().toString())
    , m_file(file)
    , m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name))
{
    m_database.setDatabaseName(nameFor(file, access));
    m_database.setConnectOptions(optionsFor(access, timeoutMs));
}

SqlConnection::~SqlConnection()
{
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
}

std::unique_ptr<SqlConnection> SqlConnection::open(const QString& file, Access access, StoreStatus& status,
                                                   int timeoutMs)
{
    if (!QFileInfo(file).isFile()) {
        constexpr int cannotOpen = 14;
        status = {QStringLiteral("%1: there is no such file").arg(file), cannotOpen};
        return nullptr;
    }
    std::unique_ptr<SqlConnection> connection(new SqlConnection(file, access, timeoutMs));
    if (!connection->m_database.open()) {
        status = connection->failure(connection->m_database.lastError());
        return nullptr;
    }
    status = connection->keepPromises(access);
    return status ? std::move(connection) : nullptr;
}

std::unique_ptr<SqlConnection> SqlConnection::create(const QString& file, StoreStatus& status)
{
    if (QFileInfo::exists(file)) {
        status = {QStringLiteral("%1: the file exists already").arg(file)};
        return nullptr;
    }
    std::unique_ptr<SqlConnection> connection(new SqlConnection(file, ReadWrite, busyTimeoutMs));
    if (!connection->m_database.open()) {
        status = connection->failure(connection->m_database.lastError());
        return nullptr;
    }
    status = connection->keepPromises(ReadWrite);
    return status ? std::move(connection) : nullptr;
}

StoreStatus SqlConnection::keepPromises(Access access) const
{
    const StoreStatus keyed = execute(QStringLiteral("PRAGMA foreign_keys = ON"));
    // A library built with another default would lose what was told as stored when the power goes.
    return keyed && access == ReadWrite ? execute(QStringLiteral("PRAGMA synchronous = FULL")) : keyed;
}

StoreStatus SqlConnection::execute(const QString& statement) const
{
    QSqlQuery query(m_database);
    if (!query.exec(statement)) {
        return failure(query.lastError());
    }
    return {};
}

void SqlConnection::setBusyTimeout(int timeoutMs) const
{
    QSqlQuery(m_database).exec(QStringLiteral("PRAGMA busy_timeout = %1").arg(timeoutMs));
}

QVariant SqlConnection::value(const QString& statement, StoreStatus& status) const
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(statement)) {
        status = failure(query.lastError());
        return {};
    }
    if (query.next()) {
        return query.value(0);
    }
    if (query.lastError().isValid()) {
        status = failure(query.lastError());
    }
    return {};
}

StoreStatus SqlConnection::failure(const QSqlError& error) const
{
    return {QStringLiteral("%1: %2").arg(m_file, causeOf(error)), primaryCode(error)};
}

SqlTransaction::SqlTransaction(const SqlConnection& connection)
    : m_connection(connection)
    , m_begun(connection.execute(QStringLiteral("BEGIN IMMEDIATE")))
    , m_open(m_begun.ok())
{
}

SqlTransaction::~SqlTransaction()
{
    if (!m_open) {
        return;
    }
    const StoreStatus undone = m_connection.execute(QStringLiteral("ROLLBACK"));
    if (!undone) {
        Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::Database"),
                                     QStringLiteral("Rolling back failed: %1").arg(undone.error));
    }
}

StoreStatus SqlTransaction::commit()
{
    const StoreStatus done = m_connection.execute(QStringLiteral("COMMIT"));
    m_open = m_open && !done;
    return done;
}

} // namespace Torvik::Database
