#include "domain/boundary/SqlTask.h"

#include "domain/boundary/CLogger.h"
#include "host/domain/ActiveDatabase.h"
#include "host/domain/ThreadConnections.h"

#include <QSqlQuery>

namespace Torvik::Database {

namespace {

const QString category = QStringLiteral("Torvik::Database::SqlTask");

/** Statements may carry a whole course in their text. */
constexpr int loggedLength = 200;

void logFailure(const QString& statement, const QString& cause)
{
    const QString shown =
        statement.size() > loggedLength ? statement.left(loggedLength) + QStringLiteral("...") : statement;
    Logging::CLogger::logMessage(Logging::LogError, category, QStringLiteral("%1, in: %2").arg(cause, shown));
}

QString placeholder(const QString& name)
{
    return name.startsWith(QLatin1Char(':')) ? name : QLatin1Char(':') + name;
}

bool runStatement(QSqlQuery& query, const QString& statement, const QMap<QString, QVariant>& bindings)
{
    if (bindings.isEmpty()) {
        return query.exec(statement);
    }
    if (!query.prepare(statement)) {
        return false;
    }
    for (auto binding = bindings.cbegin(); binding != bindings.cend(); ++binding) {
        query.bindValue(placeholder(binding.key()), *binding);
    }
    return query.exec();
}

} // namespace

void SqlTask::executeNow()
{
    m_result = SqlResult();
    fill(m_result);
}

QString SqlTask::getStringResult(int row, int column) const
{
    const auto& rows = m_result.data();
    return row >= 0 && row < rows.size() ? rows[row].value(column).toString() : QString();
}

SqlUserTask::SqlUserTask(const QString& statement, const QMap<QString, QVariant>& bindings)
    : m_statement(statement)
    , m_bindings(bindings)
    , m_databaseFile(ActiveDatabase::file())
{
}

void SqlUserTask::fill(SqlResult& result)
{
    if (m_databaseFile.isEmpty()) {
        logFailure(m_statement, QStringLiteral("There is no active project"));
        return;
    }
    StoreStatus status;
    const SqlConnection* const connection = ThreadConnections::get(m_databaseFile, status);
    if (!connection) {
        logFailure(m_statement, status.error);
        return;
    }
    QSqlQuery query(connection->database());
    query.setForwardOnly(true);
    if (!runStatement(query, m_statement, m_bindings)) {
        logFailure(m_statement, connection->failure(query.lastError()).error);
        return;
    }
    QVector<QSqlRecord> rows;
    while (query.next()) {
        rows.append(query.record());
    }
    if (query.lastError().isValid()) {
        logFailure(m_statement, connection->failure(query.lastError()).error);
        return;
    }
    result = SqlResult(std::move(rows));
}

} // namespace Torvik::Database
