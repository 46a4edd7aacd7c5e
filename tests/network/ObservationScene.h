#pragma once

#include "NetworkScene.h"

#include "domain/ObservationAdapter.h"
#include "domain/PipeEntityBuilder.h"
#include "network/ObservationConnection.h"

/** A scene in which findings are made one by one, as the builder makes them. */
class ObservationScene : public NetworkScene {
public:
    using Values = QVariantMap;

    /** Ten metres north from the origin, downstream, registered. */
    Torvik::View3d::Section* pipe(const QVector<QVector3D>& course = {{0, 0, 0}, {0, 0, 10}})
    {
        return registered(section(nullptr, nullptr, {}, course));
    }

    /** Without a shape of its own. */
    Torvik::View3d::Section* registered(Torvik::View3d::Section* section)
    {
        Torvik::View3d::SceneEntities::instance().getPipeEntities().addPipeEntity(section);
        section->setName(section->getProps()->name());
        using namespace Torvik::View3d;
        QObject::connect(section, &Section::lateralConnectionAdded, &m_builder,
                         &PipeEntityBuilder::onLateralConnectionAdded);
        QObject::connect(section, &Section::lateralConnectionRemoved, &m_builder,
                         &PipeEntityBuilder::onLateralConnectionRemoved);
        return section;
    }

    Torvik::View3d::Observation* observation(Torvik::View3d::Section* section, const QString& code, double distance,
                                             const Values& values = {}, bool fromDB = false)
    {
        const auto inspection = lookup(section->guid());
        return observation(section, project().addObservation(inspection, code, distance, values), fromDB);
    }

    static Torvik::View3d::Observation* observation(Torvik::View3d::Section* section,
                                                    const CDomainObjectPointer& record, bool fromDB)
    {
        using namespace Torvik;
        auto* const proxy = new Database::CDomainObjectProxy(View3d::sharedNotificationMapper(), record, nullptr);
        auto* const adapter = new View3d::ObservationAdapter(proxy, nullptr);
        proxy->setParent(adapter);
        auto* const made = View3d::Observation::create(section, adapter, fromDB);
        View3d::SceneEntities::instance().getObservations().insert(record->id(), made);
        return made;
    }

    CDomainObjectPointer lookup(const QString& id) { return project().project()->lookupObject(id); }
    CDomainObjectPointer recordOf(const Torvik::View3d::Observation* observation)
    {
        return lookup(observation->getDomainObjectId());
    }

    static QVector3D endOf(const Torvik::View3d::Section* section)
    {
        return section->pipeTransMatrixAtDistance(float(section->length())).column(3).toVector3D();
    }

    static bool near(const QVector3D& a, const QVector3D& b, float tolerance = 0.02F)
    {
        return (a - b).length() < tolerance;
    }

private:
    Torvik::View3d::PipeEntityBuilder m_builder {nullptr};
};
