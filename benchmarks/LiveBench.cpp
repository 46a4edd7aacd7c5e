/* kx_live_bench: what following a vehicle costs, each measurement in a process of its own. */

#include "benchmarks/CaseRunner.h"
#include "benchmarks/LiveCases.h"

using namespace Torvik::Bench;

int main(int argc, char** argv)
{
    return runCases(
        argc, argv, QStringLiteral("Measures what following a vehicle live costs; prints tables."),
        {
            {QStringLiteral("readings"), QStringLiteral("10,000 readings of the sensor"), measureReadings, true, true},
            {QStringLiteral("stream"), QStringLiteral("100 readings a second for 10 minutes"), measureStream, false,
             true},
            {QStringLiteral("flood"), QStringLiteral("The same, every reading handed on"), measureFlood, false, true},
            {QStringLiteral("counter"), QStringLiteral("10,000 steps of the counter"), measureCounter, true, true},
        });
}
