#include "common/LogCapture.h"
#include "host/drawing/DrawingTask.h"
#include "host/drawing/OgrDrawingReader.h"
#include "host_drawing/DxfText.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

#include <unistd.h>

using namespace Torvik::DXF;
using namespace Kx::Test;

namespace {

std::shared_ptr<std::atomic<bool>> flag(bool set = false)
{
    return std::make_shared<std::atomic<bool>>(set);
}

DrawingRead readText(const QByteArray& text)
{
    const QTemporaryDir folder;
    const QString path = written(folder, "drawing.dxf", text);
    const auto cancelled = flag();
    const DrawingFile file = inspectDrawing(path, *cancelled);
    if (file.problem != DrawingProblem::None)
        qFatal("%s", qPrintable(explain(file, path)));
    return readDrawing(path, file, cancelled);
}

DrawingRead readEntities(const QByteArray& entities, const QByteArray& layers = {}, const QByteArray& blocks = {})
{
    return readText(Dxf::drawing(entities, layers, blocks));
}

QByteArray squareHatch(int handle, const QByteArray& pattern)
{
    QByteArray edges;
    for (const QPoint corner : {QPoint(0, 0), QPoint(4, 0), QPoint(4, 4), QPoint(0, 4)})
        edges += Dxf::pair(10, QByteArray::number(corner.x())) + Dxf::pair(20, QByteArray::number(corner.y()));
    return Dxf::entity("HATCH", handle,
                       Dxf::pair(100, "AcDbHatch") + Dxf::at(10, 0, 0) + Dxf::pair(2, pattern) +
                           Dxf::pair(70, pattern == "SOLID" ? "1" : "0") + Dxf::pair(71, "0") + Dxf::pair(91, "1") +
                           Dxf::pair(92, "2") + Dxf::pair(72, "0") + Dxf::pair(73, "1") + Dxf::pair(93, "4") + edges +
                           Dxf::pair(97, "0") + Dxf::pair(75, "0") + Dxf::pair(76, "1") + Dxf::pair(98, "0"));
}

} // namespace

class tst_DrawingReader : public QObject {
    Q_OBJECT

private slots:
    void entitiesBecomeLinesFillsAndPoints_data();
    void entitiesBecomeLinesFillsAndPoints();
    void aBulgeIsAnArc();
    void coloursComeFromEntityOrLayer();
    void layersThatAreFrozenOrOffAreLeftOut();
    void whatStandsOnASheetIsLeftOut();
    void insertedBlocksAreDrawnWhereTheyStand();
    void aBlockOfManyEntitiesComesWhole();
    void aPatternLetsThrough();
    void textIsDrawnInStrokes();
    void whatIsPassedOverIsLogged();
    void whatGdalDropsInSilenceIsTold();
    void mostlyDroppedIsNoPlan();
    void badFilesHaveOneProblem_data();
    void badFilesHaveOneProblem();
    void aMissingFileIsTold();
    void aFileWithoutTheRightToReadIsTold();
    void bombsAreRefusedBeforeTheyGoOff_data();
    void bombsAreRefusedBeforeTheyGoOff();
    void aCancelledFileIsNotRead();
    void aFileThatShrinksWhileItIsReadIsTold();
    void namesAreNoMatter();
};

void tst_DrawingReader::entitiesBecomeLinesFillsAndPoints_data()
{
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<int>("fewestSegments");
    QTest::addColumn<int>("triangles");
    QTest::addColumn<int>("points");
    const auto p = [](int code, const char* value) { return Dxf::pair(code, value); };
    QTest::newRow("line") << Dxf::line(1, 0, 0, 1, 1) << 1 << 0 << 0;
    QTest::newRow("point") << Dxf::entity("POINT", 1, Dxf::at(10, 1, 1)) << 0 << 0 << 1;
    QTest::newRow("circle") << Dxf::entity("CIRCLE", 1, Dxf::at(10, 0, 0) + p(40, "5")) << 40 << 0 << 0;
    QTest::newRow("arc") << Dxf::entity("ARC", 1, Dxf::at(10, 0, 0) + p(40, "5") + p(50, "0") + p(51, "90")) << 10 << 0
                         << 0;
    QTest::newRow("ellipse") << Dxf::entity("ELLIPSE", 1,
                                            Dxf::at(10, 0, 0) + Dxf::at(11, 5, 0) + p(40, "0.5") + p(41, "0") +
                                                p(42, "6.283185307"))
                             << 40 << 0 << 0;
    QTest::newRow("spline") << Dxf::entity("SPLINE", 1,
                                           p(70, "8") + p(71, "3") + p(72, "8") + p(73, "4") + p(40, "0") + p(40, "0") +
                                               p(40, "0") + p(40, "0") + p(40, "1") + p(40, "1") + p(40, "1") +
                                               p(40, "1") + Dxf::at(10, 0, 0) + Dxf::at(10, 1, 2) + Dxf::at(10, 3, 2) +
                                               Dxf::at(10, 4, 0))
                            << 8 << 0 << 0;
    QTest::newRow("closed polyline") << Dxf::entity("LWPOLYLINE", 1,
                                                    p(90, "3") + p(70, "1") + p(10, "0") + p(20, "0") + p(10, "4") +
                                                        p(20, "0") + p(10, "4") + p(20, "3"))
                                     << 3 << 0 << 0;
    QTest::newRow("old polyline") << Dxf::entity("POLYLINE", 1, p(66, "1") + p(70, "0")) +
                                         Dxf::entity("VERTEX", 2, Dxf::at(10, 0, 0)) +
                                         Dxf::entity("VERTEX", 3, Dxf::at(10, 1, 0)) +
                                         Dxf::entity("VERTEX", 4, Dxf::at(10, 1, 1)) + Dxf::entity("SEQEND", 5, {})
                                  << 2 << 0 << 0;
    QTest::newRow("solid") << Dxf::entity("SOLID", 1,
                                          Dxf::at(10, 0, 0) + Dxf::at(11, 1, 0) + Dxf::at(12, 0, 1) + Dxf::at(13, 1, 1))
                           << 0 << 2 << 0;
    QTest::newRow("hatch") << squareHatch(1, "SOLID") << 0 << 2 << 0;
    QTest::newRow("text") << Dxf::entity("TEXT", 1, Dxf::at(10, 0, 0) + p(40, "2.5") + p(1, "Schacht 12")) << 20 << 0
                          << 0;
    QTest::newRow("long text") << Dxf::entity("MTEXT", 1, Dxf::at(10, 0, 0) + p(40, "2.5") + p(71, "1") + p(1, "a\\Pb"))
                               << 10 << 0 << 0;
}

void tst_DrawingReader::entitiesBecomeLinesFillsAndPoints()
{
    QFETCH(QByteArray, entities);
    QFETCH(int, fewestSegments);
    QFETCH(int, triangles);
    QFETCH(int, points);

    const DrawingRead read = readEntities(entities);

    QCOMPARE(int(read.problem), int(DrawingProblem::None));
    QVERIFY2(int(read.drawing.lines.size()) / 2 >= fewestSegments,
             qPrintable(QString::number(read.drawing.lines.size())));
    QCOMPARE(int(read.drawing.fills.size()) / 3, triangles);
    QCOMPARE(int(read.drawing.points.size()), points);
    QCOMPARE(read.losses.lostAtLeast, 0);
}

void tst_DrawingReader::aBulgeIsAnArc()
{
    // A bulge of 1 is half a circle.
    const DrawingRead read =
        readEntities(Dxf::entity("LWPOLYLINE", 1,
                                 Dxf::pair(90, "2") + Dxf::pair(70, "0") + Dxf::pair(10, "0") + Dxf::pair(20, "0") +
                                     Dxf::pair(42, "1") + Dxf::pair(10, "10") + Dxf::pair(20, "0")));

    QVERIFY(read.drawing.lines.size() / 2 > 10);
    double lowest = 0.0;
    for (const DrawingVertex& vertex : read.drawing.lines) {
        QVERIFY(std::abs(std::hypot(vertex.at.x - 5.0, vertex.at.y) - 5.0) < 1e-6);
        lowest = std::min(lowest, vertex.at.y);
    }
    QVERIFY(std::abs(lowest + 5.0) < 0.05);
}

void tst_DrawingReader::coloursComeFromEntityOrLayer()
{
    const DrawingRead read =
        readEntities(Dxf::line(1, 0, 0, 1, 1, "pipes") +
                         Dxf::entity("LINE", 2, Dxf::pair(62, "3") + Dxf::at(10, 0, 0) + Dxf::at(11, 1, 0), "pipes") +
                         Dxf::entity("LINE", 3, Dxf::pair(420, "1193046") + Dxf::at(10, 0, 0) + Dxf::at(11, 1, 0)),
                     Dxf::layer("pipes", 5));

    QCOMPARE(read.drawing.lines.size(), std::size_t(6));
    QCOMPARE(read.drawing.lines[0].colour, colourOf(0, 0, 255));
    QCOMPARE(read.drawing.lines[2].colour, colourOf(0, 255, 0));
    QCOMPARE(read.drawing.lines[4].colour, colourOf(0x12, 0x34, 0x56));
}

void tst_DrawingReader::layersThatAreFrozenOrOffAreLeftOut()
{
    const DrawingRead read =
        readEntities(Dxf::line(1, 0, 0, 1, 1) + Dxf::line(2, 0, 0, 2, 2, "frozen") + Dxf::line(3, 0, 0, 3, 3, "off") +
                         Dxf::line(4, 0, 0, 4, 4, "locked"),
                     Dxf::layer("frozen", 1, 1) + Dxf::layer("off", -3) + Dxf::layer("locked", 5, 4));

    QCOMPARE(read.drawing.lines.size(), std::size_t(4));
    QCOMPARE(read.drawing.lines[3].at.x, 4.0);
    QCOMPARE(read.hidden, 2);
    QCOMPARE(read.losses.lostAtLeast, 0);
}

void tst_DrawingReader::whatStandsOnASheetIsLeftOut()
{
    const DrawingRead read =
        readEntities(Dxf::line(1, 0, 0, 1, 1) +
                     Dxf::entity("LINE", 2, Dxf::pair(67, "1") + Dxf::at(10, 0, 0) + Dxf::at(11, 297, 210)));

    QCOMPARE(read.drawing.lines.size(), std::size_t(2));
    QCOMPARE(read.inPaper, 1);
}

void tst_DrawingReader::insertedBlocksAreDrawnWhereTheyStand()
{
    const DrawingRead read =
        readEntities(Dxf::insert(1, "manhole", 100, 200) +
                         Dxf::insert(2, "manhole", 300, 200, Dxf::pair(41, "2") + Dxf::pair(50, "90")),
                     {}, Dxf::block("manhole", Dxf::line(10, 0, 0, 1, 0) + squareHatch(11, "SOLID")));

    QCOMPARE(read.drawing.lines.size(), std::size_t(4));
    QCOMPARE(read.drawing.lines[1].at.x, 101.0);
    QCOMPARE(read.drawing.lines[1].at.y, 200.0);
    QVERIFY(std::abs(read.drawing.lines[3].at.x - 300.0) < 1e-9);
    QVERIFY(std::abs(read.drawing.lines[3].at.y - 202.0) < 1e-9);
    QCOMPARE(read.drawing.fills.size(), std::size_t(12));
}

void tst_DrawingReader::aBlockOfManyEntitiesComesWhole()
{
    QByteArray lines;
    for (int i = 0; i < 12000; ++i)
        lines += Dxf::line(0, i, 0, i, 1);

    const DrawingRead read = readEntities(Dxf::insert(1, "map", 0, 0), {}, Dxf::block("map", lines));

    QCOMPARE(read.drawing.lines.size(), std::size_t(24000));
}

void tst_DrawingReader::aPatternLetsThrough()
{
    const DrawingRead solid = readEntities(squareHatch(1, "SOLID"));
    const DrawingRead pattern = readEntities(squareHatch(1, "ANSI31"));

    QCOMPARE(solid.drawing.fills[0].colour >> 24U, 255U);
    QVERIFY(pattern.drawing.fills[0].colour >> 24U < 128U);
}

void tst_DrawingReader::textIsDrawnInStrokes()
{
    const DrawingRead read = readEntities(
        Dxf::entity("TEXT", 1, Dxf::at(10, 50, 60) + Dxf::pair(40, "3") + Dxf::pair(1, "H") + Dxf::pair(50, "0")));

    double highest = 0.0;
    double left = 1e9;
    for (const DrawingVertex& vertex : read.drawing.lines) {
        highest = std::max(highest, vertex.at.y);
        left = std::min(left, vertex.at.x);
    }
    QVERIFY(std::abs(highest - 63.0) < 0.01);
    QVERIFY(std::abs(left - 50.0) < 0.01);
    const DrawingRead byNumber = readEntities(Dxf::entity(
        "TEXT", 1, Dxf::at(10, 50, 60) + Dxf::pair(40, "3") + Dxf::pair(1, "\\U+0048") + Dxf::pair(50, "0")));
    QCOMPARE(byNumber.drawing.lines.size(), read.drawing.lines.size());
}

void tst_DrawingReader::whatIsPassedOverIsLogged()
{
    const QTemporaryDir folder;
    const QString path =
        written(folder, "rays.dxf",
                Dxf::drawing(Dxf::line(1, 0, 0, 1, 1) + Dxf::entity("XLINE", 2, Dxf::at(10, 0, 0) + Dxf::at(11, 1, 0)) +
                             Dxf::entity("XLINE", 3, Dxf::at(10, 0, 0) + Dxf::at(11, 0, 1))));
    const LogCapture log;

    const DrawingResult result = readToMeshes(path, flag());

    QCOMPARE(int(result.report.problem), int(DrawingProblem::None));
    QCOMPARE(result.report.warnings.size(), 1);
    QVERIFY2(result.report.warnings[0].contains("left out: 2 XLINE"), qPrintable(result.report.warnings[0]));
    QCOMPARE(log.count(3, "Torvik::DXF", path + ": passed over 2 XLINE"), 1);
}

void tst_DrawingReader::whatGdalDropsInSilenceIsTold()
{
    // A polyline of one vertex is none; GDAL says nothing.
    const QTemporaryDir folder;
    const QByteArray bad = Dxf::entity("SPLINE", 2, Dxf::pair(70, "8") + Dxf::pair(71, "3") + Dxf::pair(73, "0"));
    const QString path =
        written(folder, "half.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1) + Dxf::line(3, 0, 0, 2, 1) + bad));

    const DrawingResult result = readToMeshes(path, flag());

    QCOMPARE(result.report.lost, 1);
    QCOMPARE(result.report.warnings.size(), 1);
    QVERIFY2(result.report.warnings[0].contains("1 of 3 entities could not be read (1 SPLINE)"),
             qPrintable(result.report.warnings[0]));
}

void tst_DrawingReader::mostlyDroppedIsNoPlan()
{
    const QTemporaryDir folder;
    QByteArray bad;
    for (int i = 0; i < 5; ++i)
        bad += Dxf::entity("SPLINE", 10 + i, Dxf::pair(70, "8") + Dxf::pair(71, "3") + Dxf::pair(73, "0"));
    const QString path = written(folder, "bad.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1) + bad));

    const DrawingResult result = readToMeshes(path, flag());

    QCOMPARE(int(result.report.problem), int(DrawingProblem::Unread));
    QVERIFY(result.meshes.meshes.isEmpty());
    QVERIFY2(result.report.message.contains("bad.dxf: only 1 of 6 entities can be read"),
             qPrintable(result.report.message));
}

void tst_DrawingReader::badFilesHaveOneProblem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<int>("problem");
    const QByteArray good = Dxf::drawing(Dxf::line(1, 0, 0, 1, 1));
    const auto row = [](const char* tag, const char* name, const QByteArray& contents, DrawingProblem problem) {
        QTest::newRow(tag) << QString(name) << contents << int(problem);
    };
    row("zero bytes", "a.dxf", {}, DrawingProblem::Empty);
    row("zero bytes, DWG", "a.dwg", {}, DrawingProblem::Empty);
    row("picture renamed", "a.dxf", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), DrawingProblem::NoDrawing);
    row("prose renamed", "a.dwg", "No drawing at all.\nNot one.\n", DrawingProblem::NoDrawing);
    row("binary DXF", "a.dxf", QByteArray("AutoCAD Binary DXF\r\n\x1a\0\0SECTION", 30), DrawingProblem::BinaryDxf);
    row("DWG 2018", "a.dwg", QByteArray("AC1032\0\0\0\0", 10), DrawingProblem::DwgVersion);
    row("DWG renamed", "a.dxf", QByteArray("AC1032\0\0\0\0", 10), DrawingProblem::DwgVersion);
    row("DWG 2000 cut", "a.dwg", QByteArray("AC1015\0\0\0\0", 10), DrawingProblem::Unread);
    row("DWG 2000 of rubbish", "a.dwg", QByteArray("AC1015") + QByteArray(5000, '\x5a'), DrawingProblem::Unread);
    row("cut in the entities", "a.dxf", good.left(good.size() - 30), DrawingProblem::CutOff);
    row("cut in the header", "a.dxf", good.left(30), DrawingProblem::CutOff);
    row("damaged", "a.dxf", QByteArray(good).replace("\nLINE\n5\n", "\nLINE\nxyz\n"), DrawingProblem::Damaged);
    row("no entity", "a.dxf", Dxf::drawing({}), DrawingProblem::NothingToDraw);
    row("all of it frozen", "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1, "frozen"), Dxf::layer("frozen", 1, 1)),
        DrawingProblem::NothingToDraw);
}

void tst_DrawingReader::badFilesHaveOneProblem()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, contents);
    QFETCH(int, problem);
    const QTemporaryDir folder;
    const LogCapture log;

    const DrawingResult result = readToMeshes(written(folder, name, contents), flag());

    QCOMPARE(int(result.report.problem), problem);
    QVERIFY(result.report.message.contains(name));
    QVERIFY(result.meshes.meshes.isEmpty());
    int errors = 0;
    for (const auto& line : log.lines())
        errors += line.level == 1 ? 1 : 0;
    QCOMPARE(errors, 1);
}

void tst_DrawingReader::aMissingFileIsTold()
{
    QCOMPARE(int(readToMeshes("/nowhere/a.dxf", flag()).report.problem), int(DrawingProblem::Missing));
    QCOMPARE(int(readToMeshes(QDir::tempPath(), flag()).report.problem), int(DrawingProblem::NotReadable));
    QCOMPARE(int(readToMeshes(QString(), flag()).report.problem), int(DrawingProblem::Missing));
}

void tst_DrawingReader::aFileWithoutTheRightToReadIsTold()
{
    if (geteuid() == 0)
        QSKIP("root may read everything");
    const QTemporaryDir folder;
    const QString path = written(folder, "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1)));
    QVERIFY(QFile::setPermissions(path, {}));

    QCOMPARE(int(readToMeshes(path, flag()).report.problem), int(DrawingProblem::NotReadable));
}

void tst_DrawingReader::bombsAreRefusedBeforeTheyGoOff_data()
{
    QTest::addColumn<QByteArray>("text");
    QByteArray blocks = Dxf::block("b0", Dxf::line(1, 0, 0, 1, 1));
    for (int i = 1; i < 10; ++i) {
        QByteArray inner;
        for (int k = 0; k < 10; ++k)
            inner += Dxf::insert(2, "b" + QByteArray::number(i - 1), k, 0);
        blocks += Dxf::block("b" + QByteArray::number(i), inner);
    }
    QTest::newRow("nested") << Dxf::drawing(Dxf::insert(3, "b9", 0, 0), {}, blocks);
    QTest::newRow("array") << Dxf::drawing(Dxf::insert(3, "b0", 0, 0, Dxf::pair(70, "30000") + Dxf::pair(71, "30000")),
                                           {}, blocks);
    QByteArray chain = Dxf::block("b0", Dxf::line(1, 0, 0, 1, 1));
    for (int i = 1; i < 50000; ++i)
        chain += Dxf::block("b" + QByteArray::number(i), Dxf::insert(2, "b" + QByteArray::number(i - 1), 0, 0));
    QTest::newRow("deep") << Dxf::drawing(Dxf::insert(3, "b49999", 0, 0), {}, chain);
}

void tst_DrawingReader::bombsAreRefusedBeforeTheyGoOff()
{
    QFETCH(QByteArray, text);
    const QTemporaryDir folder;

    QCOMPARE(int(readToMeshes(written(folder, "bomb.dxf", text), flag()).report.problem), int(DrawingProblem::TooMuch));
}

void tst_DrawingReader::aCancelledFileIsNotRead()
{
    const QTemporaryDir folder;
    const QString path = written(folder, "a.dxf", Dxf::drawing(Dxf::line(1, 0, 0, 1, 1)));
    const DrawingFile file = inspectDrawing(path, *flag());

    QCOMPARE(int(readDrawing(path, file, flag(true)).problem), int(DrawingProblem::Cancelled));
    QCOMPARE(int(readToMeshes(path, flag(true)).report.problem), int(DrawingProblem::Cancelled));
    QVERIFY(readToMeshes(path, flag(true)).report.message.isEmpty());
}

void tst_DrawingReader::aFileThatShrinksWhileItIsReadIsTold()
{
    const QTemporaryDir folder;
    QByteArray lines;
    for (int i = 1; i <= 2000; ++i)
        lines += Dxf::line(i, i, 0, i, 1);
    const QString path = written(folder, "a.dxf", Dxf::drawing(lines));
    const DrawingFile file = inspectDrawing(path, *flag());
    QVERIFY(QFile::resize(path, QFileInfo(path).size() / 4 * 3));

    const DrawingRead read = readDrawing(path, file, flag());

    QVERIFY(read.losses.lostAtLeast > 300);
}

void tst_DrawingReader::namesAreNoMatter()
{
    const QTemporaryDir folder;
    const QString path =
        written(folder, QString::fromUtf8("Pl\u00e4ne, \u4e2d & \"x\".DWG"), Dxf::drawing(Dxf::line(1, 0, 0, 1, 1)));

    QCOMPARE(int(readToMeshes(path, flag()).report.problem), int(DrawingProblem::None));
}

QTEST_APPLESS_MAIN(tst_DrawingReader)
#include "tst_DrawingReader.moc"
