#pragma once

#include "domain/boundary/CDomainObject.h"

#include <QObject>
#include <QUrl>

namespace Torvik::Viewer {

class ObservationPage;
class VehicleDesk;

/** Which inspection the user works at: the one whose pipe he has selected becomes the active one, and a recording can
 * be played into it. QML has it as `viewer.inspections`. Main thread only. */
class InspectionDesk : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive NOTIFY changed)
    Q_PROPERTY(bool possible READ isPossible NOTIFY changed)
    Q_PROPERTY(QString pipeName READ pipeName NOTIFY changed)

public:
    /** Both outlive it. */
    InspectionDesk(ObservationPage& selected, VehicleDesk& vehicle, QObject* parent = nullptr);

    /** There is an active inspection. */
    bool isActive() const;
    /** An inspection is selected that is not the active one. */
    bool isPossible() const;
    /** Of the selected inspection; empty without one. */
    QString pipeName() const;

    /** The selected inspection becomes the active one. */
    Q_INVOKABLE void begin();
    /** There is no active inspection any more; its measurement ends. */
    Q_INVOKABLE void leave();
    /** Loads a recording for the active inspection. One line when that cannot be done, else empty. */
    Q_INVOKABLE QString load(const QUrl& recording);

signals:
    void changed();

private:
    CDomainObjectPointer selected() const;

    ObservationPage& m_selected;
    VehicleDesk& m_vehicle;
};

} // namespace Torvik::Viewer
