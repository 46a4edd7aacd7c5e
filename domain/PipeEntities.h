#pragma once

#include "scene/KxView3dExport.h"

#include <QHash>
#include <QList>
#include <QMultiMap>
#include <QObject>
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
    int count() const { return m_bySection.size(); }

    /** Removes every entry of this section. */
    void remove(Section* section);
    /** The same for one that is being destroyed; anything else is ignored. */
    void removeObject(const QObject* object);
    /** Takes the section out and gives it, or null. */
    Section* removeByInspectionId(const QString& inspectionId);
    /** Takes all sections out and gives them. */
    QList<Section*> takeAll();
    /** Takes all sections out and deletes them with what they have to save. */
    void deleteSectionEntities();

private:
    struct Keys {
        QString inspectionId;
        QString sectionId;
    };

    QHash<QString, Section*> m_byInspection;
    QMultiMap<QString, Section*> m_bySection;
    // The way back, so that removing one section doesn't walk all of them.
    QHash<const QObject*, Keys> m_keys;
};

} // namespace Torvik::View3d
