#include "host/drawing/DrawingJournal.h"

#include <QList>
#include <QMutex>
#include <QMutexLocker>

#include <algorithm>

namespace Torvik::DXF {

namespace {

constexpr int mostReports = 16;

struct Reports {
    QMutex mutex;
    QList<DrawingReport> newestFirst;
};

Reports& reports()
{
    static Reports all;
    return all;
}

} // namespace

void DrawingJournal::write(const DrawingReport& report)
{
    Reports& all = reports();
    const QMutexLocker lock(&all.mutex);
    all.newestFirst.prepend(report);
    while (all.newestFirst.size() > mostReports)
        all.newestFirst.removeLast();
}

DrawingReport DrawingJournal::last(const QString& path)
{
    Reports& all = reports();
    const QMutexLocker lock(&all.mutex);
    const auto found = std::find_if(all.newestFirst.cbegin(), all.newestFirst.cend(),
                                    [&path](const DrawingReport& report) { return report.path == path; });
    return found == all.newestFirst.cend() ? DrawingReport() : *found;
}

} // namespace Torvik::DXF
