#pragma once

#include <QFileInfo>
#include <QString>

namespace Kx::Test {

/** A real file, or an empty path where the folder of real files is not there. */
inline QString realFile(const QString& name)
{
    QString folder = qEnvironmentVariable("KX_SHARED_DATA");
    if (folder.isEmpty())
        folder = QStringLiteral(KX_SOURCE_DIR "/../shared/data");
    const QString path = folder + QLatin1Char('/') + name;
    return QFileInfo::exists(path) ? path : QString();
}

} // namespace Kx::Test
