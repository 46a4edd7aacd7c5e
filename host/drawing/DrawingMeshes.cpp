#include "host/drawing/DrawingMeshes.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <limits>

namespace Torvik::DXF {

namespace {

/** Single precision holds a millimetre up to here. */
constexpr double largeCoordinate = 10000.0;
/** So many places tell where a drawing's midst is. */
constexpr std::size_t mostSamples = 20001;
/** So much of a drawing on each side may be astray; what is not lies within a margin around the rest. */
constexpr double strayPart = 0.005;
constexpr double margin = 0.1;

struct Extent {
    DrawingPoint smallest {std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
                           std::numeric_limits<double>::max()};
    DrawingPoint largest {std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest(),
                          std::numeric_limits<double>::lowest()};

    void take(const std::vector<DrawingVertex>& vertices)
    {
        for (const DrawingVertex& vertex : vertices) {
            smallest = {std::min(smallest.x, vertex.at.x), std::min(smallest.y, vertex.at.y),
                        std::min(smallest.z, vertex.at.z)};
            largest = {std::max(largest.x, vertex.at.x), std::max(largest.y, vertex.at.y),
                       std::max(largest.z, vertex.at.z)};
        }
    }
};

Extent extentOf(const Drawing& drawing)
{
    Extent extent;
    extent.take(drawing.lines);
    extent.take(drawing.fills);
    extent.take(drawing.points);
    return extent;
}

/** Where the drawing is. Not its extent: a stray point at the origin would put the middle of that where nothing is. */
struct Whereabouts {
    DrawingPoint midst;
    DrawingRegion region; ///< all but what strays
};

Whereabouts whereaboutsOf(const Drawing& drawing)
{
    std::vector<double> xs;
    std::vector<double> ys;
    const auto sample = [&](const std::vector<DrawingVertex>& vertices) {
        const std::size_t step = drawing.vertexCount() / mostSamples + 1;
        for (std::size_t i = 0; i < vertices.size(); i += step) {
            xs.push_back(vertices[i].at.x);
            ys.push_back(vertices[i].at.y);
        }
    };
    sample(drawing.lines);
    sample(drawing.fills);
    sample(drawing.points);
    const auto at = [](std::vector<double>& values, double part) {
        const auto place = values.begin() + std::ptrdiff_t(double(values.size() - 1) * part);
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    const double left = at(xs, strayPart);
    const double right = at(xs, 1.0 - strayPart);
    const double bottom = at(ys, strayPart);
    const double top = at(ys, 1.0 - strayPart);
    const double side = std::max(right - left, top - bottom) * (1.0 + margin);
    return {{at(xs, 0.5), at(ys, 0.5), 0.0}, {(left + right - side) / 2.0, (bottom + top - side) / 2.0, side}};
}

/** The lines by the squares of the region in which their middles lie, and last those that lie in none. */
std::vector<std::vector<DrawingVertex>> bySquares(const std::vector<DrawingVertex>& lines, const DrawingRegion& region)
{
    constexpr int squares = squaresASide * squaresASide;
    std::vector<std::vector<DrawingVertex>> sorted(squares + 1);
    const auto square = [&](double value) {
        return std::min(int(value / region.side * squaresASide), squaresASide - 1);
    };
    std::vector<unsigned char> squareOf(lines.size() / 2);
    std::vector<std::size_t> counts(squares + 1, 0);
    for (std::size_t i = 0; i < squareOf.size(); ++i) {
        const double x = (lines[2 * i].at.x + lines[2 * i + 1].at.x) / 2.0;
        const double y = (lines[2 * i].at.y + lines[2 * i + 1].at.y) / 2.0;
        const int index =
            region.contains(x, y) ? square(y - region.bottom) * squaresASide + square(x - region.left) : squares;
        squareOf[i] = static_cast<unsigned char>(index);
        counts[std::size_t(index)] += 2;
    }
    for (std::size_t i = 0; i < sorted.size(); ++i)
        sorted[i].reserve(counts[i]);
    for (std::size_t i = 0; i < squareOf.size(); ++i) {
        auto& into = sorted[squareOf[i]];
        into.push_back(lines[2 * i]);
        into.push_back(lines[2 * i + 1]);
    }
    return sorted;
}

/** Far from the origin for its size, or with numbers too large to keep their fractions. */
bool needsCrop(const Extent& extent)
{
    const double width = extent.largest.x - extent.smallest.x;
    const double height = extent.largest.y - extent.smallest.y;
    const double size = std::max(width, height);
    const double far = std::max({std::abs(extent.smallest.x), std::abs(extent.smallest.y), std::abs(extent.largest.x),
                                 std::abs(extent.largest.y)});
    return far > largeCoordinate || far > 3.0 * size;
}

double baseHeightOf(const Extent& extent)
{
    if (extent.smallest.z > 0.0)
        return extent.smallest.z;
    return std::min(extent.largest.z, 0.0);
}

class Packer {
public:
    Packer(const QVector3D& offset, double baseHeight)
        : m_x(double(offset.x()))
        , m_z(double(offset.z()))
        , m_base(baseHeight)
    {
    }

    /** `together`: vertices that must stay in one mesh. */
    void add(QVector<DrawingMesh>& meshes, DrawingMesh::Kind kind, const std::vector<DrawingVertex>& vertices,
             std::size_t together) const
    {
        const std::size_t most = std::size_t(mostOfMesh) / together * together;
        for (std::size_t from = 0; from < vertices.size(); from += most)
            meshes.append(pack(kind, vertices.data() + from, std::min(most, vertices.size() - from)));
    }

private:
    DrawingMesh pack(DrawingMesh::Kind kind, const DrawingVertex* vertices, std::size_t count) const
    {
        constexpr float most = std::numeric_limits<float>::max();
        DrawingMesh mesh;
        mesh.kind = kind;
        mesh.count = int(count);
        mesh.vertices.resize(int(count * sizeof(DrawingMesh::Vertex)));
        auto* const packed = reinterpret_cast<DrawingMesh::Vertex*>(mesh.vertices.data());
        QVector3D least(most, most, most);
        QVector3D greatest = -least;
        for (std::size_t i = 0; i < count; ++i) {
            const DrawingPoint& at = vertices[i].at;
            const QVector3D place(float(-at.x - m_x), float(at.z - m_base), float(at.y - m_z));
            packed[i] = {place.x(), place.y(), place.z(), vertices[i].colour};
            for (int axis = 0; axis < 3; ++axis) {
                least[axis] = std::min(least[axis], place[axis]);
                greatest[axis] = std::max(greatest[axis], place[axis]);
            }
        }
        mesh.smallest = least;
        mesh.largest = greatest;
        return mesh;
    }

    double m_x;
    double m_z;
    double m_base;
};

} // namespace

DrawingMeshes meshesOf(const Drawing& drawing)
{
    DrawingMeshes result;
    if (drawing.vertexCount() == 0)
        return result;
    const Extent extent = extentOf(drawing);
    const Whereabouts where = whereaboutsOf(drawing);
    result.baseHeight = baseHeightOf(extent);
    if (needsCrop(extent)) {
        const DrawingPoint& centre = where.midst;
        result.cropOffset = QVector3D(float(std::round(-centre.x)), 0.0F, float(std::round(centre.y)));
    }
    const Packer packer(result.cropOffset.value_or(QVector3D()), result.baseHeight);
    packer.add(result.meshes, DrawingMesh::Fills, drawing.fills, 3);
    const bool many = drawing.lines.size() / 2 >= manySegments && where.region.side > 0.0;
    if (!many) {
        packer.add(result.meshes, DrawingMesh::Lines, drawing.lines, 2);
        packer.add(result.meshes, DrawingMesh::Points, drawing.points, 1);
        return result;
    }
    auto pictures = std::async([&drawing, &where] { return picturesOf(drawing, where.region); });
    const auto squares = bySquares(drawing.lines, where.region);
    for (std::size_t i = 0; i + 1 < squares.size(); ++i)
        packer.add(result.meshes, DrawingMesh::Lines, squares[i], 2);
    packer.add(result.meshes, DrawingMesh::Points, drawing.points, 1);
    for (DrawingMesh& mesh : result.meshes)
        mesh.always = false;
    packer.add(result.meshes, DrawingMesh::Lines, squares.back(), 2);
    result.pictures = pictures.get();
    return result;
}

std::optional<double> metresPerUnit(int unitCode)
{
    static const struct {
        int code;
        double metres;
    } units[] = {{1, 0.0254}, {2, 0.3048}, {3, 1609.344},        {4, 0.001}, {5, 0.01},
                 {6, 1.0},    {7, 1000.0}, {10, 0.9144},         {13, 1e-6}, {14, 0.1},
                 {15, 10.0},  {16, 100.0}, {21, 1200.0 / 3937.0}};
    for (const auto& unit : units) {
        if (unit.code == unitCode)
            return unit.metres;
    }
    return {};
}

} // namespace Torvik::DXF
