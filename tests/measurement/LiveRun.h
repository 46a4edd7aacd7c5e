#pragma once

#include <QVector3D>

#include <cmath>

/** The run that a program measures until it is killed: along a pipe of ten metres to the north and on, in a slow turn.
 */
namespace Kx::Test::LiveRun {

constexpr float pipeLength = 10.0F;
constexpr const char* pipeShape = "LINESTRING ZM(0 10 0 260,0 0 0 0)";
/** Of a pipe that the vehicle does not get out of, so that each reading makes room for its point. */
constexpr const char* longShape = "LINESTRING ZM(0 1000 0 260,0 0 0 0)";

/** What the cable counts at a reading, from 1 on: always a little behind the pipe's end, so that each reading adds. */
inline float counter(int reading, float begin = pipeLength)
{
    return begin + 0.25F * float(reading);
}

/** Where the sensor is at a reading, in the scene: 0.2 m on from the one before. */
inline QVector3D place(int reading, float begin = pipeLength)
{
    constexpr double radius = 400.0;
    const double angle = 0.2 * reading / radius;
    return {float(radius * (1.0 - std::cos(angle))), 0.0F, float(double(begin) + radius * std::sin(angle))};
}

} // namespace Kx::Test::LiveRun
