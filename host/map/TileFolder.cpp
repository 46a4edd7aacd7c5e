#include "host/map/TileFolder.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace Torvik::Map {

TileFolder::TileFolder(const QString& path)
    : m_path(QDir(path).absolutePath())
{
}

QString TileFolder::problem() const
{
    const QDir folder(m_path);
    if (!folder.exists())
        return QStringLiteral("%1: there is no such folder").arg(m_path);
    static const QRegularExpression level(QStringLiteral("^\\d{1,2}$"));
    if (folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot).filter(level).isEmpty())
        return QStringLiteral("%1 holds no map tiles; they are kept as Z/X/Y.png").arg(m_path);
    return {};
}

QByteArray TileFolder::tile(const TileKey& key) const
{
    for (TileKey from = key; from.isValid(); from = from.parent()) {
        const QByteArray picture = file(from);
        if (!picture.isEmpty())
            return cutOut(picture, from, key);
    }
    return {};
}

QByteArray TileFolder::file(const TileKey& key) const
{
    const QString base = QStringLiteral("%1/%2/%3/%4").arg(m_path).arg(key.z).arg(key.x).arg(key.y);
    for (const char* ending : {".png", ".jpg", ".jpeg"}) {
        QFile file(base + QLatin1String(ending));
        if (file.open(QIODevice::ReadOnly))
            return file.readAll();
    }
    return {};
}

} // namespace Torvik::Map
