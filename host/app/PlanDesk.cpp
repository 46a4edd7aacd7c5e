#include "host/app/PlanDesk.h"

#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/PlanCopy.h"
#include "host/app/PlanMessages.h"
#include "host/app/PlanUnits.h"
#include "host/drawing/DrawingJournal.h"
#include "network/LowestManholeTracker.h"
#include "plans/BackgroundImagePdf.h"
#include "plans/BackgroundLoader.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QFileInfo>
#include <QTimer>

#include <utility>

namespace Torvik::Viewer {

using View3d::IBackgroundPlan;
using View3d::SceneEntities;
using View3d::SceneRoot;

namespace {

constexpr float gapBelowNetwork = 0.0001F;

/** On the ground; the heights of a plan come from the network. */
QVector3D sceneFromProjected(const QPointF& place)
{
    const auto* const projector = View3d::GdalGeoProjector::instance();
    const View3d::Vector3D<double> cartesian(-place.x(), 0.0, place.y());
    QVector3D scene = (cartesian * projector->scale() - projector->origin()).toQVector3D();
    scene.setY(0.0F);
    return scene;
}

} // namespace

PlanDesk::PlanDesk(QObject* parent)
    : PlanLoader(parent)
{
    connect(this, &PlanLoader::planLoaded, this, [this](View3d::Renderable* loaded) {
        auto* const plan = qobject_cast<IBackgroundPlan*>(loaded);
        PlanUnits::scale(*plan, PlanUnits::metresPerUnit(DXF::DrawingJournal::last(planPath())));
        place(*plan);
        plan->setFullPath(QFileInfo(m_wish.file).absoluteFilePath());
        SceneEntities::instance().setBackgroundPlanToConfirm(plan);
        coverOwn(plan);
        end({});
    });
    connect(this, &PlanLoader::corruptedPlanFile, this,
            [this] { end(PlanMessages::unreadable(m_wish.file, planPath())); });
    connect(this, &PlanLoader::fileTooLarge, this,
            [this](const View3d::SizeInfo& size) { end(PlanMessages::tooLarge(m_wish.file, size)); });
    connect(this, &PlanLoader::pdfConverterProblem, this, [this] { end(PlanMessages::converterFailed(m_wish.file)); });
    connect(this, &PlanLoader::problemArisen, this,
            [this] { end(PlanMessages::named(problem(), planPath(), m_wish.file)); });
}

void PlanDesk::lay(const PlanWish& wish, std::function<void(const QString&)> done)
{
    m_wish = wish;
    m_done = std::move(done);
    const PlanLoader* const own = SceneRoot::instance()->planLoader();
    if (!own->planLoading()) {
        QTimer::singleShot(0, this, &PlanDesk::start);
        return;
    }
    auto* const settled = new QObject(this);
    connect(own, &PlanLoader::planLoadingChanged, settled, [this, own, settled] {
        if (own->planLoading())
            return;
        settled->deleteLater();
        settled->disconnect(own);
        disconnect(own, nullptr, settled, nullptr);
        QTimer::singleShot(0, this, &PlanDesk::start);
    });
}

void PlanDesk::start()
{
    const QFileInfo file(m_wish.file);
    const qint64 limit = getPlanFileSizeLimit(file.suffix());
    if (m_wish.file.isEmpty())
        end({});
    else if (!file.isFile())
        end(PlanMessages::missing(m_wish.file));
    else if (limit > 0 && file.size() > limit)
        end(PlanMessages::fileTooLarge(m_wish.file, limit));
    else {
        const QString path = file.absoluteFilePath();
        const QString loadable = PlanCopy::needsCopy(path) ? copyOf(path) : path;
        if (!loadable.isEmpty())
            loadPlan(loadable);
    }
}

QString PlanDesk::copyOf(const QString& path)
{
    m_scratch = std::make_unique<QTemporaryDir>();
    const QString copy = m_scratch->filePath(PlanCopy::loadableName(path));
    const QString problem = m_scratch->isValid() ? PlanCopy::copy(path, copy, false) : m_scratch->errorString();
    if (problem.isEmpty())
        return copy;
    end(PlanMessages::notCopied(path, problem));
    return {};
}

IBackgroundPlan* PlanDesk::createNewPlan(const QString& path)
{
    if (PlanCopy::nameInProject(path) == path)
        return View3d::BackgroundLoader().createNewPlan(path);
    return new View3d::BackgroundImagePdf(path, m_scratch->path() + QLatin1Char('/'), SceneRoot::instance());
}

void PlanDesk::coverOwn(IBackgroundPlan* plan)
{
    auto& entities = SceneEntities::instance();
    const auto cover = [plan] {
        IBackgroundPlan* const own = SceneEntities::instance().getBackgroundPlan();
        if (!own)
            return;
        // It would shine through at every change of the view.
        connect(own, &Qt3DCore::QNode::enabledChanged, plan, [own](bool shown) {
            if (shown)
                own->setEnabled(false);
        });
        own->setEnabled(false);
    };
    connect(&entities, &SceneEntities::planLoadedChanged, plan, cover);
    cover();
    connect(&entities, &SceneEntities::planToConfirmLoadedChanged, plan, [plan] {
        const auto& now = SceneEntities::instance();
        if (now.getBackgroundPlanToConfirm() == plan)
            return;
        disconnect(&now, nullptr, plan, nullptr);
        if (IBackgroundPlan* const own = now.getBackgroundPlan()) {
            disconnect(own, nullptr, plan, nullptr);
            own->setEnabled(SceneRoot::instance()->planLayerShown());
        }
    });
}

void PlanDesk::applyTranslationFromPlanFile(IBackgroundPlan*, const View3d::PlanSettings&) {}

void PlanDesk::initGeoProjector(const View3d::PlanSettings&) {}

void PlanDesk::place(IBackgroundPlan& plan) const
{
    const Qt3DRender::QCamera* const camera = SceneRoot::camera();
    const QVector3D middle = camera ? camera->viewCenter() : QVector3D();
    QMatrix4x4 matrix;
    matrix.translate(m_wish.place ? sceneFromProjected(*m_wish.place) : middle);
    matrix.scale(float(m_wish.scale), 1.0F, float(m_wish.scale));
    matrix.translate(-middle);
    plan.placement()->setMatrix(matrix * plan.placement()->matrix());
    plan.setElevation(View3d::LowestManholeTracker::instance()->getCurrentLowestY() - gapBelowNetwork);
}

void PlanDesk::end(const QString& error)
{
    m_scratch.reset();
    if (const auto done = std::exchange(m_done, nullptr))
        done(error);
}

} // namespace Torvik::Viewer
