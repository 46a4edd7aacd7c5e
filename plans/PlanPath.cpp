#include "plans/PlanPath.h"

#include <QRegularExpression>
#include <QStringList>

namespace Torvik::View3d::PlanPath {

namespace {

const QLatin1Char slash('/');
const QLatin1Char backslash('\\');
const QLatin1String above("..");

bool isAbsolute(const QString& path)
{
    static const QRegularExpression drive(QStringLiteral("^[A-Za-z]:"));
    return path.startsWith(slash) || drive.match(path).hasMatch();
}

bool standsAt(const QStringList& parts, int index, const QStringList& sought, Qt::CaseSensitivity sensitivity)
{
    for (int i = 0; i < sought.size(); ++i) {
        if (index + i >= parts.size() - 1 || parts[index + i].compare(sought[i], sensitivity) != 0)
            return false;
    }
    return true;
}

/** First of the parts, the file's name not among them, at which those sought stand; -1 without. */
int indexOf(const QStringList& parts, const QStringList& sought)
{
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        for (int i = 0; i < parts.size(); ++i) {
            if (standsAt(parts, i, sought, sensitivity))
                return i;
        }
    }
    return -1;
}

/** From the project's folder on, with the documentation folder spelt as it is here. */
QString insideProject(const QStringList& parts, const QString& folder, const QStringList& documentation, bool absolute)
{
    const auto from = [&parts](int index) { return parts.mid(index).join(slash); };
    const auto documented = [&](int index) {
        return (documentation + parts.mid(index + documentation.size())).join(slash);
    };
    if (!absolute && standsAt(parts, 0, documentation, Qt::CaseInsensitive))
        return documented(0);
    const int whole = indexOf(parts, QStringList(folder) + documentation);
    if (whole >= 0)
        return documented(whole + 1);
    const int alone = indexOf(parts, {folder});
    if (alone >= 0)
        return from(alone + 1);
    return absolute ? (documentation + QStringList(parts.last())).join(slash) : from(0);
}

} // namespace

QString stored(const QString& fullPath, const QString& documentation)
{
    const QString name = fullPath.section(slash, -1);
    return name.isEmpty() ? QString() : QString(documentation + name).replace(slash, backslash);
}

QString resolved(const QString& stored, const QString& projectPath, const QString& documentation)
{
    const QString folder = projectPath.section(slash, -1, -1, QString::SectionSkipEmpty);
    const QString path = QString(stored).replace(backslash, slash);
    if (folder.isEmpty() || path.isEmpty() || path.endsWith(slash))
        return {};
    const QStringList parts = path.split(slash, Qt::SkipEmptyParts);
    if (parts.last() == above)
        return {};
    // What leads out of the project is no plan of it: with the plan its file would be deleted.
    if (parts.contains(above))
        return projectPath + documentation + parts.last();
    return projectPath + insideProject(parts, folder, documentation.split(slash, Qt::SkipEmptyParts), isAbsolute(path));
}

} // namespace Torvik::View3d::PlanPath
