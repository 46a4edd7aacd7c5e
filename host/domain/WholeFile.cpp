#include "host/domain/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace Torvik::Database::WholeFile {

namespace {

/** With the buffer emptied, which neither commit() nor close() tells of when there is no room for it. */
bool writeAll(QFileDevice& file, const QByteArray& content)
{
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

QString errorOf(const QString& path, const QFileDevice& file)
{
    return QStringLiteral("%1: %2").arg(path, file.errorString());
}

} // namespace

QString write(const QString& path, const QByteArray& content)
{
    const QFileInfo there(path);
    if (there.exists() && !there.isFile() && !there.isDir()) {
        QFile device(path);
        return writeAll(device, content) ? QString() : errorOf(path, device);
    }
    QSaveFile file(path);
    return writeAll(file, content) && file.commit() ? QString() : errorOf(path, file);
}

} // namespace Torvik::Database::WholeFile
