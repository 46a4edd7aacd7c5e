#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QVariant>

#include <memory>

class QSqlQuery;

namespace Torvik::Database {

/** Outcome of an operation of the store. */
struct StoreStatus {
    QString error; ///< one readable line that names file and cause; empty when all went well
    int code = 0;  ///< SQLite's primary result code where the database refused, WriteTurn::notCome; else 0

    bool ok() const { return error.isEmpty(); }
    explicit operator bool() const { return ok(); }
};

/** One connection to a project's database, closed with its object. Belongs to the thread that opened it. */
class SqlConnection {
public:
    enum Access {
        ReadWrite,
        ReadOnly,
        Immutable ///< reads without touching anything on the disk; only while no one writes
    };

    static constexpr int busyTimeoutMs = 3000;

    /** Null with an error for a file that is missing or cannot be opened. Never makes a file. */
    static std::unique_ptr<SqlConnection> open(const QString& file, Access access, StoreStatus& status,
                                               int timeoutMs = busyTimeoutMs);
    /** Makes the file, which must not exist. */
    static std::unique_ptr<SqlConnection> create(const QString& file, StoreStatus& status);
    ~SqlConnection();
    SqlConnection(const SqlConnection&) = delete;
    SqlConnection& operator=(const SqlConnection&) = delete;

    const QSqlDatabase& database() const { return m_database; }
    const QString& file() const { return m_file; }

    StoreStatus execute(const QString& statement) const;
    /** How long a statement waits for another connection's lock. */
    void setBusyTimeout(int timeoutMs) const;
    /** First cell of the first row; invalid when there is none, with an error when the statement failed. */
    QVariant value(const QString& statement, StoreStatus& status) const;
    /** The error as a line for the user: file and cause in words. */
    StoreStatus failure(const QSqlError& error) const;

private:
    SqlConnection(const QString& file, Access access, int timeoutMs);
    /** What the format promises of every write. */
    StoreStatus keepPromises(Access access) const;

    QString m_name;
    QString m_file;
    QSqlDatabase m_database;
};

/** A write transaction that is undone unless it is committed. */
class SqlTransaction {
public:
    explicit SqlTransaction(const SqlConnection& connection);
    ~SqlTransaction();
    SqlTransaction(const SqlTransaction&) = delete;
    SqlTransaction& operator=(const SqlTransaction&) = delete;

    /** Whether the transaction has begun; a database that another one is writing to gives an error here. */
    const StoreStatus& begun() const { return m_begun; }
    StoreStatus commit();

private:
    const SqlConnection& m_connection;
    StoreStatus m_begun;
    bool m_open = false;
};

} // namespace Torvik::Database
