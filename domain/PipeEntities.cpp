#include "domain/PipeEntities.h"

#include "domain/SectionAdapterBase.h"
#include "network/Section.h"

namespace Torvik::View3d {

void PipeEntities::addPipeEntity(Section* section)
{
    const Keys keys {section->getProps()->inspectionId(), section->getProps()->sectionId()};
    remove(section);
    m_byInspection.insert(keys.inspectionId, section);
    m_bySection.insert(keys.sectionId, section);
    m_keys.insert(section, keys);
}

Section* PipeEntities::getByInspectionId(const QString& inspectionId) const
{
    return m_byInspection.value(inspectionId);
}

QList<Section*> PipeEntities::getBySectionId(const QString& sectionId) const
{
    return m_bySection.values(sectionId);
}

QList<Section*> PipeEntities::getPipeEntities() const
{
    // By section, as each entity stands there once: of two for one inspection the other index knows the later only.
    return m_bySection.values();
}

void PipeEntities::remove(Section* section)
{
    removeObject(section);
}

void PipeEntities::removeObject(const QObject* object)
{
    const auto entry = m_keys.find(object);
    if (entry == m_keys.end())
        return;
    const Keys keys = *entry;
    m_keys.erase(entry);
    // Another section may have taken the inspection's place since.
    if (m_byInspection.value(keys.inspectionId) == object)
        m_byInspection.remove(keys.inspectionId);
    const auto range = m_bySection.equal_range(keys.sectionId);
    for (auto it = range.first; it != range.second; ++it) {
        if (*it == object) {
            m_bySection.erase(it);
            break;
        }
    }
}

Section* PipeEntities::removeByInspectionId(const QString& inspectionId)
{
    Section* const section = m_byInspection.value(inspectionId);
    remove(section);
    return section;
}

QList<Section*> PipeEntities::takeAll()
{
    const auto sections = getPipeEntities();
    m_byInspection.clear();
    m_bySection.clear();
    m_keys.clear();
    return sections;
}

void PipeEntities::deleteSectionEntities()
{
    // Taken out first: what a section's farewell brings about must not find it here any more.
    const auto sections = takeAll();
    for (Section* section : sections)
        section->deleteAndSave();
}

} // namespace Torvik::View3d
