#include "domain/boundary/SqlTask.h"
#include "geo/EpsgBounds.h"
#include "geo/MapSheet.h"
#include "interaction/CameraController.h"
#include "interaction/Utils3d.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/Section.h"
#include "plans/BackgroundController.h"
#include "plans/BackgroundLoader.h"
#include "plans/FloorPlanLoader.h"
#include "plans/IBackgroundPlan.h"
#include "scene/FlaggedTransform.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"
#include "scene/TouchControlBase.h"

#include <QtQml>

namespace Torvik::View3d {

namespace {

constexpr const char* module = "com.torvik.view3d";

} // namespace

void SceneRoot::registerMetaTypes()
{
    qRegisterMetaType<CameraController::ControlModes>("CameraController.ControlModes");
    qRegisterMetaType<CameraController::ControlPlanes>("CameraController.ControlPlanes");
    qRegisterMetaType<Crawler*>("Crawler*");
    qRegisterMetaType<Node*>("Node3d*");
    qRegisterMetaType<Section*>("Section*");
    qRegisterMetaType<Renderable*>("Renderable*");
    qRegisterMetaType<TouchControlBase*>("TouchControlBase*");
    qRegisterMetaType<FlaggedTransform*>("FlaggedTransform*");
    qRegisterMetaType<BackgroundLoader*>("BackgroundLoader*");
    qRegisterMetaType<PlanLoader*>("PlanLoader*");
    qRegisterMetaType<FloorPlanLoader*>("FloorPlanLoader*");
    qRegisterMetaType<BackgroundController*>("BackgroundController*");

    // The form that names the interface; Qt before 5.15 knows no other.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qmlRegisterInterface<IBackgroundPlan>("IBackgroundPlan");
    QT_WARNING_POP
    qRegisterMetaType<SizeInfo>("SizeInfo");
    qRegisterMetaType<SizeInfo>("Torvik::View3d::SizeInfo");

    qmlRegisterType<CameraController>(module, 1, 0, "CameraController");
    qmlRegisterType<SceneRoot>(module, 1, 0, "SceneRoot");
    qmlRegisterType<Utils3d>(module, 1, 0, "Utils3d");
    qmlRegisterType<MapSheet>(module, 1, 0, "MapSheet");
    qmlRegisterType<Node>(module, 1, 0, "Node3d");
    qmlRegisterType<Crawler>(module, 1, 0, "Crawler");
    // Named differently from the class, so that QML reads the bits as TransformFlags.Manual.
    qmlRegisterType<FlaggedTransform>(module, 1, 0, "TransformFlags");
    qmlRegisterType<BackgroundController>(module, 1, 0, "BackgroundController");
    qmlRegisterSingletonType<SceneEntities>(module, 1, 0, "SceneEntities", &SceneEntities::qmlSingletonInstance);
    qmlRegisterUncreatableType<EpsgBounds>(module, 1, 0, "EpsgBounds",
                                           QStringLiteral("EpsgBounds cannot be created in QML"));
}

} // namespace Torvik::View3d
