#include "plans/PlanFiles.h"

#include "plans/PlanSwap.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Torvik::View3d::PlanFiles {

namespace {

constexpr qint64 blockBytes = 1024 * 1024;

/** What the user reads, in the user's language. */
struct Text {
    Q_DECLARE_TR_FUNCTIONS(Torvik::View3d::PlanFiles)
};

QString cannotMove(const QString& from, const QString& to, const QString& reason)
{
    return Text::tr("%1 cannot be moved to %2: %3").arg(from, to, reason);
}

/** Empty when the copy is whole and on the disk. */
QString copy(const QString& from, const QString& to)
{
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        return cannotMove(from, to, in.errorString());
    QSaveFile out(to);
    if (!out.open(QIODevice::WriteOnly))
        return cannotMove(from, to, out.errorString());
    while (!in.atEnd()) {
        const QByteArray block = in.read(blockBytes);
        if (block.isEmpty())
            break;
        if (out.write(block) != block.size())
            return cannotMove(from, to, Text::tr("the disk may be full: %1").arg(out.errorString()));
    }
    if (in.error() != QFileDevice::NoError)
        return cannotMove(from, to, in.errorString());
    if (!out.flush() || !out.commit())
        return cannotMove(from, to, Text::tr("the disk may be full: %1").arg(out.errorString()));
    return {};
}

} // namespace

QString freeName(const QString& path, const QString& addition)
{
    const QFileInfo file(path);
    for (int i = 1;; ++i) {
        const QString name =
            QStringLiteral("%1/%2%3%4.%5")
                .arg(file.path(), file.completeBaseName(), addition, QString::number(i), file.suffix());
        if (!QFile::exists(name))
            return name;
    }
}

qlonglong sizeLimit(const QString& extension)
{
    static const QMap<QString, qlonglong> limits {{QStringLiteral("dxf"), 52428800}, {QStringLiteral("dwg"), 10485760}};
    return limits.value(extension.toLower(), 0);
}

bool isValid(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists())
        return false;
    const qlonglong limit = sizeLimit(file.suffix());
    return limit <= 0 || file.size() <= limit;
}

QString move(const QString& from, const QString& to)
{
    if (!QFile::exists(from))
        return cannotMove(from, to, Text::tr("it is not there any more"));
    if (QFile::exists(to))
        return cannotMove(from, to, Text::tr("there is a file of that name already"));
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return {};
    if (errno != EXDEV)
        return cannotMove(from, to, QString::fromLocal8Bit(std::strerror(errno)));
    const QString problem = copy(from, to);
    if (problem.isEmpty())
        QFile::remove(from);
    return problem;
}

QString backupOf(const QString& path)
{
    return path + QStringLiteral(".bak");
}

Swapped swap(const QString& oldPath, const QString& source, const QString& target)
{
    PlanSwap files(oldPath, source, target);
    const QString problem = files.begin();
    if (problem.isEmpty()) {
        files.commit();
        return {target, {}};
    }
    const bool hasOld = !oldPath.isEmpty() && QFile::exists(oldPath);
    return {hasOld ? oldPath : source, problem};
}

QString asideForConversion(const QString& path)
{
    return path + QStringLiteral(".before");
}

void recover(const QString& path)
{
    if (path.isEmpty())
        return;
    const QString before = asideForConversion(path);
    if (QFile::exists(before)) {
        if (QFile::exists(path))
            move(path, freeName(path));
        move(before, path);
    }
    if (!QFile::exists(path) && QFile::exists(backupOf(path)))
        move(backupOf(path), path);
}

} // namespace Torvik::View3d::PlanFiles
