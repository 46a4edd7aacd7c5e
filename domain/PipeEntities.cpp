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
    return m_byInspection.values();
}

void PipeEntities::remove(Section* section)
{
    const auto keys = m_keys.constFind(section);
    if (keys != m_keys.constEnd())
        forget(section, *keys);
}

Section* PipeEntities::removeByInspectionId(const QString& inspectionId)
{
    Section* const section = m_byInspection.value(inspectionId);
    remove(section);
    return section;
}

void PipeEntities::deleteSectionEntities()
{
    // Taken out first: what a section's farewell brings about must not find it here any more.
    const auto sections = getPipeEntities();
    m_byInspection.clear();
    m_bySection.clear();
    m_keys.clear();
    for (Section* section : sections)
        section->deleteAndSave();
}

void PipeEntities::forget(Section* section, const Keys& keys)
{
    const Keys copy = keys;
    // Another section may have taken the inspection's place since.
    if (m_byInspection.value(copy.inspectionId) == section)
        m_byInspection.remove(copy.inspectionId);
    m_bySection.remove(copy.sectionId, section);
    m_keys.remove(section);
}

} // namespace Torvik::View3d
