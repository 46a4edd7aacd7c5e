#pragma once

/** Whether what a measurement has to do with the database is done, for a host that must not stand still meanwhile as
 *  MeasurementPointsHandler::waitUntilStored() does. Main thread only. */
namespace Torvik::Vehicle::MeasurementQueue {

/** Nothing is left to be run, and no answer is left to be heard. */
bool isSettled();
/** Waits until it is, for so long at most; gives whether it is. */
bool settleWithin(int timeoutMs);

} // namespace Torvik::Vehicle::MeasurementQueue
