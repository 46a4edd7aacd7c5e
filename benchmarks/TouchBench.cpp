/* kx_touch_bench: working on a network that stands in the scene, each measurement in a process of its own. */

#include "benchmarks/CaseRunner.h"
#include "benchmarks/TouchCases.h"

using namespace Torvik::Bench;

int main(int argc, char** argv)
{
    return runCases(
        argc, argv, QStringLiteral("Measures the work on a network in the scene; prints tables."),
        {
            {QStringLiteral("insert"), QStringLiteral("1,000 observations into 1,000 pipes"), measureInserting, true,
             true},
            {QStringLiteral("bend"), QStringLiteral("a bend amidst a chain"), measureBending, true, true},
            {QStringLiteral("drag"), QStringLiteral("a manhole with 8 pipes and 40 observations"), measureDragging,
             true, true},
            {QStringLiteral("pick"), QStringLiteral("1,000 objects that can be picked"), measurePicking, true, false},
        });
}
