#include "benchmarks/Stage.h"

#include "host/app/DrawingCount.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QTimer>
#include <Qt3DCore/QEntity>
#include <Qt3DRender/QCamera>

namespace Torvik::Bench {

namespace {

const char sceneQml[] = R"(
import QtQuick 2.15
import QtQuick.Scene3D 2.15
import Qt3D.Core 2.15
import Qt3D.Render 2.15
import Qt3D.Input 2.15
import Qt3D.Extras 2.15
Scene3D {
    width: 800; height: 600; multisample: false
    aspects: ["input", "logic"]
    property alias rootEntity: content
    property alias eye: camera
    Entity {
        components: [
            RenderSettings {
                renderPolicy: RenderSettings.OnDemand
                pickingSettings.pickMethod: PickingSettings.TrianglePicking
                pickingSettings.faceOrientationPickingMode: PickingSettings.FrontFace
                pickingSettings.pickResultMode: PickingSettings.NearestPick
                activeFrameGraph: ForwardRenderer { clearColor: "white"; camera: camera }
            },
            InputSettings {}
        ]
        Camera { id: camera; fieldOfView: 45; nearPlane: 1; farPlane: 20000 }
        Entity { id: content }
    }
}
)";

} // namespace

Stage::Stage(Kind kind)
    : m_kind(kind)
{
    if (kind == Headless) {
        m_headlessTop = std::make_unique<Qt3DCore::QEntity>();
        m_root = new Qt3DCore::QEntity(m_headlessTop.get());
        m_camera = new Qt3DRender::QCamera(m_headlessTop.get());
        return;
    }
    m_view = std::make_unique<QQuickView>();
    QQmlComponent component(m_view->engine());
    component.setData(sceneQml, QUrl());
    auto* const scene = component.create(m_view->rootContext());
    if (!scene)
        qFatal("%s", qPrintable(component.errorString()));
    m_root = scene->property("rootEntity").value<Qt3DCore::QEntity*>();
    m_camera = scene->property("eye").value<Qt3DRender::QCamera*>();
    m_view->setContent(QUrl(), nullptr, scene);
    m_view->show();
    waitFrames(10);
}

Stage::~Stage() = default;

void Stage::waitFrames(int frames) const
{
    if (!m_view) {
        QCoreApplication::processEvents();
        return;
    }
    QEventLoop loop;
    int left = frames;
    QObject::connect(m_view.get(), &QQuickWindow::frameSwapped, &loop, [&] {
        if (--left <= 0)
            loop.quit();
    });
    loop.exec();
}

void Stage::waitMs(int ms) const
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

Stage::Activity Stage::watch(int ms) const
{
    Activity activity;
    if (!m_view)
        return activity;
    QObject context;
    QObject::connect(m_view.get(), &QQuickWindow::frameSwapped, &context, [&activity] { ++activity.frames; });
    const Viewer::DrawingCount count;
    waitMs(ms);
    activity.drawings = count.drawings();
    return activity;
}

double Stage::orbitFrameMs(int frames) const
{
    if (!m_view)
        return 0.0;
    constexpr float stepDeg = 2.0F;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < frames; ++i) {
        m_camera->panAboutViewCenter(stepDeg, QVector3D(0.0F, 1.0F, 0.0F));
        waitFrames(1);
    }
    return static_cast<double>(clock.nsecsElapsed()) / 1e6 / frames;
}

} // namespace Torvik::Bench
