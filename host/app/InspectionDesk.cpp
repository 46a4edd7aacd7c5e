#include "host/app/InspectionDesk.h"

#include "domain/boundary/AppState.h"
#include "host/app/ObservationPage.h"
#include "host/app/VehicleDesk.h"
#include "host/vehicle/Recording.h"

#include <QFile>
#include <QFileInfo>

namespace Torvik::Viewer {

InspectionDesk::InspectionDesk(ObservationPage& selected, VehicleDesk& vehicle, QObject* parent)
    : QObject(parent)
    , m_selected(selected)
    , m_vehicle(vehicle)
{
    connect(&m_selected, &ObservationPage::inspectionChanged, this, &InspectionDesk::changed);
    connect(&AppState::instance(), &AppState::activeInspectionChanged, this, &InspectionDesk::changed);
}

CDomainObjectPointer InspectionDesk::selected() const
{
    return m_selected.inspection();
}

bool InspectionDesk::isActive() const
{
    return !AppState::instance().getActiveInspection().isNull();
}

bool InspectionDesk::isPossible() const
{
    return selected() && selected() != AppState::instance().getActiveInspection();
}

QString InspectionDesk::pipeName() const
{
    return m_selected.pipeName();
}

void InspectionDesk::begin()
{
    const CDomainObjectPointer inspection = selected();
    if (!inspection)
        return;
    AppState::instance().setActiveStructure(inspection->parentObject().toStrongRef());
    AppState::instance().setActiveInspection(inspection);
}

void InspectionDesk::leave()
{
    m_vehicle.setMeasuring(false);
    AppState::instance().setActiveInspection({});
    AppState::instance().setActiveStructure({});
}

QString InspectionDesk::load(const QUrl& recording)
{
    const QString path = recording.isLocalFile() ? recording.toLocalFile() : recording.toString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tr("%1: %2").arg(path, file.errorString());
    const Vehicle::Recording read = Vehicle::parseRecording(file.readAll());
    if (read.readings.isEmpty())
        return tr("%1 holds no readings.").arg(QFileInfo(path).fileName());
    m_vehicle.load(read.readings);
    m_vehicle.setSpeed(1.0);
    return {};
}

} // namespace Torvik::Viewer
