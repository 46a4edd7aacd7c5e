#include "plans/PlanSwap.h"

#include "plans/PlanFiles.h"

#include <QFile>
#include <QStringList>

namespace Torvik::View3d {

namespace {

QString asideOf(const QString& path)
{
    QString aside = path + QStringLiteral(".aside");
    while (QFile::exists(aside))
        aside += QStringLiteral("~");
    return aside;
}

} // namespace

PlanSwap::PlanSwap(const QString& oldPath, const QString& source, const QString& target)
    : m_old(QFile::exists(oldPath) ? oldPath : QString())
    , m_source(source)
    , m_target(target)
{
}

QString PlanSwap::putOldAside()
{
    const QString backup = PlanFiles::backupOf(m_old);
    // Left over from a program that ended in the midst of this, or a file of somebody else.
    if (QFile::exists(backup)) {
        const QString problem = PlanFiles::move(backup, PlanFiles::freeName(backup));
        if (!problem.isEmpty())
            return problem;
    }
    const QString problem = PlanFiles::move(m_old, backup);
    if (problem.isEmpty())
        m_backup = backup;
    return problem;
}

QString PlanSwap::begin()
{
    if (m_source == m_target)
        return {};
    QString problem = m_old.isEmpty() ? QString() : putOldAside();
    if (problem.isEmpty() && !m_old.isEmpty() && QFile::exists(m_target)) {
        const QString aside = asideOf(m_target);
        problem = PlanFiles::move(m_target, aside);
        if (problem.isEmpty())
            m_aside = aside;
    }
    if (problem.isEmpty())
        problem = PlanFiles::move(m_source, m_target);
    m_moved = problem.isEmpty();
    if (m_moved)
        return {};
    const QString lost = takeBack();
    return lost.isEmpty() ? problem : problem + QLatin1Char('\n') + lost;
}

void PlanSwap::commit()
{
    if (!m_backup.isEmpty())
        QFile::remove(m_backup);
    else if (m_source == m_target && m_old != m_target && !m_old.isEmpty())
        QFile::remove(m_old);
    if (!m_aside.isEmpty())
        QFile::remove(m_aside);
    m_backup.clear();
    m_aside.clear();
}

QString PlanSwap::takeBack()
{
    QStringList lost;
    if (m_moved)
        lost << PlanFiles::move(m_target, m_source);
    if (!m_aside.isEmpty())
        lost << PlanFiles::move(m_aside, m_target);
    if (!m_backup.isEmpty())
        lost << PlanFiles::move(m_backup, m_old);
    lost.removeAll({});
    m_moved = false;
    m_aside.clear();
    m_backup.clear();
    return lost.join(QLatin1Char('\n'));
}

} // namespace Torvik::View3d
