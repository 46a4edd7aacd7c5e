#include "labels/LabelLook.h"

#include <QImage>
#include <QPainter>
#include <QtTest>

#include <algorithm>

using namespace Torvik::View3d;

namespace {

QImage painted(const QString& name, int height)
{
    const QFont font(QStringLiteral("DejaVu Sans Mono"), 24);
    QImage picture(qRound(aspectOf(name, font) * static_cast<float>(height)), height, QImage::Format_RGB32);
    QPainter painter(&picture);
    paintLabel(painter, picture.size(), {name, font, Qt::white, Qt::black, false});
    return picture;
}

int brightestOf(const QImage& picture, int row)
{
    int brightest = 0;
    for (int x = 0; x < picture.width(); ++x)
        brightest = std::max(brightest, qGray(picture.pixel(x, row)));
    return brightest;
}

} // namespace

/** What is painted on a label. */
class tst_LabelLook : public QObject {
    Q_OBJECT

private slots:
    void anUnderscoreStandsAboveTheLastRow_data();
    void anUnderscoreStandsAboveTheLastRow();
};

void tst_LabelLook::anUnderscoreStandsAboveTheLastRow_data()
{
    QTest::addColumn<int>("height");
    for (const int height : {16, 20, 22, 23, 24, 25, 26, 32, 48})
        QTest::addRow("%d pixels", height) << height;
}

void tst_LabelLook::anUnderscoreStandsAboveTheLastRow()
{
    QFETCH(const int, height);

    const QImage name = painted(QStringLiteral("___"), height);

    QCOMPARE(brightestOf(name, height - 1), 0);
    int brightest = 0;
    for (int row = height / 2; row < height; ++row)
        brightest = std::max(brightest, brightestOf(name, row));
    QVERIFY2(brightest > 100, qPrintable(QString::number(brightest)));
}

QTEST_MAIN(tst_LabelLook)
#include "tst_LabelLook.moc"
