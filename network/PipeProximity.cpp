#include "network/PipeProximity.h"

namespace Torvik::View3d {

PipeProximity::PipeProximity()
    : m_pipe(nullptr)
{
}

} // namespace Torvik::View3d
