#include "domain/boundary/DXFWorker.h"
#include "host/drawing/DrawingLoad.h"
#include "host/drawing/TreeBuilder.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>
#include <memory>
#include <utility>

namespace Torvik::DXF {

namespace {

/** An entity on its way to another thread; it goes when nobody is there to take it. Either thread may be the last. */
class HeldEntity {
public:
    explicit HeldEntity(Qt3DCore::QEntity* entity)
        : m_entity(entity)
    {
    }
    ~HeldEntity()
    {
        if (Qt3DCore::QEntity* const entity = take())
            entity->deleteLater();
    }
    HeldEntity(const HeldEntity&) = delete;
    HeldEntity& operator=(const HeldEntity&) = delete;

    Qt3DCore::QEntity* take() { return m_entity.exchange(nullptr); }

private:
    std::atomic<Qt3DCore::QEntity*> m_entity;
};

} // namespace

DXFWorker::DXFWorker(QObject* parent, QThread* thread)
    : QObject(parent)
    , m_target(thread ? thread : QCoreApplication::instance()->thread())
    , m_load(std::make_shared<DrawingLoad>())
{
    m_load->setWorker(this);
}

DXFWorker::~DXFWorker()
{
    m_load->cancel();
    m_load->setWorker(nullptr);
}

void DXFWorker::setLoadedFilePath(const QString& path)
{
    m_load->path = path;
}

void DXFWorker::loadFile()
{
    DrawingResult result = m_load->readOrCancel();
    const DrawingProblem problem = result.report.problem;
    if (problem != DrawingProblem::Cancelled)
        DrawingJournal::write(result.report);
    if (problem != DrawingProblem::None) {
        deliver(nullptr);
        return;
    }
    const auto handOver = [load = m_load](Qt3DCore::QEntity* root) {
        const auto held = std::make_shared<HeldEntity>(root);
        load->withWorker([&held](DXFWorker* worker) {
            QMetaObject::invokeMethod(
                worker, [worker, held] { worker->deliver(held->take()); }, Qt::QueuedConnection);
        });
    };
    auto* const builder = new TreeBuilder(std::move(result), m_load->cancelled(), handOver);
    builder->moveToThread(m_target);
    builder->start();
}

void DXFWorker::cancelLoading()
{
    m_load->cancel();
}

void DXFWorker::deliver(Qt3DCore::QEntity* entity)
{
    if (*m_load->cancelled()) {
        if (entity)
            entity->deleteLater();
        emit loadingCancelled();
        emit loadingFinished(nullptr);
        return;
    }
    emit loadingFinished(entity);
}

} // namespace Torvik::DXF
