#include "host/vehicle/MeasurementQueue.h"

#include "measurement/MeasurementPointsHandler.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

namespace Torvik::Vehicle {

using View3d::MeasurementPointsHandler;

bool MeasurementQueue::isSettled()
{
    auto* const handler = MeasurementPointsHandler::instance();
    if (handler->waitingStatements() > 0)
        return false;
    // Answers may have statements run in turn.
    QCoreApplication::sendPostedEvents(handler, QEvent::MetaCall);
    return handler->waitingStatements() == 0;
}

bool MeasurementQueue::settleWithin(int timeoutMs)
{
    QElapsedTimer waited;
    waited.start();
    while (!isSettled()) {
        if (waited.elapsed() >= timeoutMs)
            return false;
        QThread::msleep(1);
    }
    return true;
}

} // namespace Torvik::Vehicle
