#pragma once

#include <QObject>
#include <QTimer>

namespace Torvik::View3d {

/** Turns the flood of the camera's changes into one pair of signals: labels hide at the first change and show when the
 *  camera has come to rest, so that none is drawn at a stale place meanwhile. One for the process; main thread only. */
class LabelsSignalRouter : public QObject {
    Q_OBJECT

public:
    static LabelsSignalRouter& instance();

public slots:
    /** The camera has changed. */
    void onLabelPositionChanged();

signals:
    void hideLabels();
    /** 500 ms after the last change. */
    void showLabels();

private:
    LabelsSignalRouter();

    QTimer* m_timer;
    bool m_labelsHidden = false;
};

} // namespace Torvik::View3d
