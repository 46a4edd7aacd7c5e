#include "plans/BackgroundLoader.h"

#include "domain/boundary/AppState.h"
#include "geo/GdalGeoProjector.h"
#include "plans/BackgroundDxf.h"
#include "plans/BackgroundImage.h"
#include "plans/BackgroundImagePdf.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <algorithm>

namespace Torvik::View3d {

BackgroundLoader::BackgroundLoader(QObject* parent)
    : PlanLoader(parent)
{
    connect(&SceneEntities::instance(), &SceneEntities::planLoadedChanged, this, &BackgroundLoader::planLoadedChanged);
}

BackgroundLoader::BackgroundLoader(TooLarge tooLarge)
    : PlanLoader(nullptr, tooLarge)
{
}

bool BackgroundLoader::pathEndsWithExtention(const QString& path, const QStringList& extensions) const
{
    const QString lower = path.toLower();
    return std::any_of(extensions.begin(), extensions.end(),
                       [&lower](const QString& extension) { return lower.endsWith(extension); });
}

IBackgroundPlan* BackgroundLoader::createNewPlan(const QString& path)
{
    static const QStringList pictures {QStringLiteral(".jpg"),  QStringLiteral(".jpeg"), QStringLiteral(".gif"),
                                       QStringLiteral(".exif"), QStringLiteral(".tiff"), QStringLiteral(".bmp"),
                                       QStringLiteral(".png")};
    if (pathEndsWithExtention(path, {QStringLiteral(".dxf"), QStringLiteral(".dwg")}))
        return new BackgroundDxf(path, SceneRoot::instance());
    if (pathEndsWithExtention(path, pictures))
        return new BackgroundImage(path, SceneRoot::instance());
    if (pathEndsWithExtention(path, {QStringLiteral(".pdf")}))
        return new BackgroundImagePdf(path, getProjectPathOrEmptyString(), SceneRoot::instance());
    return nullptr;
}

void BackgroundLoader::initGeoProjector(const PlanSettings& settings)
{
    auto& projector = *GdalGeoProjector::instance();
    const auto project = Database::CDomainObject::projectFromObject(AppState::instance().getActiveProject());
    if (SceneRoot::instance()->sceneHasNodesWithPosition() || projector.initialized() || !project)
        return;
    QString projection = project->projectionWKT();
    projector.init(Vector3D<double>(settings.referencePoint.toQVector3D()).toWKTPoint(1.0, 0), projection);
}

void BackgroundLoader::applyTranslationFromPlanFile(IBackgroundPlan* plan, const PlanSettings& settings)
{
    PlanPlace place;
    place.position = Vector3D<double>(settings.translation) + settings.translationRest + settings.referencePoint -
                     GdalGeoProjector::instance()->origin();
    place.turnDeg = double(settings.rotation.y()) + settings.turnRest;
    place.scale = settings.scale;
    plan->setPlace(place);
    SceneEntities::instance().setBackgroundPlan(plan);
}

QString BackgroundLoader::getProjectPathOrEmptyString() const
{
    return SceneEntities::instance().getProjectPathOrEmptyString();
}

} // namespace Torvik::View3d
