#pragma once

#include "domain/boundary/Async.h"

#include <QMap>
#include <QMetaType>
#include <QSqlRecord>
#include <QString>
#include <QVariant>
#include <QVector>

namespace Torvik::Database {

/** Rows of a statement; empty when it gave none or failed. */
class SqlResult {
public:
    SqlResult() = default;
    explicit SqlResult(QVector<QSqlRecord> rows)
        : m_rows(std::move(rows))
    {
    }

    const QVector<QSqlRecord>& data() const { return m_rows; }

private:
    QVector<QSqlRecord> m_rows;
};

/** Runs statements against the active project's database. A failure is logged and shows as an empty result. */
class SqlTask : public Shared::Task<SqlResult> {
public:
    /** Runs on the calling thread. */
    void executeNow();
    /** One cell of the result of executeNow() as text; empty when there is no such cell. */
    QString getStringResult(int row, int column) const;
    const SqlResult& result() const { return m_result; }

private:
    SqlResult m_result;
};

/** One statement with its bindings (placeholder to value). */
class SqlUserTask : public SqlTask {
public:
    explicit SqlUserTask(const QString& statement, const QMap<QString, QVariant>& bindings = {});

    /** A task on the heap for Async, which takes it over. */
    template <typename... Bindings>
    static SqlUserTask* createAsyncTask(QString& statement, const Bindings&... bindings)
    {
        return new SqlUserTask(statement, bindings...);
    }

protected:
    void fill(SqlResult& result) override;

private:
    QString m_statement;
    QMap<QString, QVariant> m_bindings;
    QString m_databaseFile;
};

} // namespace Torvik::Database

Q_DECLARE_METATYPE(Torvik::Database::SqlResult)
