#include "scene/SelectionAwareness.h"

#include "domain/boundary/CLogger.h"

namespace Torvik::View3d {

namespace {

constexpr qint64 selectionGuardMs = 350;

} // namespace

QList<QString> SelectionAwareness::m_selectedGuids;

SelectionAwareness& SelectionAwareness::instance()
{
    static SelectionAwareness awareness;
    return awareness;
}

SelectionAwareness::SelectionAwareness()
{
    m_sinceSelection.start();
}

bool SelectionAwareness::selectionInProgress() const
{
    return selectionGuardMs - m_sinceSelection.elapsed() > 0;
}

QString SelectionAwareness::lastSelected() const
{
    return m_selectedGuids.isEmpty() ? QString() : m_selectedGuids.last();
}

void SelectionAwareness::selectOne(const QString& guid)
{
    if (onlyOneSelected() && isSelected(guid))
        return;
    m_selectedGuids = {guid};
    m_sinceSelection.restart();
}

void SelectionAwareness::selectNext(const QString& guid)
{
    m_selectedGuids.removeAll(guid);
    m_selectedGuids.append(guid);
    m_sinceSelection.restart();
}

void SelectionAwareness::deselect(const QString& guid, bool force)
{
    if (!force && selectionInProgress())
        return;
    if (!m_selectedGuids.removeOne(guid))
        Logging::CLogger::logMessage(Logging::LogError, QStringLiteral("Torvik::SelectionAwareness"),
                                     QStringLiteral("Trying to deselect id, which is not on selection list"));
}

} // namespace Torvik::View3d
