#include "host/app/PrintedPage.h"

#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using Torvik::Viewer::PrintedPage;

namespace {

constexpr int dotsPerInch = 100;

double pixels(double mm)
{
    return mm * dotsPerInch / 25.4;
}

/** White with two upright lines, 100 pixels of the view apart, in the middle. */
QImage pictureWithTwoLines(QSize size, double ratio)
{
    QImage picture(size * ratio, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.scale(ratio, ratio);
    const double middle = size.width() / 2.0;
    painter.fillRect(QRectF(middle - 52, 0, 4, size.height()), Qt::blue);
    painter.fillRect(QRectF(middle + 48, 0, 4, size.height()), Qt::blue);
    return picture;
}

} // namespace

/** The page that is printed: its measures by functions, and on the paper as a PDF reader shows it. */
class tst_PrintedPage : public QObject {
    Q_OBJECT

private slots:
    void theBarIsRoundAndFits_data();
    void theBarIsRoundAndFits();
    void northTurnsWithTheCamera_data();
    void northTurnsWithTheCamera();
    void alongTheViewThereIsNoNorth();
    void aBroadPictureIsCutAtBothSides();
    void onThePaperTheScaleHolds_data();
    void onThePaperTheScaleHolds();

private:
    /** The page as pixels, empty when it cannot be rendered. */
    QImage rendered(const PrintedPage& page);

    QTemporaryDir m_folder;
};

QImage tst_PrintedPage::rendered(const PrintedPage& page)
{
    QFile file(m_folder.filePath("page.pdf"));
    if (!file.open(QIODevice::WriteOnly) || file.write(page.pdf()) <= 0)
        return {};
    file.close();
    QProcess::execute("pdftoppm", {"-r", QString::number(dotsPerInch), "-png", "-singlefile", file.fileName(),
                                   m_folder.filePath("page")});
    return QImage(m_folder.filePath("page.png"));
}

void tst_PrintedPage::theBarIsRoundAndFits_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("metresPerUnit");
    QTest::addColumn<double>("length");
    QTest::newRow("1:500 in metres") << 500.0 << 1.0 << 20.0;
    QTest::newRow("1:1000 in metres") << 1000.0 << 1.0 << 50.0;
    QTest::newRow("1:174") << 174.0 << 1.0 << 10.0;
    QTest::newRow("1:500 in feet") << 500.0 << 0.3048 << 50.0;
    QTest::newRow("1:2, centimetres") << 2.0 << 1.0 << 0.1;
    QTest::newRow("a whole land") << 1.0e6 << 1.0 << 50000.0;
}

void tst_PrintedPage::theBarIsRoundAndFits()
{
    QFETCH(double, scale);
    QFETCH(double, metresPerUnit);
    QFETCH(double, length);

    QVERIFY(qAbs(PrintedPage::barLength(scale, metresPerUnit) - length) < 1e-9 * length);
}

void tst_PrintedPage::northTurnsWithTheCamera_data()
{
    QTest::addColumn<QVector3D>("view");
    QTest::addColumn<QVector3D>("up");
    QTest::addColumn<double>("degrees");
    // West is +x, since north is +z and the camera looks down -y.
    QTest::newRow("from the top") << QVector3D(0, -100, 0) << QVector3D(0, 0, 1) << 0.0;
    QTest::newRow("east on top") << QVector3D(0, -100, 0) << QVector3D(-1, 0, 0) << -90.0;
    QTest::newRow("west on top") << QVector3D(0, -100, 0) << QVector3D(1, 0, 0) << 90.0;
    QTest::newRow("tilted northwards") << QVector3D(0, -100, 100) << QVector3D(0, 1, 1) << 0.0;
    QTest::newRow("tilted southwards") << QVector3D(0, -100, -100) << QVector3D(0, 1, -1) << 180.0;
    QTest::newRow("up not square to the view") << QVector3D(0, -100, 100) << QVector3D(0, 1, 0) << 0.0;
}

void tst_PrintedPage::northTurnsWithTheCamera()
{
    QFETCH(QVector3D, view);
    QFETCH(QVector3D, up);
    QFETCH(double, degrees);

    const auto north = PrintedPage::northOf(view, up);

    QVERIFY(north);
    const double off = std::remainder(*north - degrees, 360.0);
    QVERIFY2(qAbs(off) < 0.01, qPrintable(QString::number(*north)));
}

void tst_PrintedPage::alongTheViewThereIsNoNorth()
{
    QVERIFY(!PrintedPage::northOf({0, 0, 100}, {0, 1, 0}));
}

void tst_PrintedPage::aBroadPictureIsCutAtBothSides()
{
    const QImage shown = PrintedPage::cropped(pictureWithTwoLines({1000, 400}, 2.0), 2.0);

    QCOMPARE(shown.size(), QSize(1226, 800));
    QCOMPARE(shown.pixelColor(613 - 100, 400), QColor(Qt::blue));
    QCOMPARE(PrintedPage::cropped(pictureWithTwoLines({300, 200}, 1.0), 1.0).size(), QSize(300, 200));
}

void tst_PrintedPage::onThePaperTheScaleHolds_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    QTest::newRow("broad") << QSize(1000, 600) << 1.0;
    QTest::newRow("finely painted") << QSize(1000, 600) << 2.0;
    QTest::newRow("small") << QSize(400, 300) << 1.0;
    QTest::newRow("high") << QSize(700, 1400) << 1.0;
}

void tst_PrintedPage::onThePaperTheScaleHolds()
{
    QFETCH(QSize, size);
    QFETCH(double, ratio);
    PrintedPage page;
    page.title = "Mill town";
    page.picture = pictureWithTwoLines(size, ratio);
    page.pixelRatio = ratio;
    page.scale = 500;
    page.facts = {{"Sections", "12"}};
    page.date = "2026-11-21";

    const QImage paper = rendered(page);

    QVERIFY(!paper.isNull());
    QCOMPARE(paper.width(), 827);
    QVERIFY(qAbs(paper.height() - 1169) <= 1);
    // 100 pixels of the view are this long, whatever the window's size.
    const double apart = pixels(100.0 * 173.0375 / 613.0);
    const int row = int(pixels(34 + 20));
    double sum[2] = {0, 0};
    int count[2] = {0, 0};
    for (int x = 0; x < paper.width(); ++x) {
        const QColor colour = paper.pixelColor(x, row);
        if (colour.blue() > colour.red() + 150) {
            const int side = x < paper.width() / 2 ? 0 : 1;
            sum[side] += x + 0.5;
            ++count[side];
        }
    }
    QVERIFY(count[0] > 0 && count[1] > 0);
    const double first = sum[0] / count[0];
    const double second = sum[1] / count[1];
    // A pixel of the paper is more than one of the view.
    QVERIFY2(qAbs(second - first - apart) < 1.0, qPrintable(QString("%1 to %2").arg(first).arg(second)));
    QVERIFY(qAbs((first + second) / 2.0 - paper.width() / 2.0) < 1.5);
}

QTEST_MAIN(tst_PrintedPage)
#include "tst_PrintedPage.moc"
