#include "domain/PipeEntityBuilder.h"

#include "domain/NotificationMapper.h"
#include "domain/SectionAdapter.h"
#include "domain/boundary/Notifications.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

namespace Torvik::View3d {

PipeEntityBuilder::PipeEntityBuilder(QObject* parent)
    : QObject(parent)
{
}

Section* PipeEntityBuilder::create(const Inspection& inspection)
{
    const auto pipe = inspection->parentObject().toStrongRef();
    if (!pipe)
        return nullptr;
    auto* const proxy = new Database::CDomainObjectProxy(sharedNotificationMapper(), pipe, nullptr);
    Section* const section = Section::create(SceneRoot::instance(), new SectionAdapter(inspection, proxy));
    SceneEntities::instance().getPipeEntities().addPipeEntity(section);
    connectSection(section);
    section->setName(pipe->readValue(QStringLiteral("OBJ_Key")).toString());
    emit section->visibilityChanged(true);
    return section;
}

void PipeEntityBuilder::connectSection(Section* section)
{
    connect(section, &Section::lateralInProximity, this, &PipeEntityBuilder::onLateralInProximity);
    connect(section, &Section::lateralNotInProximity, SceneRoot::instance(), &SceneRoot::lateralNotInProximity);
}

Section* PipeEntityBuilder::createOrReplace(Section* old, Section* replacement, const Inspection& inspection)
{
    if (old) {
        if (old == replacement)
            return nullptr;
        old->deleteAndSave();
        SceneEntities::instance().getPipeEntities().remove(old);
    }
    if (!inspection || replacement)
        return nullptr;
    return create(inspection);
}

void PipeEntityBuilder::onLateralInProximity(const QString& inspectionId)
{
    Section* const section = SceneEntities::instance().getPipeEntities().getByInspectionId(inspectionId);
    if (!section)
        return;
    const QString domainId = section->getDomainObjectId();
    if (!domainId.isEmpty())
        emit SceneRoot::instance()->lateralInProximity(domainId, section->transform());
}

} // namespace Torvik::View3d
