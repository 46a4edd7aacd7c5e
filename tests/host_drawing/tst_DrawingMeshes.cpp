#include "host/drawing/DrawingMeshes.h"

#include <QtTest>

#include <cmath>

using namespace Torvik::DXF;

namespace {

constexpr DrawingColour red = colourOf(255, 0, 0);

const DrawingMesh::Vertex* verticesOf(const DrawingMesh& mesh)
{
    return reinterpret_cast<const DrawingMesh::Vertex*>(mesh.vertices.constData());
}

} // namespace

class tst_DrawingMeshes : public QObject {
    Q_OBJECT

private slots:
    void aSmallDrawingKeepsItsCoordinates();
    void largeCoordinatesAreCroppedToTheMillimetre();
    void aDrawingFarFromItsOriginIsCropped();
    void aStrayPointDoesNotMoveTheMidst();
    void aCommonHeightIsTakenOff_data();
    void aCommonHeightIsTakenOff();
    void aLargeDrawingIsFewMeshes();
    void noDrawingIsNoMesh();
    void unitsAreTold();
};

void tst_DrawingMeshes::aSmallDrawingKeepsItsCoordinates()
{
    Drawing drawing;
    addCourse(drawing, {{1, 2, 0}, {3, 5, 0.5}}, red);
    addPoint(drawing, {2, 2, 0}, red);

    const DrawingMeshes result = meshesOf(drawing);

    QVERIFY(!result.cropOffset);
    QCOMPARE(result.meshes.size(), 2);
    const DrawingMesh& lines = result.meshes[0];
    QCOMPARE(int(lines.kind), int(DrawingMesh::Lines));
    QCOMPARE(lines.count, 2);
    QCOMPARE(verticesOf(lines)[1].x, -3.0F);
    QCOMPARE(verticesOf(lines)[1].y, 0.5F);
    QCOMPARE(verticesOf(lines)[1].z, 5.0F);
    QCOMPARE(verticesOf(lines)[1].colour, red);
    QCOMPARE(lines.smallest, QVector3D(-3.0F, 0.0F, 2.0F));
    QCOMPARE(lines.largest, QVector3D(-1.0F, 0.5F, 5.0F));
    QCOMPARE(int(result.meshes[1].kind), int(DrawingMesh::Points));
}

void tst_DrawingMeshes::largeCoordinatesAreCroppedToTheMillimetre()
{
    Drawing drawing;
    addCourse(drawing, {{32570100.123, 5700200.456, 0}, {32570180.789, 5700290.321, 0}}, red);

    const DrawingMeshes result = meshesOf(drawing);

    QVERIFY(result.cropOffset);
    const QVector3D crop = *result.cropOffset;
    const auto* const vertices = verticesOf(result.meshes[0]);
    for (int i = 0; i < 2; ++i) {
        const DrawingPoint& real = drawing.lines[std::size_t(i)].at;
        QVERIFY(std::abs(double(vertices[i].x) + double(crop.x()) + real.x) < 0.001);
        QVERIFY(std::abs(double(vertices[i].z) + double(crop.z()) - real.y) < 0.001);
        QVERIFY(std::abs(vertices[i].x) < 200.0F);
    }
    QCOMPARE(crop.y(), 0.0F);
}

void tst_DrawingMeshes::aDrawingFarFromItsOriginIsCropped()
{
    Drawing far;
    addCourse(far, {{3000, 8000, 0}, {3010, 8010, 0}}, red);
    Drawing near;
    addCourse(near, {{-50, 10, 0}, {60, 90, 0}}, red);

    QVERIFY(meshesOf(far).cropOffset);
    QVERIFY(!meshesOf(near).cropOffset);
}

void tst_DrawingMeshes::aStrayPointDoesNotMoveTheMidst()
{
    Drawing drawing;
    addPoint(drawing, {0, 0, 0}, red);
    for (int i = 0; i < 50; ++i)
        addCourse(drawing, {{500000.0 + i, 5600000, 0}, {500000.0 + i, 5600050, 0}}, red);

    const DrawingMeshes result = meshesOf(drawing);

    QVERIFY(result.cropOffset);
    QVERIFY(std::abs(result.cropOffset->x() + 500025.0F) < 30.0F);
    QVERIFY(std::abs(result.cropOffset->z() - 5600025.0F) < 60.0F);
}

void tst_DrawingMeshes::aCommonHeightIsTakenOff_data()
{
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("highest");
    QTest::addColumn<double>("base");
    QTest::newRow("flat") << 0.0 << 0.0 << 0.0;
    QTest::newRow("above the sea") << 560.0 << 575.5 << 560.0;
    QTest::newRow("some of it at zero") << 0.0 << 575.5 << 0.0;
    QTest::newRow("around zero") << -2.0 << 3.0 << 0.0;
    QTest::newRow("below zero") << -20.0 << -3.0 << -3.0;
}

void tst_DrawingMeshes::aCommonHeightIsTakenOff()
{
    QFETCH(double, lowest);
    QFETCH(double, highest);
    QFETCH(double, base);
    Drawing drawing;
    addCourse(drawing, {{0, 0, lowest}, {1, 1, highest}}, red);

    const DrawingMeshes result = meshesOf(drawing);

    QCOMPARE(result.baseHeight, base);
    QCOMPARE(verticesOf(result.meshes[0])[0].y, float(lowest - base));
    QCOMPARE(verticesOf(result.meshes[0])[1].y, float(highest - base));
}

void tst_DrawingMeshes::aLargeDrawingIsFewMeshes()
{
    Drawing drawing;
    for (int i = 0; i < 600000; ++i)
        addCourse(drawing, {{double(i % 1000), i / 1000.0, 0}, {i % 1000 + 1.0, i / 1000.0, 0}}, red);

    const DrawingMeshes result = meshesOf(drawing);

    int vertices = 0;
    for (const DrawingMesh& mesh : result.meshes) {
        QVERIFY(mesh.count <= mostOfMesh);
        QCOMPARE(mesh.count % 2, 0);
        QCOMPARE(mesh.vertices.size(), mesh.count * int(sizeof(DrawingMesh::Vertex)));
        vertices += mesh.count;
    }
    QCOMPARE(vertices, 1200000);
    QVERIFY(result.meshes.size() <= 50);
    QCOMPARE(result.pictures.size(), 23);
}

void tst_DrawingMeshes::noDrawingIsNoMesh()
{
    QVERIFY(meshesOf({}).meshes.isEmpty());
}

void tst_DrawingMeshes::unitsAreTold()
{
    QCOMPARE(metresPerUnit(4).value_or(0.0), 0.001);
    QCOMPARE(metresPerUnit(6).value_or(0.0), 1.0);
    QVERIFY(!metresPerUnit(0));
    QVERIFY(!metresPerUnit(-7));
}

QTEST_APPLESS_MAIN(tst_DrawingMeshes)
#include "tst_DrawingMeshes.moc"
