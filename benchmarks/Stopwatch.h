#pragma once

#include <algorithm>
#include <limits>

namespace Torvik::Bench {

/** What something took, in milliseconds: on the clock, and of the processor for the thread that asked. On a machine
 *  that does other work too only the second compares. */
struct Span {
    double wallMs = 0.0;
    double processorMs = 0.0;
};

/** Processor time of all threads of the process until now, in milliseconds. */
double processMs();

/** Runs from its construction. */
class Stopwatch {
public:
    Stopwatch();
    Span elapsed() const;

private:
    Span m_start;
};

/** The least of repeated spans: what disturbs a measurement only ever adds. */
class Least {
public:
    void add(const Span& span)
    {
        m_span.wallMs = std::min(m_span.wallMs, span.wallMs);
        m_span.processorMs = std::min(m_span.processorMs, span.processorMs);
    }
    const Span& span() const { return m_span; }

private:
    Span m_span {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
};

} // namespace Torvik::Bench
