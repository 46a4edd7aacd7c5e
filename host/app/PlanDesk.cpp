#include "host/app/PlanDesk.h"

#include "domain/boundary/WktPoint.h"
#include "geo/GdalGeoProjector.h"
#include "host/app/PlanMessages.h"
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
        place(*plan);
        plan->setFullPath(QFileInfo(m_wish.file).absoluteFilePath());
        if (IBackgroundPlan* const own = SceneEntities::instance().getBackgroundPlan())
            own->setEnabled(false);
        SceneEntities::instance().setBackgroundPlanToConfirm(plan);
        end({});
    });
    connect(this, &PlanLoader::corruptedPlanFile, this, [this] { end(PlanMessages::unreadable(m_wish.file)); });
    connect(this, &PlanLoader::fileTooLarge, this,
            [this](const View3d::SizeInfo& size) { end(PlanMessages::tooLarge(m_wish.file, size)); });
    connect(this, &PlanLoader::pdfConverterProblem, this, [this] { end(PlanMessages::converterFailed(m_wish.file)); });
    connect(this, &PlanLoader::problemArisen, this, [this] { end(problem()); });
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
    else
        loadPlan(file.absoluteFilePath());
}

IBackgroundPlan* PlanDesk::createNewPlan(const QString& path)
{
    if (QFileInfo(path).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) != 0)
        return View3d::BackgroundLoader().createNewPlan(path);
    m_scratch = std::make_unique<QTemporaryDir>();
    const QString copy = m_scratch->filePath(QFileInfo(path).completeBaseName() + QStringLiteral(".pdf"));
    if (!m_scratch->isValid() || !QFile::copy(path, copy))
        return nullptr;
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    return new View3d::BackgroundImagePdf(copy, m_scratch->path() + QLatin1Char('/'), SceneRoot::instance());
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
