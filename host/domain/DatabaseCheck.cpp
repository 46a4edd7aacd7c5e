#include "host/domain/DatabaseCheck.h"

#include "host/domain/ProjectSchema.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace Torvik::Database::DatabaseCheck {

namespace {

// The database header as SQLite's file format defines it: offsets of big-endian numbers.
constexpr int headerSize = 100;
constexpr int pageSizeAt = 16;
constexpr int changeCounterAt = 24;
constexpr int pageCountAt = 28;
constexpr int userVersionAt = 60;
constexpr int applicationIdAt = 68;
constexpr int versionValidForAt = 92;

quint32 numberAt(const QByteArray& header, int offset)
{
    return qFromBigEndian<quint32>(header.constData() + offset);
}

/** Size the file must have, or 0 when the header does not tell. */
qint64 expectedSize(const QByteArray& header)
{
    const quint16 stored = qFromBigEndian<quint16>(header.constData() + pageSizeAt);
    const qint64 pageSize = stored == 1 ? 65536 : stored;
    const bool valid = numberAt(header, changeCounterAt) == numberAt(header, versionValidForAt);
    return valid ? pageSize * numberAt(header, pageCountAt) : 0;
}

bool hasWritePermission(const QString& path)
{
    const QFileInfo info(path);
    return info.isWritable() && (info.permissions() & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther));
}

StoreStatus tablesOf(const SqlConnection& connection)
{
    StoreStatus status;
    for (const QString& name : Schema::tableNames()) {
        const QVariant found = connection.value(
            QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = '%1'").arg(name), status);
        if (status && !found.isValid()) {
            status = {QStringLiteral("%1: it is damaged (table %2 is missing)").arg(connection.file(), name)};
        }
        if (!status) {
            break;
        }
    }
    return status;
}

StoreStatus because(const QString& file, const QString& cause)
{
    return {QStringLiteral("%1: %2").arg(file, cause)};
}

StoreStatus knownVersion(const QString& file, quint32 version)
{
    if (version > quint32(Schema::version)) {
        return because(file,
                       QStringLiteral("it was made by a newer version of this program (format %1, known up to %2)")
                           .arg(version)
                           .arg(Schema::version));
    }
    if (version == 0) {
        return because(file, QStringLiteral("it is damaged (it has no format version)"));
    }
    return {};
}

} // namespace

StoreStatus header(const QString& file)
{
    QFile opened(file);
    if (!opened.exists()) {
        return because(file, QStringLiteral("there is no such file"));
    }
    if (!opened.open(QIODevice::ReadOnly)) {
        return because(file, QStringLiteral("it cannot be read (%1)").arg(opened.errorString()));
    }
    const QByteArray bytes = opened.read(headerSize);
    static const QByteArray magic("SQLite format 3\0", 16);
    if (bytes.size() < headerSize || !bytes.startsWith(magic)) {
        return because(file, QStringLiteral("it is no database, or damaged"));
    }
    // Pages that seem to be missing may stand in the log of a program that is at work, or was cut off.
    const bool hasLog = QFileInfo::exists(file + QStringLiteral("-wal"));
    if (!hasLog && opened.size() < expectedSize(bytes)) {
        return because(
            file,
            QStringLiteral("it is damaged (%1 bytes are missing at its end)").arg(expectedSize(bytes) - opened.size()));
    }
    if (numberAt(bytes, applicationIdAt) != quint32(Schema::applicationId)) {
        return because(file, QStringLiteral("it is the database of another program"));
    }
    return knownVersion(file, numberAt(bytes, userVersionAt));
}

StoreStatus writable(const QString& file)
{
    if (!hasWritePermission(file)) {
        return because(file, QStringLiteral("it is read-only"));
    }
    const QString folder = QFileInfo(file).absolutePath();
    if (!hasWritePermission(folder)) {
        return because(file, QStringLiteral("its folder %1 is read-only").arg(folder));
    }
    return {};
}

SqlConnection::Access readAccess(const QString& file)
{
    // Without a log file no one has the database open, so nobody writes to it.
    return QFileInfo::exists(file + QStringLiteral("-wal")) ? SqlConnection::ReadOnly : SqlConnection::Immutable;
}

StoreStatus content(const QString& file)
{
    const auto check = [&file](SqlConnection::Access access) {
        StoreStatus status;
        const auto connection = SqlConnection::open(file, access, status);
        if (!connection) {
            return status;
        }
        const quint32 version = connection->value(QStringLiteral("PRAGMA user_version"), status).toUInt();
        if (status) {
            status = knownVersion(file, version);
        }
        if (!status) {
            return status;
        }
        const QString result = connection->value(QStringLiteral("PRAGMA quick_check(1)"), status).toString();
        if (status && result != QLatin1String("ok")) {
            status = because(file, QStringLiteral("it is damaged (%1)").arg(result.simplified()));
        }
        return status ? tablesOf(*connection) : status;
    };
    const SqlConnection::Access access = readAccess(file);
    const StoreStatus status = check(access);
    // Another program may have begun to write in between; then what was read was in motion.
    if (!status && access == SqlConnection::Immutable && readAccess(file) == SqlConnection::ReadOnly) {
        return check(SqlConnection::ReadOnly);
    }
    return status;
}

} // namespace Torvik::Database::DatabaseCheck
