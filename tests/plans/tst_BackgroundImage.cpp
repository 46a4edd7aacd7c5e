#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "geo/GdalGeoProjector.h"
#include "network/LowestManholeTracker.h"
#include "plans/BackgroundImage.h"
#include "plans/PaintedTextureImage.h"
#include "scene/SceneRoot.h"

#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <Qt3DExtras/QPlaneMesh>
#include <Qt3DExtras/QTextureMaterial>
#include <Qt3DRender/QTexture>
#include <QtTest>

#include <ctime>
#include <memory>

using namespace Torvik::View3d;
using Kx::Test::LogCapture;
using Kx::Test::TestProject;
using Torvik::Base::CErrorCode;

namespace {

const QString category = QStringLiteral("Torvik::BackgroundImage");

/** What a plan tells while it loads, in its order. */
class Told {
public:
    explicit Told(IBackgroundPlan* plan)
    {
        QObject::connect(plan, &IBackgroundPlan::backgroundLoadingFinished, &m_here, [this](IBackgroundPlan* finished) {
            m_lines << QStringLiteral("finished %1").arg(finished->isEnabled());
        });
        QObject::connect(plan, &IBackgroundPlan::fileCorrupted, &m_here, [this](CErrorCode error) {
            m_lines << QStringLiteral("corrupted %1").arg(error.code(), 0, 16);
        });
        QObject::connect(plan, &IBackgroundPlan::fileTooLarge, &m_here, [this](const SizeInfo& size) {
            m_lines << QStringLiteral("too large %1 x %2").arg(size.currentWidth).arg(size.currentHeight);
        });
        QObject::connect(plan, &IBackgroundPlan::backgroundLoadingWasCancelled, &m_here,
                         [this] { m_lines << QStringLiteral("cancelled"); });
        QObject::connect(plan, &IBackgroundPlan::progressChanged, &m_here,
                         [this] { m_lines << QStringLiteral("progress"); });
    }
    const QStringList& lines() const { return m_lines; }

private:
    QObject m_here;
    QStringList m_lines;
};

/** Processor time of this thread. */
double threadMs()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) * 1e-6;
}

} // namespace

/** A picture under the network: what it tells while it loads, and how it lies. */
class tst_BackgroundImage : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        GdalGeoProjector::instance()->deinit();
        m_root = std::make_unique<SceneRoot>();
        m_camera = std::make_unique<Qt3DRender::QCamera>();
        m_camera->setPosition({120.0F, 200.0F, -40.0F});
        m_camera->setViewCenter({120.0F, 0.0F, -30.0F});
        m_root->setCamera(m_camera.get());
    }

    void cleanup()
    {
        m_root->setCamera(nullptr);
        m_root.reset();
        m_camera.reset();
        GdalGeoProjector::instance()->deinit();
    }

    void aNewPictureIsHiddenAndHasNoPath()
    {
        const BackgroundImage plan(picture(20, 10), m_root.get());

        QVERIFY(!plan.isEnabled());
        QCOMPARE(plan.fullPath(), QString());
        QCOMPARE(plan.renderableType(), QStringLiteral("imagebackground"));
        QCOMPARE(plan.objectName(), QStringLiteral("Background Plan - Image"));
        QCOMPARE(plan.getAdditionalTranslationCorrect(), QVector3D());
        QCOMPARE(BackgroundImage::get3dOneMeter(), 1.0F);
    }

    void aPictureComesToLieUnderTheMiddleOfTheView()
    {
        const QString path = picture(20, 10);
        BackgroundImage plan(path, m_root.get());
        const Told told(&plan);

        plan.load();
        QCOMPARE(told.lines(), QStringList());
        QTRY_VERIFY(!told.lines().isEmpty());

        QCOMPARE(told.lines(), QStringList {QStringLiteral("finished 1")});
        QCOMPARE(plan.fullPath(), path);
        QCOMPARE(plan.fileName(), QFileInfo(path).fileName());
        QCOMPARE(plan.position(), QVector3D(120.0F, 0.0F, -30.0F));
    }

    void aPictureThatHasLoadedIsRememberedInTheCamera()
    {
        BackgroundImage plan(picture(20, 10), m_root.get());
        load(plan);

        m_camera->translateWorld({5.0F, 0.0F, 0.0F});
        plan.planTransformUpdate();

        QVERIFY((plan.position() - QVector3D(125.0F, 0.0F, -30.0F)).length() < 1e-3F);
    }

    void withoutACameraAPictureLiesAtTheLowestObject()
    {
        m_root->setCamera(nullptr);
        TestProject project(QStringLiteral("EPSG:25832"));
        m_root->qmlOnCompleted();
        project.activate();
        project.addNode(QStringLiteral("A"), QStringLiteral("POINT ZM(570000 5830000 40 16)"),
                        {{"OBJ_DepthToInvert", 3.0}});
        QCoreApplication::processEvents();
        const float lowest = LowestManholeTracker::instance()->getCurrentLowestY();
        QVERIFY(lowest < -1.0F);

        BackgroundImage plan(picture(20, 10), m_root.get());
        load(plan);

        QCOMPARE(plan.position(), QVector3D(0.0F, lowest, 0.0F));
        project.close();
    }

    void theLongerSideIsAHundredMetres_data()
    {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QSizeF>("metres");
        QTest::newRow("wide") << QSize(2000, 1000) << 1.0 << QSizeF(100.0, 50.0);
        QTest::newRow("high") << QSize(1000, 2000) << 1.0 << QSizeF(50.0, 100.0);
        QTest::newRow("square") << QSize(30, 30) << 1.0 << QSizeF(100.0, 100.0);
    }

    void theLongerSideIsAHundredMetres()
    {
        QFETCH(QSize, pixels);
        QFETCH(QSizeF, metres);
        BackgroundImage plan(picture(pixels.width(), pixels.height()), m_root.get());
        load(plan);

        const auto* const mesh = plan.findChild<Qt3DExtras::QPlaneMesh*>();
        QVERIFY(mesh);
        QCOMPARE(QSizeF(double(mesh->width()), double(mesh->height())), metres);
        QCOMPARE(plan.getAdditionalTranslationCorrect(),
                 QVector3D(float(metres.width()) * 0.5F, 0.0F, float(metres.height()) * -0.5F));
    }

    void theProjectorsScaleStretchesThePicture()
    {
        QString system;
        GdalGeoProjector::instance()->init(Torvik::Database::WktPoint(QStringLiteral("POINT ZM(1113194 6800125 0 0)")),
                                           system);
        const double scale = GdalGeoProjector::instance()->scale();
        QVERIFY(qAbs(scale - 1.0) > 0.1);
        BackgroundImage plan(picture(20, 10), m_root.get());
        load(plan);

        QCOMPARE(plan.findChild<Qt3DExtras::QPlaneMesh*>()->width(), float(scale) * 100.0F);
    }

    void thePictureIsTheTextureOfThePlane()
    {
        BackgroundImage plan(picture(20, 10), m_root.get());
        load(plan);

        const auto* const mesh = plan.findChild<Qt3DExtras::QPlaneMesh*>();
        const auto* const material = plan.findChild<Qt3DExtras::QTextureMaterial*>();
        QVERIFY(mesh && material);
        const auto* const plane = mesh->entities().value(0);
        QCOMPARE(plane->parentNode(), static_cast<Qt3DCore::QNode*>(&plan));
        QCOMPARE(material->entities().value(0), plane);
        QCOMPARE(plane->componentsOfType<Qt3DCore::QTransform>().value(0)->rotationY(), 180.0F);
        const auto images = material->texture()->textureImages();
        QCOMPARE(images.size(), 1);
        const auto* const image = qobject_cast<PaintedTextureImage*>(images.first());
        QVERIFY(image);
        QCOMPARE(image->size(), QSize(20, 10));
    }

    void aPictureThatIsTooLargeIsToldAndThenCancelled()
    {
        const LogCapture log;
        BackgroundImage plan(picture(4049, 1), m_root.get());
        const Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines().size(), 2);

        QCOMPARE(told.lines(), (QStringList {QStringLiteral("too large 4049 x 1"), QStringLiteral("cancelled")}));
        QVERIFY(!plan.isEnabled());
        QCOMPARE(plan.fullPath(), QString());
        QVERIFY(log.lines().isEmpty());
    }

    void anUnreadablePictureIsToldAndThenCancelled()
    {
        const LogCapture log;
        const QString path = m_folder.filePath(QStringLiteral("broken.png"));
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        BackgroundImage plan(path, m_root.get());
        const Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines().size(), 2);

        QCOMPARE(told.lines(), (QStringList {QStringLiteral("corrupted 150201"), QStringLiteral("cancelled")}));
        QCOMPARE(log.count(1, category, QStringLiteral("Failed to load image from path: ") + path), 1);
        QVERIFY(!plan.isEnabled());
    }

    void cancellingSaysSoAndLetsTheReadingFinish()
    {
        BackgroundImage plan(picture(20, 10), m_root.get());
        const Told told(&plan);

        plan.load();
        plan.cancelFileLoading();
        QCOMPARE(told.lines(), QStringList {QStringLiteral("cancelled")});
        QTRY_COMPARE(told.lines().size(), 2);

        QCOMPARE(told.lines().last(), QStringLiteral("finished 1"));
    }

    void aPlanThatIsDeletedWhileItLoadsTellsNothing()
    {
        auto plan = std::make_unique<BackgroundImage>(picture(4000, 4000), m_root.get());
        const Told told(plan.get());

        plan->load();
        plan.reset();
        QTest::qWait(50);

        QCOMPARE(told.lines(), QStringList());
    }

    void aPictureThatIsDeletedWhileItLoadsStillLoadsOrIsUnreadable()
    {
        const QString path = picture(3000, 3000);
        BackgroundImage plan(path, m_root.get());
        const Told told(&plan);

        plan.load();
        QVERIFY(QFile::remove(path));
        QTRY_VERIFY_WITH_TIMEOUT(!told.lines().isEmpty(), 20000);

        QVERIFY(told.lines() == QStringList {QStringLiteral("finished 1")} ||
                told.lines() == QStringList({QStringLiteral("corrupted 150201"), QStringLiteral("cancelled")}));
    }

    void theLargestPictureHoldsTheMainThreadForAMomentOnly()
    {
        BackgroundImage plan(picture(4048, 4048), m_root.get());
        const Told told(&plan);
        double longest = 0.0;
        double last = threadMs();
        QTimer beat;
        connect(&beat, &QTimer::timeout, this, [&] {
            const double now = threadMs();
            longest = qMax(longest, now - last);
            last = now;
        });
        beat.start(0);
        const double begin = threadMs();

        plan.load();
        const double started = threadMs() - begin;
        QTRY_VERIFY_WITH_TIMEOUT(!told.lines().isEmpty(), 60000);
        QTest::qWait(20);

        QVERIFY2(started < 50.0, qPrintable(QString::number(started)));
        QVERIFY2(longest < 50.0, qPrintable(QString::number(longest)));
    }

private:
    QString picture(int width, int height)
    {
        const QString path = m_folder.filePath(QStringLiteral("picture %1x%2.png").arg(width).arg(height));
        if (!QFile::exists(path)) {
            QImage image(width, height, QImage::Format_RGB32);
            image.fill(Qt::yellow);
            image.save(path, "PNG", 90);
        }
        return path;
    }

    static void load(IBackgroundPlan& plan)
    {
        QSignalSpy finished(&plan, &IBackgroundPlan::backgroundLoadingFinished);
        plan.load();
        QTRY_COMPARE(finished.count(), 1);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<Qt3DRender::QCamera> m_camera;
};

QTEST_MAIN(tst_BackgroundImage)
#include "tst_BackgroundImage.moc"
