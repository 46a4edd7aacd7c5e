#pragma once

#include "domain/boundary/Vector3D.h"
#include "scene/KxView3dExport.h"

#include <QObject>

namespace Torvik::View3d {

/** The mailbox into which the host puts what the vehicle in the pipe measures. The view never writes to it. Lives to
 *  the end of the process; belongs to the main thread, and a signal from another thread is delivered there. */
class KXVIEW3D_EXPORT SystemControlProxy : public QObject {
    Q_OBJECT

public:
    static SystemControlProxy& instance();

    /** Metres along the active section. */
    float sectionDistanceCounter() const { return m_sectionDistanceCounter; }
    void setSectionDistanceCounter(float distance);

signals:
    void sectionDistanceCounterChanged();
    /** To be emitted by the host: the 3D sensor's position, z up, at a cable distance in metres. */
    void latestCameraSensorPositionChanged(Torvik::View3d::Vector3D<double> position, float distance);

private:
    SystemControlProxy() = default;

    float m_sectionDistanceCounter = 0.0F;
};

} // namespace Torvik::View3d
