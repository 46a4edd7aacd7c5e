#pragma once

#include "domain/boundary/BaseServices.h"

#include <QObject>

namespace Torvik::Viewer {

/** Where the recording of a video stands. This application records none by itself: whoever does sets the state and
 *  tells the end. */
class VideoCreationHandler : public QObject {
    Q_OBJECT
    Q_PROPERTY(State state READ state WRITE setState NOTIFY stateChanged)

public:
    enum State { StateIdle, StateRecording, StateCreating };
    Q_ENUM(State)

    using QObject::QObject;

    State state() const { return m_state; }
    void setState(State state);

signals:
    void stateChanged();
    /** The file is complete. */
    void videoCreated();
    void errorOccurred(Torvik::Base::CErrorCode errorCode);

private:
    State m_state = StateIdle;
};

/** Takes orders about recording; whoever records hears them. */
class VideoRecorder : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE void stop() { emit stopRequested(); }

signals:
    void stopRequested();
};

} // namespace Torvik::Viewer
