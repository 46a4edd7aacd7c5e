#include "host/drawing/DrawingTask.h"
#include "host/drawing/DrawingTexts.h"
#include "host_drawing/DxfText.h"

#include <QtTest>

using namespace Torvik::DXF;
using namespace Kx::Test;

/** What is told of a file that is no drawing, and of what a drawing has lost. */
class tst_DrawingTexts : public QObject {
    Q_OBJECT

private slots:
    void whatIsSeenNowhereIsNoLoss();
    void renamedFilesAreToldByTheirKind_data();
    void renamedFilesAreToldByTheirKind();
};

void tst_DrawingTexts::whatIsSeenNowhereIsNoLoss()
{
    const std::map<std::string, int> passedOver {{"INSERT", 1}, {"LIGHT", 2}, {"RAY", 3}, {"VIEWPORT", 4}};

    QCOMPARE(missedByTheUser(passedOver), (std::map<std::string, int> {{"RAY", 3}}));
    QVERIFY(warningsOf(DrawingFile(), {{}, {{"INSERT", 1}}, 0}, "/a/b.dxf").isEmpty());
}

void tst_DrawingTexts::renamedFilesAreToldByTheirKind_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("ending");
    QTest::newRow("PDF") << QByteArray("%PDF-1.4\n%...") << "pdf";
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << "png";
    QTest::newRow("JPEG") << QByteArray("\xff\xd8\xff\xe0\0\x10JFIF", 10) << "jpg";
    QTest::newRow("TIFF of Intel") << QByteArray("II*\0\x08\0\0\0", 8) << "tif";
    QTest::newRow("TIFF of Motorola") << QByteArray("MM\0*\0\0\0\x08", 8) << "tif";
    QTest::newRow("GIF") << QByteArray("GIF89a\1\0\1\0", 10) << "gif";
    QTest::newRow("prose") << QByteArray("No drawing at all.\n") << QString();
    QTest::newRow("DWG") << QByteArray("AC1032\0\0\0\0", 10) << "dwg";
    QTest::newRow("DXF") << Dxf::drawing(Dxf::line(1, 0, 0, 1, 1)) << "dxf";
    QTest::newRow("DXF with blanks, comments and Windows' line ends")
        << QByteArray("999\r\nmade by hand\r\n  0\r\nSECTION\r\n") << "dxf";
    QTest::newRow("binary DXF") << QByteArray("AutoCAD Binary DXF\r\n\x1a\0\0SECTION", 30) << "dxf";
    QTest::newRow("nothing") << QByteArray() << QString();
}

void tst_DrawingTexts::renamedFilesAreToldByTheirKind()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, ending);

    QCOMPARE(endingByContents(contents), ending);

    if (ending.isEmpty() || ending.startsWith('d'))
        return;
    const QTemporaryDir folder;
    const QString message =
        readToMeshes(written(folder, "a.dxf", contents), std::make_shared<std::atomic<bool>>(false)).report.message;
    QVERIFY2(message.contains("a " + ending.toUpper() + " file") && message.contains("ends in ." + ending),
             qPrintable(message));
}

QTEST_APPLESS_MAIN(tst_DrawingTexts)
#include "tst_DrawingTexts.moc"
