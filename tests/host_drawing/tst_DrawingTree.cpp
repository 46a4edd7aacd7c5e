#include "host/drawing/DrawingTree.h"

#include <Qt3DRender/QGeometryRenderer>
#include <QtTest>

using namespace Torvik::DXF;

namespace {

Drawing manyLines()
{
    Drawing drawing;
    for (int i = 0; i < 20000; ++i)
        addCourse(drawing, {{i % 200 * 5.0, i / 200 * 10.0, 0}, {i % 200 * 5.0 + 4.0, i / 200 * 10.0, 0}},
                  colourOf(255, 0, 0));
    addFill(drawing, {{{0, 0, 0}, {300, 0, 0}, {300, 300, 0}, {0, 300, 0}}}, colourOf(0, 0, 255));
    return drawing;
}

DrawingColour pixelOf(const DrawingPicture& picture, double x, double y)
{
    const double pixels = picture.side / picture.region.side;
    const int column = int((x - picture.region.left) * pixels);
    const int row = int((picture.region.bottom + picture.region.side - y) * pixels);
    return reinterpret_cast<const DrawingColour*>(picture.pixels.constData())[row * picture.side + column];
}

/** Entities below this one that are drawn. */
int drawn(const Qt3DCore::QEntity& entity)
{
    int count = entity.componentsOfType<Qt3DRender::QGeometryRenderer>().size();
    for (const QObject* child : entity.children()) {
        const auto* const inner = qobject_cast<const Qt3DCore::QEntity*>(child);
        count += inner && inner->isEnabled() ? drawn(*inner) : 0;
    }
    return count;
}

} // namespace

/** A large drawing from afar and from near by. */
class tst_DrawingTree : public QObject {
    Q_OBJECT

private slots:
    void aSmallDrawingIsItsLines()
    {
        Drawing drawing;
        addCourse(drawing, {{0, 0, 0}, {1, 1, 0}}, colourOf(255, 0, 0));
        DrawingTree tree(meshesOf(drawing));

        while (tree.makeNext()) {
        }
        tree.setUnitsPerPixel(1000.0F);
        QTest::qWait(50);

        QCOMPARE(drawn(tree), 1);
        QCOMPARE(tree.shownLevel(), 0);
    }

    void picturesShowWhatTheDrawingShows()
    {
        const DrawingMeshes meshes = meshesOf(manyLines());

        QCOMPARE(meshes.pictures.size(), 23);
        for (const DrawingPicture& picture : meshes.pictures) {
            QCOMPARE(picture.pixels.size(), picture.side * picture.side * 4);
            if (picture.region.contains(150.0, 155.0))
                QCOMPARE(pixelOf(picture, 150.0, 155.0), colourOf(0, 0, 255));
            if (picture.region.contains(702.0, 500.0))
                QCOMPARE(pixelOf(picture, 702.0, 500.0), colourOf(255, 0, 0));
        }
        QCOMPARE(meshes.pictures.first().level, 0);
        for (const DrawingPicture& picture : meshes.pictures) {
            if (picture.level == pictureLevels - 1 && picture.region.contains(702.0, 505.0))
                QCOMPARE(pixelOf(picture, 702.0, 505.0), 0U);
        }
    }

    void fromAfarOnePictureStandsForAll()
    {
        DrawingTree tree(meshesOf(manyLines()));
        while (tree.makeNext()) {
        }

        QCOMPARE(drawn(tree), 1);
    }

    void comingNearerShowsFinerPicturesAndThenTheLines_data()
    {
        QTest::addColumn<float>("unitsPerPixel");
        QTest::addColumn<int>("level");
        // The region is some 1,100 units wide: pixels of 4.3 units in the coarsest picture and 0.27 in the
        // finest, drawn one and a half wide at most.
        QTest::newRow("far away") << 100.0F << 0;
        QTest::newRow("a corner of the screen") << 3.2F << 0;
        QTest::newRow("half of the screen") << 1.6F << 1;
        QTest::newRow("all of it") << 0.8F << 2;
        QTest::newRow("half of it") << 0.4F << 3;
        QTest::newRow("a quarter") << 0.2F << 4;
        QTest::newRow("near") << 0.1F << pictureLevels;
        QTest::newRow("very near") << 0.001F << pictureLevels;
    }

    void comingNearerShowsFinerPicturesAndThenTheLines()
    {
        QFETCH(float, unitsPerPixel);
        QFETCH(int, level);
        DrawingTree tree(meshesOf(manyLines()));
        while (tree.makeNext()) {
        }

        tree.setUnitsPerPixel(unitsPerPixel);

        QTRY_COMPARE(tree.shownLevel(), level);
        QVERIFY(drawn(tree) <= 50);
        tree.setUnitsPerPixel(100.0F);
        QTRY_COMPARE(tree.shownLevel(), 0);
        QCOMPARE(drawn(tree), 1);
    }

    void whatNobodyCanShowChangesNothing()
    {
        DrawingTree tree(meshesOf(manyLines()));

        tree.setUnitsPerPixel(0.0F);
        tree.setUnitsPerPixel(-1.0F);
        tree.setUnitsPerPixel(std::numeric_limits<float>::quiet_NaN());
        QTest::qWait(50);

        QCOMPARE(tree.shownLevel(), 0);
    }

    void allSegmentsAreInTheSquares()
    {
        const Drawing drawing = manyLines();
        int vertices = 0;

        for (const DrawingMesh& mesh : meshesOf(drawing).meshes)
            vertices += mesh.kind == DrawingMesh::Lines ? mesh.count : 0;

        QCOMPARE(vertices, int(drawing.lines.size()));
    }
};

QTEST_GUILESS_MAIN(tst_DrawingTree)
#include "tst_DrawingTree.moc"
