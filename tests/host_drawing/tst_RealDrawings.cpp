#include "host/drawing/DrawingTask.h"
#include "host_drawing/DxfText.h"

#include <QtTest>

using namespace Torvik::DXF;
using namespace Kx::Test;

/** Drawings as other programs write them. */
class tst_RealDrawings : public QObject {
    Q_OBJECT

private slots:
    void whatCanBeReadIsDrawn_data();
    void whatCanBeReadIsDrawn();
    void whatCannotIsExplained_data();
    void whatCannotIsExplained();
    void cutAnywhereTheyNeverCrash_data();
    void cutAnywhereTheyNeverCrash();
};

void tst_RealDrawings::whatCanBeReadIsDrawn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("fewestSegments");
    QTest::addColumn<int>("mostLost");
    const auto row = [](const char* name, const char* format, int segments, int lost) {
        QTest::newRow(name) << QString(name) << QString(format) << segments << lost;
    };
    row("dxf/floorplan_AC1018.dxf", "DXF 2004", 5000, 0);
    row("dxf/example_r12_AC1009.dxf", "DXF R12", 4000, 0);
    row("dxf/example_2000_AC1015.dxf", "DXF 2000", 1000, 0);
    row("dxf/example_2018_AC1032.dxf", "DXF 2018", 1000, 0);
    row("dxf/sample_r14_AC1014.dxf", "DXF R14", 50, 0);
    row("dxf/hatches_2_AC1032.dxf", "DXF 2018", 50, 0);
    row("dxf/text_AC1032.dxf", "DXF 2018", 1000, 0);
    row("dxf/uncommon_AC1032.dxf", "DXF 2018", 500, 5);
    row("dxf/mtext_columns_AC1021.dxf", "DXF 2007", 1000, 0);
    row("dxf/dimension_in_nested_blocks_AC1027.dxf", "DXF 2013", 20, 0);
    row("dxf/custom_blocks_AC1024.dxf", "DXF 2010", 40, 0);
    row("dxf/houses_of_parliament_georeferenced_AC1032.dxf", "DXF 2018", 3, 0);
    row("dxf/splines_AC1021.dxf", "DXF 2007", 20, 0);
    row("dxf/survey_device_AC1009.dxf", "DXF R12", 10, 0);
    row("dxf/duplicate_handles_AC1012.dxf", "DXF R13", 100, 0);
    row("dxf/broken_trash_beyond_eof.dxf", "DXF", 40, 0);
    row("dxf/derived_isybau2013_plan_epsg25832.dxf", "DXF 2004", 5000, 0);
    row("dxf/derived_large_network_epsg28356.dxf", "DXF 2004", 500000, 0);
    row("dwg/TS1_AC1015.dwg", "DWG 2000", 10, 0);
    row("dwg/entities-2d_AC1015.dwg", "DWG 2000", 1, 0);
    row("dwg/PolyLine3D_AC1015.dwg", "DWG 2000", 1, 0);
    row("dwg/Text_AC1015.dwg", "DWG 2000", 1, 0);
    row("dwg/Arc_AC1015.dwg", "DWG 2000", 5, 0);
    row("dwg/example_2000_AC1015.dwg", "DWG 2000", 10, 0);
    row("dwg/sample_2000_AC1015.dwg", "DWG 2000", 10, 0);
}

void tst_RealDrawings::whatCanBeReadIsDrawn()
{
    QFETCH(QString, name);
    QFETCH(QString, format);
    QFETCH(int, fewestSegments);
    QFETCH(int, mostLost);
    const QString path = realFile(name);
    if (path.isEmpty())
        QSKIP("the folder of real drawings is not there");

    const DrawingResult result = readToMeshes(path, std::make_shared<std::atomic<bool>>(false));

    const DrawingReport& report = result.report;
    QVERIFY2(report.problem == DrawingProblem::None, qPrintable(report.message));
    QCOMPARE(report.format, format);
    QVERIFY2(report.segments >= fewestSegments, qPrintable(QString::number(report.segments)));
    QVERIFY2(report.lost <= mostLost, qPrintable(report.warnings.join(' ')));
    QVERIFY(!result.meshes.meshes.isEmpty());
    QVERIFY(result.meshes.meshes.size() <= 50);
    for (const DrawingMesh& mesh : result.meshes.meshes) {
        // Half of it lies around the crop offset; nothing is left of coordinates of a whole country.
        QVERIFY(mesh.smallest.x() < 20000.0F && mesh.largest.x() > -20000.0F);
    }
}

void tst_RealDrawings::whatCannotIsExplained_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("problem");
    QTest::addColumn<QString>("says");
    const auto row = [](const char* name, DrawingProblem problem, const char* says) {
        QTest::newRow(name) << QString(name) << int(problem) << QString(says);
    };
    row("dxf/binary_AC1015.dxf", DrawingProblem::BinaryDxf, "ASCII DXF");
    row("dxf/broken_recover01_no_header_no_eof.dxf", DrawingProblem::Unread, "ASCII DXF");
    row("dxf/derived_broken_floorplan_truncated.dxf", DrawingProblem::CutOff, "cut off");
    row("dwg/PolyLine2D_AC1015.dwg", DrawingProblem::Unread, "DWG 2000");
    row("dwg/example_2004_AC1018.dwg", DrawingProblem::DwgVersion, "DWG 2004 drawing (AC1018)");
    row("dwg/sample_2018_AC1032.dwg", DrawingProblem::DwgVersion, "DWG 2018 drawing (AC1032)");
    row("dwg/gh44-error_AC1027.dwg", DrawingProblem::DwgVersion, "DWG 2013 drawing (AC1027)");
}

void tst_RealDrawings::whatCannotIsExplained()
{
    QFETCH(QString, name);
    QFETCH(int, problem);
    QFETCH(QString, says);
    const QString path = realFile(name);
    if (path.isEmpty())
        QSKIP("the folder of real drawings is not there");

    const DrawingResult result = readToMeshes(path, std::make_shared<std::atomic<bool>>(false));

    QCOMPARE(int(result.report.problem), problem);
    QVERIFY2(result.report.message.contains(says), qPrintable(result.report.message));
    QVERIFY(result.report.message.contains(QFileInfo(path).fileName()));
}

void tst_RealDrawings::cutAnywhereTheyNeverCrash_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"dxf/sample_r14_AC1014.dxf", "dxf/uncommon_AC1032.dxf", "dxf/hatches_2_AC1032.dxf",
                             "dwg/example_2000_AC1015.dwg", "dwg/TS1_AC1015.dwg"})
        QTest::newRow(name) << QString(name);
}

void tst_RealDrawings::cutAnywhereTheyNeverCrash()
{
    QFETCH(QString, name);
    const QString path = realFile(name);
    if (path.isEmpty())
        QSKIP("the folder of real drawings is not there");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    const QTemporaryDir folder;

    for (int part = 1; part < 24; ++part) {
        const QString cut =
            written(folder, QFileInfo(path).fileName(), whole.left(int(qint64(whole.size()) * part / 24)));
        const DrawingReport report = readToMeshes(cut, std::make_shared<std::atomic<bool>>(false)).report;
        QVERIFY(report.problem != DrawingProblem::None || report.segments + report.triangles + report.points > 0);
    }
}

QTEST_APPLESS_MAIN(tst_RealDrawings)
#include "tst_RealDrawings.moc"
