import QtQml 2.12
QtObject {
    enum State { StateIdle, StateRecording }
    property int state: VideoCreationHandler.StateIdle
    signal videoCreated()
    signal errorOccurred(var errorCode)
}
