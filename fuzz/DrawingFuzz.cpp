// libFuzzer's target: any bytes as a drawing, from the file to its meshes. scripts/fuzz-drawing.sh builds and runs it.
#include "host/drawing/DrawingMeshes.h"
#include "host/drawing/OgrDrawingReader.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    using namespace Torvik::DXF;
    static const QString path = QStringLiteral("/dev/shm/kx-fuzz-drawing-%1").arg(getpid());
    std::FILE* const file = std::fopen(qPrintable(path), "wb");
    if (!file)
        std::abort();
    const std::size_t written = std::fwrite(data, 1, size, file);
    std::fclose(file);
    if (written != size)
        std::abort();
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    const DrawingFile inspected = inspectDrawing(path, *cancelled);
    if (inspected.problem == DrawingProblem::None) {
        const DrawingRead read = readDrawing(path, inspected, cancelled);
        // What goes on has been checked: a place that is no number would break the meshes.
        for (const DrawingVertex& vertex : read.drawing.lines) {
            if (!isUsable(vertex.at))
                std::abort();
        }
        meshesOf(read.drawing);
    } else if (explain(inspected, path).isEmpty()) {
        std::abort();
    }
    std::remove(qPrintable(path));
    return 0;
}
