#pragma once

#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "host/modules/HostModules.h"
#include "interaction/CameraController.h"
#include "interaction/Utils3d.h"
#include "scene/GlobalNav.h"
#include "scene/SceneRoot.h"

#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <Qt3DRender/QCamera>

namespace Kx::Test {

/** A window that shows the scene and nothing else, with a finger on it. Positions are pixels of the scene. */
class SceneWindow {
public:
    explicit SceneWindow(QObject* mapEndpoints = nullptr)
    {
        Torvik::Viewer::registerHostModules(m_engine);
        m_engine.rootContext()->setContextProperty("mapEndpoints", mapEndpoints);
        m_engine.loadData("import QtQuick 2.12\nimport QtQuick.Window 2.12\nimport \"qrc:/viewer\" as Viewer\n"
                          "Window { property alias scene: area.scene; property alias area: area; width: 800; height: "
                          "600; visible: true\n"
                          "Viewer.SceneArea { id: area; anchors.fill: parent } }",
                          QUrl("qrc:/viewer/SceneWindow.qml"));
        if (m_engine.rootObjects().isEmpty())
            qFatal("The scene's window could not be loaded.");
        m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
        m_scene = m_window->property("scene").value<QQuickItem*>();
        if (!QTest::qWaitForWindowExposed(m_window))
            qFatal("The window did not appear.");
        m_camera = m_scene->property("camera").value<Qt3DRender::QCamera*>();
        Torvik::View3d::GdalGeoProjector::instance()->initFromMap(51.0, 10.0, 0.0);
        frames(10);
    }

    QQuickWindow* window() const { return m_window; }
    /** The item with the scene and what lies under and over it. */
    QQuickItem* area() const { return m_window->property("area").value<QQuickItem*>(); }
    Qt3DRender::QCamera* camera() const { return m_camera; }
    Torvik::View3d::SceneRoot* root() const { return Torvik::View3d::SceneRoot::instance(); }
    Torvik::View3d::CameraController* controller() const
    {
        return m_scene->property("cameraController").value<Torvik::View3d::CameraController*>();
    }

    void frames(int count)
    {
        // Told by the render thread: counted here, where the counter lives.
        const QObject here;
        int swapped = 0;
        QObject::connect(
            m_window, &QQuickWindow::frameSwapped, &here,
            [this, &swapped] {
                ++swapped;
                m_window->update();
            },
            Qt::QueuedConnection);
        m_window->update();
        QTRY_VERIFY_WITH_TIMEOUT(swapped >= count, 10000);
    }

    /** Waits for animations, then looks from there. */
    void look(QVector3D position, QVector3D centre, QVector3D up,
              Torvik::View3d::CameraController::ViewTypes view = Torvik::View3d::CameraController::View3d)
    {
        QTRY_VERIFY(!m_camera->property("animationsRunning").toBool());
        m_camera->setProperty("viewType", view);
        controller()->setViewType(view);
        m_camera->setPosition(position);
        m_camera->setViewCenter(centre);
        m_camera->setUpVector(up);
        frames(6);
    }

    /** From straight above, north at the top. */
    void lookDown(QVector3D centre, float height)
    {
        look(centre + QVector3D(0, height, 0), centre, {0, 0, 1}, Torvik::View3d::CameraController::View2dTop);
    }

    QPoint pixelOf(QVector3D point) const
    {
        return Torvik::View3d::Utils3d::pointWorldToScreen(m_camera, point, float(m_scene->width()),
                                                           float(m_scene->height()))
            .toPoint();
    }

    void press(QPoint at)
    {
        QTest::mousePress(m_window, Qt::LeftButton, {}, inWindow(at));
        frames(4);
    }
    void moveTo(QPoint at)
    {
        QTest::mouseMove(m_window, inWindow(at));
        frames(3);
    }
    void release(QPoint at)
    {
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, inWindow(at));
        frames(4);
    }
    void tap(QPoint at)
    {
        press(at);
        release(at);
    }
    void drag(QPoint from, QPoint to, int steps = 4)
    {
        press(from);
        for (int step = 1; step <= steps; ++step)
            moveTo(from + (to - from) * step / steps);
        release(to);
    }

    /** Whether the camera rides along with the crawler. */
    void setFollowing(bool on)
    {
        m_scene->setProperty("cameraFollowEnabled", on);
        Torvik::View3d::GlobalNav::instance()->setCameraFollow(on);
    }

    QImage grab()
    {
        frames(3);
        return m_window->grabWindow();
    }
    /** Leaves the picture in the folder that KX_KEEP_PICTURES names. */
    void keep(const QString& name)
    {
        const QString folder = qEnvironmentVariable("KX_KEEP_PICTURES");
        if (!folder.isEmpty())
            QVERIFY(grab().save(folder + "/" + name + ".png"));
    }

    QPoint inWindow(QPoint inScene) const { return m_scene->mapToScene(inScene).toPoint(); }

private:
    QQmlApplicationEngine m_engine;
    QQuickWindow* m_window = nullptr;
    QQuickItem* m_scene = nullptr;
    Qt3DRender::QCamera* m_camera = nullptr;
};

} // namespace Kx::Test
