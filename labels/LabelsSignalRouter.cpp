#include "labels/LabelsSignalRouter.h"

namespace Torvik::View3d {

namespace {

constexpr int restMs = 500;

} // namespace

LabelsSignalRouter& LabelsSignalRouter::instance()
{
    static LabelsSignalRouter router;
    return router;
}

LabelsSignalRouter::LabelsSignalRouter()
    : m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    m_timer->setTimerType(Qt::PreciseTimer);
    m_timer->setInterval(restMs);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_labelsHidden = false;
        emit showLabels();
    });
}

void LabelsSignalRouter::onLabelPositionChanged()
{
    if (!m_labelsHidden) {
        m_labelsHidden = true;
        emit hideLabels();
    }
    m_timer->start();
}

} // namespace Torvik::View3d
