#include "host/app/PlanCopy.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace Torvik::Viewer::PlanCopy {

namespace {

constexpr qint64 blockBytes = 1024 * 1024;
/** In UTF-8. A file system takes 255, and a number and what marks it as set aside come to it. */
constexpr int longestName = 200;

bool cannotBeStored(QChar letter)
{
    // A backslash parts folders in plan.xml; the others are in no XML.
    return letter == QLatin1Char('\\') || letter < QLatin1Char(' ') || letter.unicode() >= 0xFFFE;
}

QString storable(const QString& baseName)
{
    QString name = baseName.trimmed();
    std::replace_if(name.begin(), name.end(), cannotBeStored, QLatin1Char('_'));
    while (name.toUtf8().size() > longestName)
        name.chop(name.size() > 1 && name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    return name;
}

QString named(const QFileInfo& file, const QString& addition)
{
    QString suffix = file.suffix();
    if (suffix.compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0)
        suffix = QStringLiteral("pdf");
    else if (suffix.compare(QLatin1String("tif"), Qt::CaseInsensitive) == 0)
        suffix = QStringLiteral("tiff");
    return storable(file.completeBaseName()) + addition + QLatin1Char('.') + suffix;
}

bool isPdf(const QString& name)
{
    return name.endsWith(QLatin1String(".pdf"));
}

QString copyBlocks(QFile& in, QSaveFile& out, const std::atomic_bool& cancelled)
{
    while (!in.atEnd() && !cancelled) {
        const QByteArray block = in.read(blockBytes);
        if (block.isEmpty())
            break;
        if (out.write(block) != block.size())
            return out.errorString();
    }
    if (cancelled)
        return {};
    if (in.error() != QFileDevice::NoError)
        return in.errorString();
    return out.flush() && out.commit() ? QString() : out.errorString();
}

} // namespace

QString loadableName(const QString& file)
{
    return named(QFileInfo(file), {});
}

bool needsCopy(const QString& file)
{
    const QString name = loadableName(file);
    return isPdf(name) || name != QFileInfo(file).fileName();
}

QString nameInProject(const QString& name)
{
    return isPdf(name) ? name.left(name.size() - 4) + QStringLiteral(".png") : name;
}

QString freeName(const QString& file, const QString& folder, const QString& oldPlan)
{
    const QFileInfo info(file);
    for (int i = 1;; ++i) {
        const QString name = named(info, i == 1 ? QString() : QStringLiteral("-%1").arg(i));
        const QString path = folder + nameInProject(name);
        if (!QFile::exists(path) || (path == oldPlan && !isPdf(name)))
            return name;
    }
}

QString copy(const QString& from, const QString& to, const std::atomic_bool& cancelled)
{
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        return in.errorString();
    QSaveFile out(to);
    if (!out.open(QIODevice::WriteOnly))
        return out.errorString();
    const QString problem = copyBlocks(in, out, cancelled);
    if (!problem.isEmpty() || cancelled)
        return problem;
    QFile::setPermissions(to, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return {};
}

} // namespace Torvik::Viewer::PlanCopy
