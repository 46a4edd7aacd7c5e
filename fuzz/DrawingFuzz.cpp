// libFuzzer's target: any bytes as a drawing, from the file to its meshes. scripts/fuzz.sh builds and runs it.
#include "fuzz/Scratch.h"
#include "host/drawing/DrawingMeshes.h"
#include "host/drawing/OgrDrawingReader.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    using namespace Torvik::DXF;
    using namespace Kx::Fuzz;
    static const QString path = scratchName("drawing");
    write(path, data, size);
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    const DrawingFile inspected = inspectDrawing(path, *cancelled);
    if (inspected.problem == DrawingProblem::None) {
        const DrawingRead read = readDrawing(path, inspected, cancelled);
        // What goes on has been checked: a place that is no number would break the meshes.
        for (const DrawingVertex& vertex : read.drawing.lines)
            promise(isUsable(vertex.at));
        meshesOf(read.drawing);
    } else {
        promise(!explain(inspected, path).isEmpty());
    }
    std::remove(qPrintable(path));
    return 0;
}
