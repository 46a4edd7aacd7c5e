#include "host/drawing/TreeBuilder.h"

#include <QElapsedTimer>
#include <QTimerEvent>
#include <QVariant>

namespace Torvik::DXF {

namespace {

/** A turn of the event loop may last this long, and then so long as one entity takes. */
constexpr int sliceMs = 10;

} // namespace

TreeBuilder::TreeBuilder(DrawingResult result, std::shared_ptr<const std::atomic<bool>> cancelled,
                         std::function<void(Qt3DCore::QEntity*)> done)
    : m_result(std::move(result))
    , m_cancelled(std::move(cancelled))
    , m_done(std::move(done))
{
}

TreeBuilder::~TreeBuilder() = default;

void TreeBuilder::start()
{
    QMetaObject::invokeMethod(
        this, [this] { m_timer.start(0, this); }, Qt::QueuedConnection);
}

void TreeBuilder::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    QElapsedTimer slice;
    slice.start();
    do {
        if (*m_cancelled) {
            end(nullptr);
            return;
        }
        if (!m_root)
            makeRoot();
        else if (!m_root->makeNext()) {
            end(m_root.release());
            return;
        }
    } while (slice.elapsed() < sliceMs);
}

void TreeBuilder::makeRoot()
{
    m_root = std::make_unique<DrawingTree>(std::move(m_result.meshes));
    if (m_result.report.metresPerUnit > 0.0)
        m_root->setProperty("dxfMetresPerUnit", m_result.report.metresPerUnit);
}

void TreeBuilder::end(Qt3DCore::QEntity* root)
{
    m_timer.stop();
    m_done(root);
    deleteLater();
}

} // namespace Torvik::DXF
