#include "common/SceneTest.h"
#include "host_drawing/DxfText.h"
#include "plans/BackgroundDxf.h"
#include "view/SceneWindow.h"

#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

int pixelsLike(const QImage& image, const QRect& where, const std::function<bool(const QColor&)>& like)
{
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x)
            count += like(image.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
}

bool isRed(const QColor& colour)
{
    return colour.red() > 200 && colour.green() < 60 && colour.blue() < 60;
}

bool isBlue(const QColor& colour)
{
    return colour.blue() > 200 && colour.red() < 60 && colour.green() < 60;
}

} // namespace

/** Drawings on the screen. */
class tst_DrawingView : public QObject {
    Q_OBJECT

private slots:
    void linesFillsAndPointsAreSeenInTheirColours()
    {
        // A red frame of 40 m, a blue field in its north-east, a red point in the middle of its south-west.
        QByteArray entities;
        const double corners[5][2] = {{-20, -20}, {20, -20}, {20, 20}, {-20, 20}, {-20, -20}};
        for (int i = 0; i < 4; ++i)
            entities += Dxf::entity("LINE", i + 1,
                                    Dxf::pair(62, "1") + Dxf::at(10, corners[i][0], corners[i][1]) +
                                        Dxf::at(11, corners[i + 1][0], corners[i + 1][1]));
        entities += Dxf::entity("SOLID", 10,
                                Dxf::pair(62, "5") + Dxf::at(10, 5, 5) + Dxf::at(11, 15, 5) + Dxf::at(12, 5, 15) +
                                    Dxf::at(13, 15, 15));
        entities += Dxf::entity("POINT", 11, Dxf::pair(62, "1") + Dxf::at(10, -10, -10));
        lay(Dxf::drawing(entities));

        const QImage image = m_window.window()->grabWindow();

        save(image, "small");
        QVERIFY(pixelsLike(image, image.rect(), isRed) > 500);
        const int centreX = image.width() / 2;
        const int centreY = image.height() / 2;
        const QRect northEast(centreX, 0, centreX - 1, centreY);
        QCOMPARE(pixelsLike(image, image.rect(), isBlue), pixelsLike(image, northEast, isBlue));
        QVERIFY(pixelsLike(image, northEast, isBlue) > 1000);
        const QRect inSouthWest(centreX - 120, centreY + 20, 100, 100);
        QVERIFY(pixelsLike(image, inSouthWest, isRed) >= 9);
    }

    void aLargeDrawingIsSeenFromAfarAndFromNearBy()
    {
        QByteArray entities;
        for (int i = 0; i < 16000; ++i) {
            const double x = i % 200 * 0.2 - 20.0;
            const double y = i / 200 * 0.5 - 20.0;
            entities += Dxf::entity("LINE", i + 1, Dxf::pair(62, "1") + Dxf::at(10, x, y) + Dxf::at(11, x + 0.2, y));
        }
        lay(Dxf::drawing(entities));
        const QImage far = m_window.window()->grabWindow();
        look(1.0F);
        QTest::qWait(1000);
        const QImage near = m_window.window()->grabWindow();

        save(far, "far");
        save(near, "near");
        QVERIFY(pixelsLike(far, far.rect(), isRed) > 5000);
        const int seenNear = pixelsLike(near, near.rect(), isRed);
        QVERIFY2(seenNear > 500 && seenNear < 50000, qPrintable(QString::number(seenNear)));
    }

    void aRealDrawingIsSeen()
    {
        const QString path = realFile("dxf/floorplan_AC1018.dxf");
        if (path.isEmpty())
            QSKIP("the folder of real drawings is not there");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        lay(file.readAll());
        look(500.0F);
        QTest::qWait(500);

        const QImage image = m_window.window()->grabWindow();

        save(image, "floorplan");
        const QColor empty = image.pixelColor(2, 2);
        QVERIFY(pixelsLike(image, image.rect(), [&](const QColor& colour) { return colour != empty; }) > 5000);
    }

private:
    void lay(const QByteArray& text)
    {
        delete m_plan;
        look(50.0F);
        m_plan = new BackgroundDxf(written(m_folder, "plan.dxf", text), m_window.root());
        QSignalSpy finished(m_plan, &IBackgroundPlan::backgroundLoadingFinished);
        m_plan->load();
        QVERIFY(finished.wait(20000));
        m_plan->setPosition({0.0F, 0.0F, 0.0F}, 0);
        QTest::qWait(500);
    }

    /** Straight down from so high that the view is about as high as that, north at the top. */
    void look(float height)
    {
        const float distance = height / (2.0F * std::tan(m_window.camera()->fieldOfView() * 3.14159265F / 360.0F));
        m_window.look({0.0F, distance, 0.0F}, {0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 1.0F});
    }

    /** For whoever wants to look at what the test has seen. */
    static void save(const QImage& image, const QString& name)
    {
        const QString folder = qEnvironmentVariable("KX_KEEP_PICTURES");
        if (!folder.isEmpty())
            image.save(folder + QLatin1Char('/') + name + QStringLiteral(".png"));
    }

    QTemporaryDir m_folder;
    SceneWindow m_window;
    BackgroundDxf* m_plan = nullptr;
};

KX_SCENE_TEST_MAIN(tst_DrawingView)
#include "tst_DrawingView.moc"
