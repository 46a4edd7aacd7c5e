#pragma once

#include "domain/boundary/CPipeObjects.h"
#include "scene/KxView3dExport.h"

#include <QObject>

namespace Torvik::View3d {

class ObservationConnection;
class Section;

/** Creates sections and observations together with their adapters and wires them up. */
class KXVIEW3D_EXPORT PipeEntityBuilder : public QObject {
    Q_OBJECT

public:
    using Inspection = QSharedPointer<Database::CPipeInspectionObject>;

    explicit PipeEntityBuilder(QObject* parent = nullptr);

    /** Builds and registers the section of an inspection; null when its pipe has gone. */
    Section* create(const Inspection& inspection);
    /** Builds what the scene does not have yet of the inspection's observations. */
    void loadObservations(const Inspection& inspection);
    /** Builds and registers an observation; nothing when its section is not in the scene. `fromDB`: it is read from the
     *  stored project, and its section's stored course knows it. */
    void insertObservation(const CDomainObjectPointer& observation, bool fromDB);
    /** For hosts: gives an inspection a new section in the place of an old one. Null when there is nothing to build. */
    Section* createOrReplace(Section* old, Section* replacement, const Inspection& inspection);

public slots:
    void onLateralConnectionAdded(const QString& sectionId, Torvik::View3d::ObservationConnection* connection);
    void onLateralConnectionRemoved(const QString& sectionId);
    void onLateralRefreshRequest(const QString& sectionId);
    /** `inspectionId` may be the id of the lateral itself as well. */
    void onLateralInProximity(const QString& inspectionId);

private:
    static void takeToJoint(Section* section);
    static void dropObservations(const Section* section);
    void connectSection(Section* section);
};

} // namespace Torvik::View3d
