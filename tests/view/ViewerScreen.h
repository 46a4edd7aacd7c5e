#pragma once

#include "geo/GdalGeoProjector.h"
#include "host/modules/HostModules.h"
#include "interaction/Utils3d.h"
#include "scene/SceneRoot.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <Qt3DRender/QCamera>

#include <functional>

namespace Kx::Test {

/** The application's window on the screen, with a finger. Positions in the scene are pixels of the 3D item. */
class ViewerScreen {
public:
    /** `viewer` is what the pages call so; it outlives the screen. `prepare` may give them more before they load. */
    explicit ViewerScreen(QObject& viewer, QSize size = {1000, 700},
                          const std::function<void(QQmlContext&)>& prepare = {})
    {
        Torvik::Viewer::registerHostModules(m_engine);
        if (prepare) {
            prepare(*m_engine.rootContext());
        }
        m_engine.rootContext()->setContextProperty("viewer", &viewer);
        m_engine.load(QUrl("qrc:/viewer/MainWindow.qml"));
        if (m_engine.rootObjects().isEmpty()) {
            qFatal("The window does not load");
        }
        m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
        m_window->resize(size);
        m_scene = m_window->property("scene").value<QQuickItem*>();
        Torvik::View3d::GdalGeoProjector::instance()->initFromMap(51.0, 10.0, 0.0);
        if (!QTest::qWaitForWindowExposed(m_window)) {
            qFatal("The window does not show");
        }
        waitFrames(10);
    }

    QQuickWindow* window() const { return m_window; }
    QQuickItem* scene() const { return m_scene; }
    Qt3DRender::QCamera* camera() const { return Torvik::View3d::SceneRoot::camera(); }

    QQuickItem* item(const QString& name) const
    {
        QQuickItem* const found = named(m_window->contentItem(), name);
        if (!found) {
            qWarning("There is no item %s", qPrintable(name));
        }
        return found;
    }
    bool enabled(const QString& name) const { return item(name)->isEnabled(); }
    bool checked(const QString& name) const { return item(name)->property("on").toBool(); }
    bool visible(const QString& name) const
    {
        const QQuickItem* const found = named(m_window->contentItem(), name);
        return found && found->isVisible();
    }
    QString text(const QString& name) const { return item(name)->property("text").toString(); }

    /** What an expression of QML gives, with the names that the host supplies. */
    QVariant evaluate(const QString& expression)
    {
        QQmlComponent component(&m_engine);
        component.setData("import QtQml 2.12\nimport ostel.controls 1.0\nQtObject { function evaluate() { return " +
                              expression.toUtf8() + " } }",
                          {});
        // Stays, since functions that the expression hands out live no longer than it.
        QObject* const object = component.create();
        QVariant result;
        if (object) {
            object->setParent(m_window);
        }
        if (!object || !QMetaObject::invokeMethod(object, "evaluate", Q_RETURN_ARG(QVariant, result))) {
            qWarning("%s: %s", qPrintable(expression), qPrintable(component.errorString()));
        }
        return result;
    }

    void waitFrames(int count)
    {
        // Told by the render thread: counted here, where the counter lives.
        const QObject here;
        int frames = 0;
        QObject::connect(
            m_window, &QQuickWindow::frameSwapped, &here, [&frames] { ++frames; }, Qt::QueuedConnection);
        QTRY_VERIFY_WITH_TIMEOUT(frames >= count, 10000);
    }
    void settle() { QTRY_VERIFY(!camera()->property("animationsRunning").toBool()); }

    /** Taps the middle of an item. */
    void click(const QString& name)
    {
        const QQuickItem* const target = item(name);
        QVERIFY2(target && target->isVisible(), qPrintable(name));
        tapWindow(target->mapToScene({target->width() / 2, target->height() / 2}).toPoint());
    }
    void tapWindow(QPoint position)
    {
        QTest::mouseClick(m_window, Qt::LeftButton, {}, position);
        QCoreApplication::processEvents();
    }
    /** Presses and lets go with frames between, as the scene hears of a finger once a frame. */
    void tap(QPointF inScene)
    {
        QTest::mousePress(m_window, Qt::LeftButton, {}, inWindow(inScene));
        waitFrames(3);
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, inWindow(inScene));
        waitFrames(3);
    }
    void drag(QPointF from, QPointF to)
    {
        QTest::mousePress(m_window, Qt::LeftButton, {}, inWindow(from));
        waitFrames(3);
        for (int step = 1; step <= 5; ++step) {
            QTest::mouseMove(m_window, inWindow(from + (to - from) * step / 5));
            waitFrames(2);
        }
        waitFrames(3);
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, inWindow(to));
        waitFrames(3);
    }

    QPoint inWindow(QPointF inScene) const { return m_scene->mapToScene(inScene).toPoint(); }
    QPointF pixelOf(QVector3D point) const
    {
        return Torvik::View3d::Utils3d::pointWorldToScreen(camera(), point, static_cast<float>(m_scene->width()),
                                                           static_cast<float>(m_scene->height()));
    }
    QVector3D groundAt(QPointF pixel) const
    {
        return Torvik::View3d::Utils3d::pointScreenToWorldGround(static_cast<float>(pixel.x()),
                                                                 static_cast<float>(pixel.y()), camera(),
                                                                 m_scene->width(), m_scene->height());
    }

    QImage grab()
    {
        waitFrames(3);
        return m_window->grabWindow();
    }
    /** Leaves the picture in the folder that KX_KEEP_PICTURES names. */
    void keep(const QString& name)
    {
        const QString folder = qEnvironmentVariable("KX_KEEP_PICTURES");
        if (!folder.isEmpty()) {
            QVERIFY(grab().save(folder + "/" + name + ".png"));
        }
    }

private:
    static QQuickItem* named(QQuickItem* root, const QString& name)
    {
        if (root->objectName() == name) {
            return root;
        }
        for (QQuickItem* child : root->childItems()) {
            if (QQuickItem* found = named(child, name)) {
                return found;
            }
        }
        return nullptr;
    }

    QQmlApplicationEngine m_engine;
    QQuickWindow* m_window = nullptr;
    QQuickItem* m_scene = nullptr;
};

/** Warnings of QML while it stands. */
class QmlWarnings {
public:
    QmlWarnings()
    {
        list().clear();
        previous() = qInstallMessageHandler(note);
    }
    ~QmlWarnings() { qInstallMessageHandler(previous()); }

    static QStringList& list()
    {
        static QStringList warnings;
        return warnings;
    }

private:
    static QtMessageHandler& previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
    static void note(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        if (type != QtDebugMsg && type != QtInfoMsg && (message.contains("qml") || message.contains("QML"))) {
            list() << message;
        }
        previous()(type, context, message);
    }
};

} // namespace Kx::Test
