#pragma once

#include "interaction/CameraController.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <Qt3DCore/QAspectEngine>
#include <Qt3DInput/QInputAspect>
#include <Qt3DInput/QInputSettings>
#include <Qt3DInput/QMouseEvent>
#include <Qt3DLogic/QLogicAspect>
#include <Qt3DRender/QCamera>
#include <QtMath>

#include <cmath>

constexpr double kWidth = 600.0;
constexpr double kHeight = 400.0;

/** A controller in a scene without window: events go in by hand, frames are stepped one by one. */
class ManualScene {
public:
    ManualScene()
        : root(new Qt3DCore::QEntity)
        , camera(new Qt3DRender::QCamera(root))
        , controller(new Torvik::View3d::CameraController(root))
    {
        engine.setRunMode(Qt3DCore::QAspectEngine::Manual);
        engine.registerAspect(new Qt3DLogic::QLogicAspect);
        engine.registerAspect(new Qt3DInput::QInputAspect);
        auto* settings = new Qt3DInput::QInputSettings;
        settings->setEventSource(&eventSource);
        root->addComponent(settings);
        camera->lens()->setPerspectiveProjection(3.0F, static_cast<float>(kWidth / kHeight), 1.0F, 10000.0F);
        look({0, 200, -200}, {0, 0, 0}, {0, 1, 0});
        controller->setCamera(camera);
        controller->setSceneWidth(kWidth);
        controller->setSceneHeight(kHeight);
        controller->setMinDist(5.0);
        controller->setMaxDist(500000.0);
        controller->setViewType(Torvik::View3d::CameraController::View3d);
        engine.setRootEntity(Qt3DCore::QEntityPtr(root));
        frame();
    }

    void look(QVector3D position, QVector3D center, QVector3D up)
    {
        camera->setPosition(position);
        camera->setViewCenter(center);
        camera->setUpVector(up);
    }
    /** Twice: the tick may come before the events of the same frame. */
    void frame()
    {
        engine.processFrame();
        engine.processFrame();
    }
    void send(QEvent::Type type, int x, int y)
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, QPointF(x, y), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&eventSource, &event);
    }
    void press(int x, int y) { send(QEvent::MouseButtonPress, x, y); }
    void move(int x, int y) { send(QEvent::MouseMove, x, y); }
    void release(int x, int y) { send(QEvent::MouseButtonRelease, x, y); }

    double tiltDeg() const
    {
        const QVector3D v = camera->viewVector();
        return qRadiansToDegrees(-std::atan2(static_cast<double>(v.y()),
                                             std::hypot(static_cast<double>(v.x()), static_cast<double>(v.z()))));
    }

    QObject eventSource;
    Qt3DCore::QAspectEngine engine;
    Qt3DCore::QEntity* root;
    Qt3DRender::QCamera* camera;
    Torvik::View3d::CameraController* controller;
};

/** An event to hand over directly, without the input aspect. */
class Touch {
public:
    Touch(int x, int y)
        : m_source(QEvent::MouseMove, QPointF(x, y), Qt::NoButton, Qt::LeftButton, Qt::NoModifier)
        , m_event(m_source)
    {
    }
    operator Qt3DInput::QMouseEvent*() { return &m_event; }

private:
    QMouseEvent m_source;
    Qt3DInput::QMouseEvent m_event;
};

inline bool near(QVector3D a, QVector3D b, float tolerance)
{
    return (a - b).length() <= tolerance;
}
