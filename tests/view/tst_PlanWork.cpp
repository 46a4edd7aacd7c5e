#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "domain/boundary/BaseServices.h"
#include "host/app/PlanWork.h"
#include "host/app/ViewerController.h"
#include "host_drawing/DxfText.h"
#include "plans/FloorNav.h"
#include "scene/SceneEntities.h"
#include "view/ViewerScreen.h"

#include <QImage>
#include <QPainter>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::Base::CFileSystemNames;
using Torvik::Viewer::PlanWork;
using Torvik::Viewer::ViewerController;

/** A plan from the file to its place: in the application's window, on a real project. The tests follow one another. */
class tst_PlanWork : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void theBarOpensWithoutAPlan();
    void whatCannotBeAPlanIsRefusedInWords();
    void aPictureIsLaidAndTheFileStaysWhereItWas();
    void anotherIsAskedFor();
    void aLoadThatIsCancelledLeavesTheOldPlan();
    void aDrawingThatCannotBeReadIsExplained();
    void aDamagedPictureIsExplained();
    void aPictureThatIsTooLargeIsExplained();
    void twoLinesPlaceIt();
    void aLineAndItsLengthScaleIt();
    void aLengthOfNothingChangesNothing();
    void twoPointsTurnItNorth();
    void placingIsCancelledAndTakenBackAStep();
    void lockedItMovesWithTheView();
    void aDrawingComesToItsFloor();
    void floorsLieAtTheirHeights();
    void reopenedThePlanLiesWhereItWas();
    void anotherTakesItsPlace();
    void removedItIsGoneForGood();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }

private:
    PlanWork& plans() { return *m_viewer->plans(); }
    static IBackgroundPlan* plan() { return SceneEntities::instance().getBackgroundPlan(); }
    QString folder(const QString& part) const { return m_folderOfProject + '/' + part; }
    QString documents() const { return folder(CFileSystemNames::documentationPathPart()); }

    QString picture(const QString& name, QSize size = {400, 300}) const;
    QString drawing(const QString& name) const;
    QString file(const QString& name, const QByteArray& contents) const;

    void choose(const QString& path);
    /** What the box on top says; it is answered with the button of that name. */
    QString answer(const QString& button = QStringLiteral("yesButton"));
    void lay(const QString& path, bool replaces);
    void open();
    /** A place of the scene with no object near, by parts of its width and height. */
    QPointF at(double across, double down) const
    {
        return {m_screen->scene()->width() * across, m_screen->scene()->height() * down};
    }
    QVector3D ground(QPointF pixel) const
    {
        return m_screen->groundAt(m_screen->inWindow(pixel) - m_screen->scene()->mapToScene({0, 0}));
    }
    /** Taps there and gives the place on the ground, as the scene is now: it grows while lines are tapped. */
    QVector3D tapAt(double across, double down)
    {
        const QPointF pixel = at(across, down);
        const QVector3D place = ground(pixel);
        m_screen->tap(pixel);
        return place;
    }
    void begin(const QString& button)
    {
        m_screen->click(button);
        m_screen->waitFrames(4);
    }
    /** What a tap that is off by a pixel makes. */
    float pixel() const { return (ground(at(0.5, 0.5)) - ground(at(0.5, 0.5) + QPointF(2, 2))).length(); }
    /** Where a point that lay there when `before` was the plan's matrix lies now. */
    static QVector3D moved(const QMatrix4x4& before, QVector3D point)
    {
        const float y = before(1, 3);
        point.setY(y);
        QVector3D now = (plan()->transformMatrix() * before.inverted()).map(point);
        now.setY(0.0F);
        return now;
    }
    static bool near(const QVector3D& a, const QVector3D& b, float tolerance)
    {
        if ((a - b).length() <= tolerance)
            return true;
        qWarning() << a << "is not near" << b;
        return false;
    }
    void compareMatrices(const QMatrix4x4& now, const QMatrix4x4& before)
    {
        for (int i = 0; i < 16; ++i)
            QVERIFY2(qAbs(now.constData()[i] - before.constData()[i]) < 2e-3F, qPrintable(QString::number(i)));
    }

    QTemporaryDir m_files;
    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<TestProject> m_project;
    QString m_folderOfProject;
    std::unique_ptr<ViewerController> m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
};

void tst_PlanWork::initTestCase()
{
    m_warnings = std::make_unique<QmlWarnings>();
    m_project = std::make_unique<TestProject>("EPSG:25832");
    const QVariantMap manhole {{"OBJ_DepthToInvert", 2.0}, {"OBJ_Type", "MH"}};
    const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", manhole);
    const auto b = m_project->addNode("B", "POINT ZM(400030 5600000 100 16)", manhole);
    m_project->addNode("C", "POINT ZM(400015 5600020 100 16)", manhole);
    const auto s = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 1000}});
    m_project->addInspection(s, "LINESTRING ZM(400030 5600000 98 320,400000 5600000 98 0)");
    m_folderOfProject = m_project->path();
    m_project->close();
    m_viewer = std::make_unique<ViewerController>();
    m_screen = std::make_unique<ViewerScreen>(*m_viewer, QSize(1200, 900));
    open();
}

void tst_PlanWork::open()
{
    QSignalSpy opened(m_viewer.get(), &ViewerController::opened);
    m_viewer->openFolder(m_folderOfProject);
    QTRY_COMPARE(opened.count(), 1);
    m_screen->settle();
    m_screen->waitFrames(10);
}

void tst_PlanWork::cleanup()
{
    QVERIFY(!m_screen->visible("messageBox"));
    QVERIFY(!m_screen->visible("backButton"));
    QVERIFY(!plans().loading());
    // The next tap is none that belongs to the one before.
    QTest::qWait(600);
}

void tst_PlanWork::cleanupTestCase()
{
    m_screen.reset();
    m_viewer.reset();
    m_warnings.reset();
}

QString tst_PlanWork::picture(const QString& name, QSize size) const
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor("#f4ecd8"));
    QPainter painter(&image);
    painter.setPen(QPen(QColor("#5a6b3b"), 4));
    for (int x = 0; x < size.width(); x += 50)
        painter.drawLine(x, 0, x, size.height());
    for (int y = 0; y < size.height(); y += 50)
        painter.drawLine(0, y, size.width(), y);
    painter.fillRect(60, 60, 130, 80, QColor("#c9805a"));
    painter.end();
    const QString path = m_files.filePath(name);
    return image.save(path) ? path : QString();
}

QString tst_PlanWork::file(const QString& name, const QByteArray& contents) const
{
    QFile file(m_files.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() ? file.fileName() : QString();
}

QString tst_PlanWork::drawing(const QString& name) const
{
    using namespace Kx::Test::Dxf;
    const QByteArray walls = line(0x20, 0, 0, 12, 0) + line(0x21, 12, 0, 12, 8) + line(0x22, 12, 8, 0, 8) +
                             line(0x23, 0, 8, 0, 0) + line(0x24, 6, 0, 6, 8);
    return file(name, head() + section("ENTITIES", walls) + pair(0, "EOF"));
}

void tst_PlanWork::choose(const QString& path)
{
    QVERIFY(QMetaObject::invokeMethod(m_screen->item("planBar"), "choose", Q_ARG(QVariant, QUrl::fromLocalFile(path))));
}

QString tst_PlanWork::answer(const QString& button)
{
    if (!QTest::qWaitFor([this] { return m_screen->visible("messageBox"); }, 15000))
        return QStringLiteral("no box");
    m_screen->waitFrames(2);
    const QString text = m_screen->text("messageText");
    m_screen->click(button);
    m_screen->waitFrames(2);
    return text;
}

void tst_PlanWork::lay(const QString& path, bool replaces)
{
    choose(path);
    if (replaces)
        QVERIFY(answer().contains("goes"));
    QVERIFY(m_screen->visible("backButton"));
    QCOMPARE(m_screen->text("progressLabel"), "Plan file loaded: " + QFileInfo(path).fileName());
    QVERIFY(answer().contains("loading finished"));
    QTRY_VERIFY(!m_screen->visible("backButton"));
}

void tst_PlanWork::theBarOpensWithoutAPlan()
{
    QVERIFY(!m_screen->visible("planBar"));

    m_screen->click("planButton");
    m_screen->waitFrames(2);

    QVERIFY(m_screen->visible("planBar"));
    QVERIFY(m_screen->enabled("planChooseButton"));
    QCOMPARE(m_screen->text("planName"), QString("No plan here"));
    for (const char* name :
         {"planTwoLinesButton", "planLengthButton", "planNorthButton", "planLockButton", "planRemoveButton"})
        QVERIFY2(!m_screen->enabled(name), name);
}

void tst_PlanWork::whatCannotBeAPlanIsRefusedInWords()
{
    const QString missing = m_files.filePath("missing.png");
    choose(missing);
    QVERIFY(answer().contains(missing));
    const QString text = file("notes.txt", "notes");
    choose(text);
    QVERIFY(answer().contains("PNG"));
    choose(m_files.path());
    QVERIFY(answer().contains("no such file"));
    QFile large(m_files.filePath("large.dxf"));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(52428801));
    choose(large.fileName());
    QVERIFY(answer().contains("50 MB"));
    QVERIFY(!m_screen->visible("backButton"));
}

void tst_PlanWork::aPictureIsLaidAndTheFileStaysWhereItWas()
{
    const QString source = picture("site a.png");

    lay(source, false);

    QVERIFY(plan());
    QCOMPARE(plan()->fullPath(), documents() + "site a.png");
    QVERIFY(QFile::exists(source));
    QVERIFY(QFile::exists(plan()->fullPath()));
    QVERIFY(QFile::exists(folder(CFileSystemNames::graphics3DPathPart()) + "plan.xml"));
    QCOMPARE(m_screen->text("planName"), QString("site a.png"));
    QVERIFY(m_screen->enabled("planTwoLinesButton"));
    m_screen->keep("plan-laid");
}

void tst_PlanWork::anotherIsAskedFor()
{
    const QPointer<IBackgroundPlan> old = plan();

    choose(picture("other.png"));
    QVERIFY(answer("noButton").contains("site a.png"));

    QVERIFY(!m_screen->visible("backButton"));
    QCOMPARE(plan(), old.data());
}

void tst_PlanWork::aLoadThatIsCancelledLeavesTheOldPlan()
{
    const QPointer<IBackgroundPlan> old = plan();
    const QStringList before = QDir(documents()).entryList(QDir::Files);

    choose(picture("cancelled.png", {4000, 4000}));
    answer();
    m_screen->keep("plan-loading");
    m_screen->click("backButton");

    QTRY_VERIFY(!plans().loading());
    QTRY_VERIFY(!m_screen->visible("backButton"));
    QCOMPARE(plan(), old.data());
    QCOMPARE(QDir(documents()).entryList(QDir::Files), before);
}

void tst_PlanWork::aDrawingThatCannotBeReadIsExplained()
{
    const QPointer<IBackgroundPlan> old = plan();

    choose(file("binary.dxf", QByteArray("AutoCAD Binary DXF\r\n\x1a\0", 22) + QByteArray(200, '\1')));
    answer();
    const QString text = answer();

    QVERIFY2(text.contains("binary.dxf") && text.contains("binary form") && text.contains("ASCII"), qPrintable(text));
    QTRY_VERIFY(!m_screen->visible("backButton"));
    QCOMPARE(plan(), old.data());
    QVERIFY(QFile::exists(old->fullPath()));
    QVERIFY2(m_viewer->errorText().isEmpty(), qPrintable(m_viewer->errorText()));
}

void tst_PlanWork::aDamagedPictureIsExplained()
{
    const QString source = file("damaged.png", "this is none");

    choose(source);
    answer();
    const QString text = answer();

    QVERIFY2(text.contains(source) && text.contains("PNG or JPEG"), qPrintable(text));
    QTRY_VERIFY(!m_screen->visible("backButton"));
    QVERIFY(plan());
}

void tst_PlanWork::aPictureThatIsTooLargeIsExplained()
{
    const QString source = picture("wide.png", {4049, 10});

    choose(source);
    answer();
    const QString text = answer();

    QVERIFY2(text.contains(source) && text.contains("4049"), qPrintable(text));
    QTRY_VERIFY(!m_screen->visible("backButton"));
    QVERIFY(plan());
}

void tst_PlanWork::twoLinesPlaceIt()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    begin("planTwoLinesButton");
    QVERIFY(m_screen->text("planStepText").startsWith("Step 1"));
    QVERIFY(!m_screen->enabled("planNextButton"));
    const QVector3D a = tapAt(0.25, 0.35);
    const QVector3D b = tapAt(0.4, 0.4);
    QVERIFY(m_screen->text("planStepText").startsWith("Step 2"));
    m_screen->click("planNextButton");
    QVERIFY(m_screen->text("planStepText").startsWith("Step 3"));
    const QVector3D c = tapAt(0.35, 0.7);
    const QVector3D d = tapAt(0.6, 0.65);
    m_screen->keep("plan-placing");
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);

    QVERIFY(!m_screen->visible("planStepText"));
    QVERIFY(near(moved(before, a), c, pixel()));
    QVERIFY(near(moved(before, b), d, 2 * pixel()));
    QCOMPARE(plan()->transformMatrix()(1, 3), before(1, 3));
    m_screen->keep("plan-placed");
}

void tst_PlanWork::aLineAndItsLengthScaleIt()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    begin("planLengthButton");
    const QVector3D from = tapAt(0.3, 0.4);
    const QVector3D to = tapAt(0.45, 0.35);
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);
    QVERIFY(m_screen->visible("inputScreen"));
    m_screen->item("inputField0Input")->setProperty("text", "12.5");
    m_screen->click("acceptButton");
    m_screen->waitFrames(2);

    const QVector3D start = moved(before, from);
    QVERIFY(near(start, from, pixel()));
    const float length = (moved(before, to) - start).length();
    QVERIFY2(qAbs(length - 12.5F) < 2 * pixel(), qPrintable(QString::number(double(length))));
}

void tst_PlanWork::aLengthOfNothingChangesNothing()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    begin("planLengthButton");
    tapAt(0.3, 0.4);
    tapAt(0.45, 0.35);
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);
    m_screen->click("acceptButton");

    QVERIFY(answer().contains("greater than zero"));
    compareMatrices(plan()->transformMatrix(), before);
}

void tst_PlanWork::twoPointsTurnItNorth()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    begin("planNorthButton");
    const QVector3D south = tapAt(0.3, 0.4);
    QVERIFY(m_screen->text("planStepText").startsWith("Step 2"));
    const QVector3D north = tapAt(0.45, 0.3);
    QVERIFY(m_screen->text("planStepText").startsWith("Step 3"));
    m_screen->click("planNextButton");
    m_screen->waitFrames(2);

    const QVector3D start = moved(before, south);
    const QVector3D direction = (moved(before, north) - start).normalized();
    QVERIFY(near(start, south, pixel()));
    QVERIFY(near(direction, {0.0F, 0.0F, 1.0F}, 0.02F));
}

void tst_PlanWork::placingIsCancelledAndTakenBackAStep()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    begin("planNorthButton");
    tapAt(0.3, 0.4);
    m_screen->click("planBackButton");
    QVERIFY(m_screen->text("planStepText").startsWith("Step 1"));
    QVERIFY(!m_screen->enabled("planBackButton"));
    tapAt(0.4, 0.4);
    m_screen->click("planCancelButton");
    m_screen->waitFrames(2);

    QVERIFY(!m_screen->visible("planStepText"));
    compareMatrices(plan()->transformMatrix(), before);
    m_screen->click("planNorthButton");
    m_screen->click("planButton");
    m_screen->click("planButton");
    m_screen->waitFrames(2);
    QVERIFY(!m_screen->visible("planStepText"));
}

void tst_PlanWork::lockedItMovesWithTheView()
{
    const QVector3D place = plan()->transform()->translation();
    const QVector3D centre = m_screen->camera()->viewCenter();

    m_screen->click("planLockButton");
    QVERIFY(m_screen->checked("planLockButton"));
    m_screen->drag(at(0.3, 0.6), at(0.4, 0.5));
    m_screen->waitFrames(5);
    const QVector3D way = m_screen->camera()->viewCenter() - centre;
    const QVector3D there = plan()->transform()->translation();
    m_screen->click("planLockButton");
    m_screen->drag(at(0.4, 0.5), at(0.3, 0.6));
    m_screen->waitFrames(5);

    QVERIFY(way.length() > 1.0F);
    QVERIFY(near(there, place + way, 0.05F));
    QVERIFY(near(plan()->transform()->translation(), there, 0.01F));
    QVERIFY(!m_screen->checked("planLockButton"));
}

void tst_PlanWork::aDrawingComesToItsFloor()
{
    m_screen->click("planPlace2");
    QCOMPARE(plans().floor(), 1);
    QCOMPARE(m_screen->text("planName"), QString("No plan here"));
    const QString source = drawing("upper floor.dxf");

    choose(source);
    QTRY_VERIFY(FloorNav::instance().hasFloorPlan(1));
    QTRY_VERIFY(!m_screen->visible("backButton"));

    QCOMPARE(m_screen->text("planName"), QString("upper floor.dxf"));
    QCOMPARE(FloorNav::instance().getCurrentFloorIndex(), 1);
    QVERIFY(plan());
    QVERIFY(QFile::exists(source));
    QCOMPARE(FloorNav::instance().getFloorPlan(1)->transform()->translation().y(), 3.0F);
    m_screen->click("planLockButton");
    QVERIFY(m_screen->checked("planLockButton"));
    m_screen->click("planLockButton");
    m_screen->keep("plan-on-floor");
}

void tst_PlanWork::floorsLieAtTheirHeights()
{
    m_screen->click("planHeightsButton");
    m_screen->waitFrames(2);
    QVERIFY(m_screen->visible("inputScreen"));
    m_screen->item("inputField1Input")->setProperty("text", "4.5");
    m_screen->click("acceptButton");
    m_screen->waitFrames(2);

    IBackgroundPlan* const upper = FloorNav::instance().getFloorPlan(1);
    QCOMPARE(upper->transform()->translation().y(), 4.5F);
    QVERIFY(upper->isEnabled());
    m_screen->click("planPlace1");
    QVERIFY(!upper->isEnabled());
    m_screen->click("planPlace2");
    QVERIFY(upper->isEnabled());
    m_screen->click("planRemoveButton");
    QVERIFY(answer().contains("upper floor.dxf"));
    QVERIFY(!FloorNav::instance().hasFloorPlan(1));
    m_screen->click("planPlace0");
    QCOMPARE(m_screen->text("planName"), QString("site a.png"));
}

void tst_PlanWork::reopenedThePlanLiesWhereItWas()
{
    const QMatrix4x4 before = plan()->transformMatrix();

    m_viewer->closeProject();
    QTRY_VERIFY(!plan());
    open();
    QTRY_VERIFY(plan());

    compareMatrices(plan()->transformMatrix(), before);
    QCOMPARE(m_screen->text("planName"), QString("site a.png"));
    QVERIFY(!m_screen->visible("messageBox"));
}

void tst_PlanWork::anotherTakesItsPlace()
{
    QVERIFY(QFile::copy(picture("report.png"), documents() + "report.png"));
    const QString source = picture("report.png", {200, 200});

    lay(source, true);

    // A document of that name is none of the plan's.
    QCOMPARE(plan()->fileName(), QString("report-2.png"));
    QCOMPARE(QImage(documents() + "report.png").size(), QSize(400, 300));
    QVERIFY(!QFile::exists(documents() + "site a.png"));
}

void tst_PlanWork::removedItIsGoneForGood()
{
    const QString path = plan()->fullPath();

    m_screen->click("planRemoveButton");
    QVERIFY(answer().contains("report-2.png"));
    m_screen->waitFrames(2);

    QVERIFY(!plan());
    QVERIFY(QFile::exists(path));
    QVERIFY(!m_screen->enabled("planRemoveButton"));
    m_viewer->closeProject();
    open();
    QTest::qWait(100);
    QVERIFY(!plan());
    QVERIFY2(m_viewer->errorText().isEmpty(), qPrintable(m_viewer->errorText()));
}

KX_SCENE_TEST_MAIN(tst_PlanWork)
#include "tst_PlanWork.moc"
