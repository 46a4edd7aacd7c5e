#pragma once

#include <QEvent>
#include <QGuiApplication>
#include <QThread>

#include <cstring>

namespace Torvik::View3d {

/** The application object of a host that shows the scene in a window.
 *
 *  Qt 3D finishes new nodes by an event to an object that, under Scene3D, lives in the render thread: it would touch
 * them there while the main thread still builds or already deletes them. Here the first such event takes that object to
 * the main thread, where its nodes are, and is sent again. */
class SceneApplication : public QGuiApplication {
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (event->type() == QEvent::MetaCall && QThread::currentThread() != thread() && finishesNodes(receiver)) {
            receiver->moveToThread(thread());
            QMetaObject::invokeMethod(receiver, "processNodes", Qt::QueuedConnection);
            return true;
        }
        return QGuiApplication::notify(receiver, event);
    }

private:
    static bool finishesNodes(const QObject* receiver)
    {
        return std::strcmp(receiver->metaObject()->className(), "Qt3DCore::NodePostConstructorInit") == 0;
    }
};

} // namespace Torvik::View3d
