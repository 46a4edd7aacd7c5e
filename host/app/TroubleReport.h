#pragma once

#include <QObject>

namespace Torvik::Viewer {

/** Tells on stderr what keeps changes from being stored, for a program without a window that could. Main thread only.
 */
class TroubleReport : public QObject {
    Q_OBJECT

public:
    explicit TroubleReport(QObject* parent = nullptr);

    /** Whether anything was lost, as far as is known when the project has been closed. */
    bool somethingIsLost();

private:
    bool m_lost = false;
};

} // namespace Torvik::Viewer
