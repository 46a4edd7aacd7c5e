#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "plans/BackgroundImagePdf.h"
#include "plans/BackgroundLoader.h"
#include "plans/FakeConverter.h"
#include "plans/FloorNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::FakeConverter;
using Kx::Test::LogCapture;
using Kx::Test::TestProject;
using Torvik::Base::CErrorCode;
using Torvik::Base::CFileSystemNames;

namespace {

const QString category = QStringLiteral("Torvik::BackgroundImagePdf");

class Told {
public:
    explicit Told(IBackgroundPlan* plan)
    {
        const auto note = [this](const QString& line) { lines << line; };
        QObject::connect(plan, &IBackgroundPlan::backgroundLoadingFinished, &m_here, [note] { note("finished"); });
        QObject::connect(plan, &IBackgroundPlan::fileCorrupted, &m_here,
                         [note](CErrorCode error) { note(QString("corrupted %1").arg(error.code(), 0, 16)); });
        QObject::connect(plan, &IBackgroundPlan::pdfConverterProblem, &m_here,
                         [note](CErrorCode error) { note(QString("converter %1").arg(error.code(), 0, 16)); });
        QObject::connect(plan, &IBackgroundPlan::fileTooLarge, &m_here,
                         [note](const SizeInfo& size) { note(QString("too large %1").arg(size.currentWidth)); });
        QObject::connect(plan, &IBackgroundPlan::backgroundLoadingWasCancelled, &m_here, [note] { note("cancelled"); });
    }
    QStringList lines;

private:
    QObject m_here;
};

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/** A PDF becomes a picture in the project, and then a plan. */
class tst_BackgroundImagePdf : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<SceneRoot>();
        m_project = std::make_unique<TestProject>();
        m_project->activate();
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(documentation()));
    }

    void cleanup()
    {
        m_root.reset();
        m_project.reset();
    }

    void thePictureStandsInTheDocumentation_data()
    {
        QTest::addColumn<QString>("pdf");
        QTest::addColumn<QString>("png");
        QTest::addColumn<QString>("root");
        const QString folder = "P/" + CFileSystemNames::documentationPathPart();
        QTest::newRow("plain") << "/a/plan.pdf" << folder + "plan.png" << folder + "plan";
        QTest::newRow("inner dots") << "/a/plan.v1.pdf.pdf" << folder + "plan.v1.pdf.png" << folder + "plan.v1.pdf";
        QTest::newRow("upper case") << "/a/PLAN.PDF" << folder + "PLAN.png" << folder + "PLAN";
        QTest::newRow("no folder") << "plan.pdf" << folder << folder;
    }

    void thePictureStandsInTheDocumentation()
    {
        QFETCH(QString, pdf);

        QTEST(BackgroundImagePdf::fullPathForImageInProjectDirectory(pdf, "P/", false), "png");
        QTEST(BackgroundImagePdf::fullPathForImageInProjectDirectory(pdf, "P/", true), "root");
    }

    void aPdfBecomesAPictureOfTheProject()
    {
        const QString pdf = page("site plan.v1.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);
        QCOMPARE(plan.renderableType(), QStringLiteral("pdfimagebackground"));
        QCOMPARE(plan.objectName(), QStringLiteral("Background Plan - PdfImage"));

        plan.load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines.size(), 1, 20000);

        QCOMPARE(told.lines, QStringList("finished"));
        QCOMPARE(plan.fullPath(), documentation() + "site plan.v1.png");
        QVERIFY(plan.isEnabled());
        QVERIFY(!QFile::exists(pdf));
        // A4 at 80 dots per inch.
        QCOMPARE(QImage(plan.fullPath()).size(), QSize(662, 936));
    }

    void aNameWithQuotesSurvives()
    {
        BackgroundImagePdf plan(page("the \"new\" one.pdf"), path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("finished"), 20000);
    }

    void thePdfAndWhereThePictureGoesAreTheCommandsArguments()
    {
        const FakeConverter fake("printf '%s\\n' \"$@\" > \"" + QFile::encodeName(m_folder->path()) + "/arguments\"");
        const QString pdf = page("a b.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("corrupted 150201"));

        QCOMPARE(content(m_folder->filePath("arguments")),
                 QFile::encodeName("-r\n80\n-png\n-singlefile\n" + pdf + "\n" + documentation() + "a b\n"));
    }

    void aBrokenPdfIsUnreadableAndGone()
    {
        const LogCapture log;
        const QString pdf = m_folder->filePath("broken.pdf");
        QVERIFY(QFile(pdf).open(QIODevice::WriteOnly));
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines.size(), 1, 20000);
        QTest::qWait(20);

        QCOMPARE(told.lines, QStringList("corrupted 150201"));
        QVERIFY(!QFile::exists(pdf));
        QCOMPARE(log.count(2, category, "Failed to load image from path: " + documentation() + "broken.png"), 1);
    }

    void anEndingInUpperCaseIsUnreadableAndStays()
    {
        const LogCapture log;
        const QString pdf = page("PLAN.PDF");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("corrupted 150201"));

        QVERIFY(QFile::exists(pdf));
        QCOMPARE(log.count(2, category, "Failed to load image from path: "), 1);
    }

    void aPageThatIsTooLargeIsToldAndThePdfGone()
    {
        const QString pdf = page("large.pdf", QPageSize(QSizeF(60, 10), QPageSize::Inch));
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("too large 4800"), 20000);

        QVERIFY(!QFile::exists(pdf));
    }

    void aMissingConverterIsTold()
    {
        const LogCapture log;
        const QByteArray before = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_folder->path()));
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("converter 150202"));
        qputenv("PATH", before);

        QVERIFY(QFile::exists(pdf));
        QVERIFY(log.lines().isEmpty());
    }

    void aConverterThatCrashesIsTold()
    {
        const FakeConverter fake("kill -SEGV $$");
        const LogCapture log;
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("converter 150202"));

        QVERIFY(QFile::exists(pdf));
        QCOMPARE(log.count(1, category,
                           QStringLiteral("Failed to execute PDF to PNG conversion command (exit code was 11): "
                                          "pdftoppm -r 80 -png -singlefile \"%1\" \"%2plan\"")
                               .arg(pdf, documentation())),
                 1);
    }

    void cancellingTheConversionIsToldOnce()
    {
        const FakeConverter fake("exec sleep 60");
        const LogCapture log;
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);
        plan.load();
        QTest::qWait(50);

        plan.cancelFileLoading();
        QTRY_COMPARE(told.lines, QStringList("cancelled"));
        QTest::qWait(50);

        QCOMPARE(told.lines, QStringList("cancelled"));
        QVERIFY(QFile::exists(pdf));
        QVERIFY(log.lines().isEmpty());
    }

    void aConverterThatHearsNoCancellationIsEnded()
    {
        const FakeConverter fake("trap '' TERM; while true; do sleep 0.1; done");
        BackgroundImagePdf plan(page("plan.pdf"), path(), m_root.get());
        Told told(&plan);
        plan.load();
        QTest::qWait(100);

        plan.cancelFileLoading();

        QTRY_COMPARE(told.lines, QStringList("cancelled"));
    }

    void cancellingBeforeLoadingIsNothing()
    {
        BackgroundImagePdf plan(page("plan.pdf"), path(), m_root.get());
        Told told(&plan);

        plan.cancelFileLoading();

        QCOMPARE(told.lines, QStringList());
    }

    void aPlanThatIsDeletedDuringTheConversionEndsIt()
    {
        const FakeConverter fake("exec sleep 60");
        const QString pdf = page("plan.pdf");
        auto plan = std::make_unique<BackgroundImagePdf>(pdf, path(), m_root.get());
        Told told(plan.get());
        plan->load();
        QTest::qWait(50);
        QElapsedTimer passed;
        passed.start();

        plan.reset();

        QVERIFY(passed.elapsed() < 1000);
        QCOMPARE(told.lines, QStringList());
        QVERIFY(QFile::exists(pdf));
    }

    void aPictureOfTheSameNameIsBackWhenNoPlanComes_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("crash after half a picture") << QByteArray("echo half > \"$6.png\"; kill -SEGV $$");
        QTest::newRow("no picture") << QByteArray("exit 1");
        QTest::newRow("rubbish") << QByteArray("echo rubbish > \"$6.png\"");
    }

    void aPictureOfTheSameNameIsBackWhenNoPlanComes()
    {
        QFETCH(QByteArray, script);
        putBefore();
        const FakeConverter fake(script);
        BackgroundImagePdf plan(page("plan.pdf"), path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines.size(), 1);
        QTest::qWait(10);

        QCOMPARE(content(documentation() + "plan.png"), QByteArray("the plan before"));
        QCOMPARE(QDir(documentation()).entryList(QDir::Files), QStringList("plan.png"));
    }

    void aPlanTakesThePlaceOfAPictureOfTheSameName()
    {
        putBefore();
        auto* const plan = new BackgroundImagePdf(page("plan.pdf"), path(), m_root.get());
        Told told(plan);

        plan->load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("finished"), 20000);
        SceneEntities::instance().setBackgroundPlan(plan);
        QCOMPARE(pictures(), QStringList("plan.png"));
        SceneEntities::instance().deleteBackgroundPlan();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

        QCOMPARE(pictures(), QStringList("plan.png"));
        QCOMPARE(QImage(documentation() + "plan.png").size(), QSize(662, 936));
    }

    void aPlanOfAFloorTakesThePlaceOfAPictureOfTheSameName()
    {
        putBefore();
        auto* const plan = new BackgroundImagePdf(page("plan.pdf"), path(), m_root.get());
        Told told(plan);

        plan->load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("finished"), 20000);
        FloorNav::instance().setFloorPlan(1, plan);
        QCOMPARE(pictures(), QStringList("plan.png"));
        FloorNav::instance().setFloorPlan(1, nullptr);
    }

    void aPlanThatIsRefusedLeavesThePictureOfTheSameName()
    {
        putBefore();
        auto plan = std::make_unique<BackgroundImagePdf>(page("plan.pdf"), path(), m_root.get());
        Told told(plan.get());

        plan->load();
        QTRY_COMPARE_WITH_TIMEOUT(told.lines, QStringList("finished"), 20000);
        plan.reset();

        QCOMPARE(content(documentation() + "plan.png"), QByteArray("the plan before"));
        QCOMPARE(pictures(), (QStringList {"plan-1.png", "plan.png"}));
        QCOMPARE(QImage(documentation() + "plan-1.png").size(), QSize(662, 936));
    }

    void aPlanThatIsDeletedWhileItsPictureIsDecodedLosesNoPicture()
    {
        QImage large(4000, 4000, QImage::Format_RGB32);
        large.fill(Qt::yellow);
        QVERIFY(large.save(m_folder->filePath("large.png")));
        const FakeConverter fake("cp \"" + QFile::encodeName(m_folder->filePath("large.png")) + "\" \"$6.png\"");
        putBefore();
        const QString pdf = page("plan.pdf");
        auto plan = std::make_unique<BackgroundImagePdf>(pdf, path(), m_root.get());
        Told told(plan.get());

        plan->load();
        QTRY_VERIFY(!QFile::exists(pdf));
        QCOMPARE(told.lines, QStringList());
        plan.reset();

        QCOMPARE(content(documentation() + "plan.png"), QByteArray("the plan before"));
        QCOMPARE(pictures(), (QStringList {"plan-1.png", "plan.png"}));
        QCOMPARE(QImage(documentation() + "plan-1.png").size(), QSize(4000, 4000));
    }

    void aConverterThatIsEndedBySomebodyElseIsTold()
    {
        const FakeConverter fake("kill -TERM $$");
        const LogCapture log;
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("converter 150202"));

        QVERIFY(QFile::exists(pdf));
        QVERIFY(log.lines().isEmpty());
    }

    void aConverterThatEndsWellWhenItIsCancelledLeavesThePdf()
    {
        const FakeConverter fake("trap 'exit 0' TERM; echo whole > \"$6.png\"; while true; do sleep 0.05; done");
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);
        plan.load();
        QTRY_COMPARE(pictures(), QStringList("plan.png"));

        plan.cancelFileLoading();
        QTRY_COMPARE(told.lines, QStringList("cancelled"));
        QTest::qWait(50);

        QCOMPARE(told.lines, QStringList("cancelled"));
        QVERIFY(QFile::exists(pdf));
    }

    void aWholePictureIsTakenWhateverTheConverterSays()
    {
        QImage small(40, 30, QImage::Format_RGB32);
        small.fill(Qt::yellow);
        QVERIFY(small.save(m_folder->filePath("small.png")));
        const FakeConverter fake("cp \"" + QFile::encodeName(m_folder->filePath("small.png")) +
                                 "\" \"$6.png\"; exit 3");
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("finished"));

        QVERIFY(!QFile::exists(pdf));
    }

    void aPdfThatCannotBeRemovedIsLoggedAndThePlanComes()
    {
        QImage small(40, 30, QImage::Format_RGB32);
        small.fill(Qt::yellow);
        QVERIFY(small.save(m_folder->filePath("small.png")));
        const FakeConverter fake("cp \"" + QFile::encodeName(m_folder->filePath("small.png")) +
                                 "\" \"$6.png\"; rm \"$5\"");
        const LogCapture log;
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("finished"));

        QCOMPARE(log.count(1, category, "Failed to remove pdf file: \"" + pdf + "\""), 1);
        QCOMPARE(plan.fullPath(), documentation() + "plan.png");
    }

    void cancellingWhileThePictureIsDecodedIsToldOnce()
    {
        QImage large(4000, 4000, QImage::Format_RGB32);
        large.fill(Qt::yellow);
        QVERIFY(large.save(m_folder->filePath("large.png")));
        const FakeConverter fake("cp \"" + QFile::encodeName(m_folder->filePath("large.png")) + "\" \"$6.png\"");
        const QString pdf = page("plan.pdf");
        auto plan = std::make_unique<BackgroundImagePdf>(pdf, path(), m_root.get());
        Told told(plan.get());
        plan->load();
        QTRY_VERIFY(!QFile::exists(pdf));
        QCOMPARE(told.lines, QStringList());

        plan->cancelFileLoading();
        plan->cancelFileLoading();
        QCOMPARE(told.lines, QStringList("cancelled"));
        plan.reset();
        QTest::qWait(50);

        QCOMPARE(told.lines, QStringList("cancelled"));
        QCOMPARE(QImage(documentation() + "plan.png").size(), QSize(4000, 4000));
    }

    void halfAPictureIsNotLeftBehind()
    {
        const FakeConverter fake("echo half > \"$6.png\"; exec sleep 60");
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, path(), m_root.get());
        Told told(&plan);
        plan.load();
        QTRY_COMPARE(pictures(), QStringList("plan.png"));

        plan.cancelFileLoading();
        QTRY_COMPARE(told.lines, QStringList("cancelled"));

        QCOMPARE(pictures(), QStringList());
        QVERIFY(QFile::exists(pdf));
    }

    void withoutAProjectThePdfStays()
    {
        const QString pdf = page("plan.pdf");
        BackgroundImagePdf plan(pdf, QString(), m_root.get());
        Told told(&plan);

        plan.load();
        QTRY_COMPARE(told.lines, QStringList("converter 150202"));

        QVERIFY(QFile::exists(pdf));
    }

    void theLoaderMakesPdfPlansAndGoesIdleWhenTheyFail()
    {
        const FakeConverter fake("exit 1");
        const QObject here;
        QStringList lines;
        PlanLoader& loader = *m_root->planLoader();
        connect(&loader, &PlanLoader::corruptedPlanFile, &here, [&] { lines << "corrupted"; });
        connect(&loader, &PlanLoader::cancelFinished, &here, [&] { lines << "cancelled"; });

        loader.loadPlan(page("plan.pdf"));
        QVERIFY(loader.planLoading());
        QTRY_VERIFY(!loader.planLoading());

        QCOMPARE(lines, QStringList("corrupted"));
    }

private:
    QString path() const { return m_project->project()->projectPath(); }
    QString documentation() const { return path() + CFileSystemNames::documentationPathPart(); }

    QStringList pictures() const { return QDir(documentation()).entryList(QDir::Files); }

    void putBefore() const
    {
        QFile before(documentation() + "plan.png");
        QVERIFY(before.open(QIODevice::WriteOnly) && before.write("the plan before") > 0);
    }

    QString page(const QString& name, const QPageSize& size = QPageSize(QPageSize::A4)) const
    {
        const QString file = m_folder->filePath(name);
        QPdfWriter writer(file);
        writer.setPageSize(size);
        QPainter(&writer).drawEllipse(QPoint(2000, 2000), 1000, 1000);
        return file;
    }

    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(tst_BackgroundImagePdf)
#include "tst_BackgroundImagePdf.moc"
