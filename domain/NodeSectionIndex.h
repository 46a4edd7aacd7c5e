#pragma once

#include "domain/boundary/GUID.h"

#include <QHash>
#include <QMultiHash>
#include <QPair>
#include <QSet>

namespace Torvik::View3d {

/** Which sections touch a node: one entry for each end of each section, and the way back, so that a section whose ends
 *  change is found without walking the index. */
class NodeSectionIndex {
public:
    using GUID = Base::GUID;

    /** Forgets the section's earlier ends. An empty reference stands under the empty key. */
    void setEnds(const GUID& sectionId, const GUID& fromNodeId, const GUID& toNodeId)
    {
        const auto known = m_ends.constFind(sectionId);
        if (known != m_ends.constEnd()) {
            m_sections.remove(known->first, sectionId);
            m_sections.remove(known->second, sectionId);
        }
        m_ends.insert(sectionId, qMakePair(fromNodeId, toNodeId));
        m_sections.insert(fromNodeId, sectionId);
        m_sections.insert(toNodeId, sectionId);
    }

    /** Ids of the sections at this node, each once, in no particular order. */
    QList<GUID> sectionsAt(const GUID& nodeId) const
    {
        const auto sections = m_sections.values(nodeId);
        return QSet<GUID>(sections.begin(), sections.end()).values();
    }

    const QMultiHash<GUID, GUID>& entries() const { return m_sections; }

    void clear()
    {
        m_sections.clear();
        m_ends.clear();
    }

private:
    QMultiHash<GUID, GUID> m_sections;
    QHash<GUID, QPair<GUID, GUID>> m_ends;
};

} // namespace Torvik::View3d
