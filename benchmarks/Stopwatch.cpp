#include "benchmarks/Stopwatch.h"

#include <ctime>

namespace Torvik::Bench {

namespace {

double readMs(clockid_t clock)
{
    timespec time {};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

Span now()
{
    return {readMs(CLOCK_MONOTONIC), readMs(CLOCK_THREAD_CPUTIME_ID)};
}

} // namespace

double processMs()
{
    return readMs(CLOCK_PROCESS_CPUTIME_ID);
}

Stopwatch::Stopwatch()
    : m_start(now())
{
}

Span Stopwatch::elapsed() const
{
    const Span end = now();
    return {end.wallMs - m_start.wallMs, end.processorMs - m_start.processorMs};
}

} // namespace Torvik::Bench
