#include "benchmarks/ProjectCase.h"

#include "benchmarks/BareTwin.h"
#include "benchmarks/ResidentMemory.h"
#include "benchmarks/Stopwatch.h"
#include "domain/boundary/AppState.h"
#include "host/domain/ProjectStore.h"
#include "scene/RemovalQueue.h"
#include "scene/SceneRoot.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QVector>
#include <Qt3DRender/QCamera>

#include <algorithm>
#include <cmath>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Torvik::Bench {

using View3d::RemovalQueue;
using View3d::SceneRoot;

namespace {

constexpr int settleFrames = 4;
constexpr int settleMs = 1500;
constexpr int watchMs = 1000;
constexpr int orbitFrames = 20;

void put(QJsonObject& result, const QString& name, const Least& least)
{
    result[name + QStringLiteral("Ms")] = least.span().processorMs;
    result[name + QStringLiteral("WallMs")] = least.span().wallMs;
}

/** Every opening and every twin begins as in a program that has just started: memory that an earlier round has left
 *  mapped would favour whoever comes later, and small projects over large ones. */
void giveBackHeap()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

/** One project in the product's own scene, on a stage. */
class Case {
public:
    explicit Case(const CaseOptions& options)
        : m_options(options)
        , m_stage(options.stage)
        , m_root(new SceneRoot)
    {
        m_root->setParent(m_stage.root());
        m_root->setCamera(m_stage.camera());
        m_root->qmlOnCompleted();
        aimCamera();
        m_stage.waitFrames(settleFrames);
    }

    QJsonObject run()
    {
        QJsonObject result;
        Least reads;
        Least opens;
        Least showns;
        Least closes;
        for (int i = 0; i < m_options.repeats; ++i) {
            const Stopwatch clock;
            const auto opened = Database::ProjectStore::instance().open(m_options.folder);
            reads.add(clock.elapsed());
            if (!opened.project)
                qFatal("%s", qPrintable(opened.error));
            giveBackHeap();
            const double before = ResidentMemory::kilobytes();
            open(opened.project, opens, showns);
            if (i == 0) {
                result[QStringLiteral("rssKbPerPipe")] = (ResidentMemory::kilobytes() - before) / m_options.pipes;
                observe(result);
            }
            if (!m_options.closing)
                break;
            closes.add(close(opened.project));
        }
        put(result, QStringLiteral("read"), reads);
        put(result, QStringLiteral("open"), opens);
        put(result, QStringLiteral("shown"), showns);
        if (m_options.closing)
            put(result, QStringLiteral("close"), closes);
        if (m_options.closing)
            compareWithTwin(result);
        return result;
    }

private:
    /** From above one edge of the town, all of it in view. */
    void aimCamera()
    {
        const auto side = static_cast<float>(std::sqrt(static_cast<double>(m_options.pipes)) * 42.0);
        const QVector3D middle(side / 2.0F, 0.0F, side / 2.0F);
        m_stage.camera()->setViewCenter(middle);
        m_stage.camera()->setPosition(middle + QVector3D(0.0F, side * 1.2F, -side));
        m_stage.camera()->setUpVector(QVector3D(0.0F, 1.0F, 0.0F));
    }

    void open(const QSharedPointer<Database::CProjectObject>& project, Least& opens, Least& showns)
    {
        QEventLoop loop;
        bool done = false;
        const Stopwatch clock;
        QObject::connect(&m_root->entitiesManager(), &View3d::EntitiesManager::loadingFinished, &loop, [&] {
            // Taken here: the loop may well draw the first frame before it returns, which the twin does not have.
            opens.add(clock.elapsed());
            done = true;
            loop.quit();
        });
        AppState::instance().setActiveProject(project);
        if (!done)
            loop.exec();
        m_stage.waitFrames(settleFrames);
        showns.add(clock.elapsed());
    }

    void observe(QJsonObject& result)
    {
        m_twin.remember(*m_root);
        result[QStringLiteral("qtNodes")] = m_twin.nodeCount();
        result[QStringLiteral("leftOut")] = m_twin.leftOut();
        if (m_stage.kind() == Stage::Headless)
            return;
        m_stage.waitMs(settleMs);
        const Stage::Activity idle = m_stage.watch(watchMs);
        result[QStringLiteral("idleFrames")] = idle.frames;
        result[QStringLiteral("idleDrawings")] = idle.drawings;
        result[QStringLiteral("orbitMs")] = m_stage.orbitFrameMs(orbitFrames);
    }

    Span close(const QSharedPointer<Database::CProjectObject>& project)
    {
        const Stopwatch clock;
        Database::ProjectStore::instance().close(project);
        auto& manager = m_root->entitiesManager();
        if (manager.isBusy()) {
            QEventLoop loop;
            QObject::connect(&manager, &View3d::EntitiesManager::removalFinished, &loop, &QEventLoop::quit);
            loop.exec();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_stage.waitFrames(settleFrames);
        return clock.elapsed();
    }

    void compareWithTwin(QJsonObject& result)
    {
        Least creates;
        Least showns;
        Least deletes;
        for (int i = 0; i < m_options.repeats; ++i) {
            createTwin(creates, showns);
            deletes.add(deleteTwinInBatches());
        }
        put(result, QStringLiteral("bareCreate"), creates);
        put(result, QStringLiteral("bareShown"), showns);
        put(result, QStringLiteral("bareDelete"), deletes);
        if (!m_options.atOnce)
            return;
        createTwin(creates, showns);
        const Stopwatch clock;
        for (Qt3DCore::QEntity* entity : m_twin.built())
            entity->deleteLater();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_stage.waitFrames(settleFrames);
        Least deleteAtOnce;
        deleteAtOnce.add(clock.elapsed());
        put(result, QStringLiteral("bareDeleteAtOnce"), deleteAtOnce);
    }

    void createTwin(Least& creates, Least& showns)
    {
        giveBackHeap();
        const Stopwatch clock;
        m_twin.build(m_stage.root());
        creates.add(clock.elapsed());
        m_stage.waitFrames(settleFrames);
        showns.add(clock.elapsed());
    }

    Span deleteTwinInBatches()
    {
        const Stopwatch clock;
        RemovalQueue queue;
        for (Qt3DCore::QEntity* entity : m_twin.built())
            queue.remove(entity);
        if (queue.isBusy()) {
            QEventLoop loop;
            QObject::connect(&queue, &RemovalQueue::finished, &loop, &QEventLoop::quit);
            loop.exec();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_stage.waitFrames(settleFrames);
        return clock.elapsed();
    }

    CaseOptions m_options;
    Stage m_stage;
    SceneRoot* m_root; ///< owned by the stage's root
    BareTwin m_twin;
};

} // namespace

QJsonObject measureProject(const CaseOptions& options)
{
    // Neither the window nor a scene of thousands of entities is taken down: the process ends.
    return (new Case(options))->run();
}

} // namespace Torvik::Bench
