#include "domain/boundary/SqlTask.h"

#include "domain/boundary/CLogger.h"
#include "host/domain/ActiveDatabase.h"
#include "host/domain/StoreTrouble.h"
#include "host/domain/ThreadConnections.h"
#include "host/domain/WriteTurn.h"

#include <QSqlQuery>
#include <QThread>

#include <optional>

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

/** What doesn't says so by its first word. */
bool onlyReads(const QString& statement)
{
    return statement.trimmed().startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive);
}

/** Set while a task runs on behalf of a thread that waits for it: it is then not repeated. */
thread_local bool callerWaits = false;

StoreStatus attempt(const QString& file, const QString& statement, const QMap<QString, QVariant>& bindings,
                    SqlResult& result)
{
    StoreStatus status;
    const SqlConnection* const connection = ThreadConnections::get(file, status);
    if (!connection) {
        return status;
    }
    std::optional<WriteTurn> turn;
    if (!onlyReads(statement)) {
        turn.emplace(callerWaits ? SqlConnection::busyTimeoutMs : WriteTurn::withoutLimit);
        if (!turn->hasCome()) {
            return {QStringLiteral("%1: it is being written to").arg(file), WriteTurn::notCome};
        }
    }
    QSqlQuery query(connection->database());
    query.setForwardOnly(true);
    if (!runStatement(query, statement, bindings)) {
        return connection->failure(query.lastError());
    }
    QVector<QSqlRecord> rows;
    while (query.next()) {
        rows.append(query.record());
    }
    if (query.lastError().isValid()) {
        return connection->failure(query.lastError());
    }
    result = SqlResult(std::move(rows));
    return {};
}

/** Tries again while the failure may pass. What is queued behind waits too, so the order stays. */
template <typename Run>
StoreStatus patiently(const Run& run)
{
    StoreTrouble& trouble = StoreTrouble::instance();
    StoreStatus status = run();
    if (!status && !StoreTrouble::mayPass(status)) {
        trouble.refuse(status.error);
    }
    if (status || !StoreTrouble::mayPass(status)) {
        return status;
    }
    trouble.enter(status);
    do {
        QThread::msleep(StoreTrouble::retryIntervalMs);
        // A file that was read-only when it was opened stays so for its connection.
        ThreadConnections::release();
        status = run();
    } while (!status && StoreTrouble::mayPass(status) && trouble.patient());
    if (!status) {
        trouble.noteLost();
    }
    trouble.leave();
    return status;
}

} // namespace

void SqlTask::executeNow()
{
    m_result = SqlResult();
    callerWaits = true;
    fill(m_result);
    callerWaits = false;
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
    if (!callerWaits && StoreTrouble::instance().givenUp()) {
        // Thousands may wait behind the one that is told; how many, is told at the end.
        StoreTrouble::instance().noteLost();
        return;
    }
    const auto run = [&] { return attempt(m_databaseFile, m_statement, m_bindings, result); };
    const StoreStatus status = callerWaits ? run() : patiently(run);
    if (!status) {
        logFailure(m_statement, status.error);
    }
}

} // namespace Torvik::Database
