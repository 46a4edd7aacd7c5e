#pragma once

#include "host/drawing/DrawingTask.h"
#include "host/drawing/DrawingTree.h"

#include <QBasicTimer>
#include <QObject>

#include <functional>

namespace Torvik::DXF {

/** Makes the entities of a drawing on the thread that it lives in, a few in each turn of the event loop, and deletes
 *  itself when it has told the end. */
class TreeBuilder : public QObject {
    Q_OBJECT

public:
    /** `done` gets the root, which it then owns, or null once `cancelled` is set; on this object's thread. */
    TreeBuilder(DrawingResult result, std::shared_ptr<const std::atomic<bool>> cancelled,
                std::function<void(Qt3DCore::QEntity*)> done);
    ~TreeBuilder() override;

    /** Any thread. */
    void start();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void makeRoot();
    void end(Qt3DCore::QEntity* root);

    DrawingResult m_result;
    std::shared_ptr<const std::atomic<bool>> m_cancelled;
    std::function<void(Qt3DCore::QEntity*)> m_done;
    std::unique_ptr<DrawingTree> m_root;
    QBasicTimer m_timer;
};

} // namespace Torvik::DXF
