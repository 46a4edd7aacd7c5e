#pragma once

namespace Torvik::View3d {

class Pipe;

/** Names a pipe that something is near to. */
class PipeProximity {
public:
    PipeProximity();

    Pipe* pipe() const { return m_pipe; }

private:
    Pipe* m_pipe;
};

} // namespace Torvik::View3d
