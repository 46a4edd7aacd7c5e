#pragma once

#include <optional>

namespace Torvik::Vehicle {

/** A place as the vehicle's 3D sensor gives it: metres from where the pipe begins, in the direction of the inspection;
 *  x east, y north, z up. */
struct SensorPlace {
    double x = 0;
    double y = 0;
    double z = 0;
};

inline bool operator==(const SensorPlace& a, const SensorPlace& b)
{
    return !(a.x < b.x) && !(a.x > b.x) && !(a.y < b.y) && !(a.y > b.y) && !(a.z < b.z) && !(a.z > b.z);
}

/** What a vehicle in a pipe tells at one moment. */
struct Reading {
    /** Since the inspection began. */
    double seconds = 0;
    /** Metres of cable. */
    double counter = 0;
    /** Nothing for a vehicle without a 3D sensor. */
    std::optional<SensorPlace> sensor;
};

} // namespace Torvik::Vehicle
