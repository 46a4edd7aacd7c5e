// How a new project comes to be.

#include "domain/boundary/BaseServices.h"
#include "domain/boundary/CLogger.h"
#include "domain/boundary/GUID.h"
#include "host/domain/ProjectSchema.h"
#include "host/domain/ProjectStore.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlQuery>
#include <QTemporaryDir>

namespace Torvik::Database {

namespace {

StoreStatus buildDatabase(const QString& file)
{
    StoreStatus status;
    const auto connection = SqlConnection::create(file, status);
    if (!connection) {
        return status;
    }
    // The marks stand in the file itself before the log begins, where anyone can read them without opening it.
    QStringList statements {QStringLiteral("PRAGMA application_id = %1").arg(Schema::applicationId),
                            QStringLiteral("PRAGMA user_version = %1").arg(Schema::version),
                            QStringLiteral("PRAGMA journal_mode = WAL"), QStringLiteral("BEGIN IMMEDIATE")};
    statements += Schema::statements();
    statements << QStringLiteral("COMMIT");
    for (const QString& statement : qAsConst(statements)) {
        status = connection->execute(statement);
        if (!status) {
            return status;
        }
    }
    QSqlQuery insert(connection->database());
    insert.prepare(QStringLiteral("INSERT INTO PROJECT (PRJ_PK, PRJ_CreatedAt) VALUES (?, ?)"));
    insert.addBindValue(CGuidHelper::createGuid());
    insert.addBindValue(QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    return insert.exec() ? StoreStatus {} : connection->failure(insert.lastError());
}

StoreStatus fillProject(const QString& folder, const QVariantMap& values, const ProjectStore::Fill& fill)
{
    if (values.isEmpty() && !fill) {
        return {};
    }
    BulkWriter writer;
    StoreStatus status = writer.begin(folder);
    if (status && !values.isEmpty()) {
        status = writer.setProjectValues(values);
    }
    if (status && fill) {
        status = fill(writer);
    }
    return status ? writer.commit() : status;
}

StoreStatus build(const QString& folder, const QVariantMap& values, const ProjectStore::Fill& fill)
{
    const QString graphics = folder + QLatin1Char('/') + Base::CFileSystemNames::graphics3DPathPart();
    if (!QDir().mkpath(graphics)) {
        return {QStringLiteral("%1: the folder cannot be made").arg(graphics)};
    }
    const StoreStatus status = buildDatabase(ProjectStore::databaseFile(folder));
    return status ? fillProject(folder, values, fill) : status;
}

} // namespace

StoreStatus ProjectStore::create(const QString& folder, const QVariantMap& values, const Fill& fill)
{
    const QString target = QDir(folder).absolutePath();
    const QFileInfo targetInfo(target);
    if (targetInfo.exists() && (!targetInfo.isDir() || !QDir(target).isEmpty())) {
        return {QStringLiteral("%1: there is something there already").arg(target)};
    }
    const QString above = targetInfo.absolutePath();
    if (!QDir().mkpath(above)) {
        return {QStringLiteral("%1: the folder cannot be made").arg(above)};
    }
    QTemporaryDir aside(target + QStringLiteral(".new-XXXXXX"));
    if (!aside.isValid()) {
        return {QStringLiteral("%1: no folder can be made in %2 (%3)").arg(target, above, aside.errorString())};
    }
    const QString built = aside.filePath(QStringLiteral("project"));
    const StoreStatus status = build(built, values, fill);
    if (!status) {
        // The file that the message names is the one that the user asked for.
        return {QString(status.error).replace(built, target)};
    }
    if (targetInfo.exists() && !QDir().rmdir(target)) {
        return {QStringLiteral("%1: the empty folder cannot be replaced").arg(target)};
    }
    if (!QDir().rename(built, target)) {
        return {QStringLiteral("%1: the finished project cannot be moved there").arg(target)};
    }
    return {};
}

} // namespace Torvik::Database
