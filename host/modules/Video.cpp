#include "host/modules/Video.h"

namespace Torvik::Viewer {

void VideoCreationHandler::setState(State state)
{
    if (m_state == state) {
        return;
    }
    m_state = state;
    emit stateChanged();
}

} // namespace Torvik::Viewer
