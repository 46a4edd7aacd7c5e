#include "host/app/PlanCopy.h"

#include <QFile>
#include <QFileInfo>

namespace Torvik::Viewer::PlanCopy {

namespace {

QString named(const QFileInfo& file, const QString& addition)
{
    QString suffix = file.suffix();
    if (suffix.compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0)
        suffix = QStringLiteral("pdf");
    else if (suffix.compare(QLatin1String("tif"), Qt::CaseInsensitive) == 0)
        suffix = QStringLiteral("tiff");
    return file.completeBaseName() + addition + QLatin1Char('.') + suffix;
}

/** What the project will hold: of a PDF its picture. */
QString nameInProject(const QString& name)
{
    return name.endsWith(QLatin1String(".pdf")) ? name.left(name.size() - 4) + QStringLiteral(".png") : name;
}

} // namespace

QString loadableName(const QString& file)
{
    return named(QFileInfo(file), {});
}

bool needsCopy(const QString& file)
{
    const QString name = loadableName(file);
    return name.endsWith(QLatin1String(".pdf")) || name != QFileInfo(file).fileName();
}

QString freeName(const QString& file, const QString& folder, const QString& oldPlan)
{
    const QFileInfo info(file);
    for (int i = 1;; ++i) {
        const QString name = named(info, i == 1 ? QString() : QStringLiteral("-%1").arg(i));
        const QString path = folder + nameInProject(name);
        if (!QFile::exists(path) || path == oldPlan)
            return name;
    }
}

QString copy(const QString& from, const QString& to)
{
    QFile file(from);
    if (!file.copy(to))
        return file.errorString();
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return {};
}

} // namespace Torvik::Viewer::PlanCopy
