#pragma once

#include "scene/KxView3dExport.h"

#include <QHash>
#include <QList>
#include <QMultiMap>
#include <QString>

namespace Torvik::View3d {

class Section;

/** Registry of the scene's sections, one for each inspection of a pipe. Doesn't own them. */
class KXVIEW3D_EXPORT PipeEntities {
public:
    void addPipeEntity(Section* section);
    /** Null when unknown. */
    Section* getByInspectionId(const QString& inspectionId) const;
    /** All inspections of a pipe; empty when unknown. */
    QList<Section*> getBySectionId(const QString& sectionId) const;
    QList<Section*> getPipeEntities() const;
    int count() const { return m_byInspection.size(); }

    /** Removes every entry of this section. Only its address is used, so it may be one that is being destroyed. */
    void remove(Section* section);
    /** Takes the section out and gives it, or null. */
    Section* removeByInspectionId(const QString& inspectionId);
    void deleteSectionEntities();

private:
    struct Keys {
        QString inspectionId;
        QString sectionId;
    };

    void forget(Section* section, const Keys& keys);

    QHash<QString, Section*> m_byInspection;
    QMultiMap<QString, Section*> m_bySection;
    // The way back, so that removing one section doesn't walk all of them.
    QHash<Section*, Keys> m_keys;
};

} // namespace Torvik::View3d
