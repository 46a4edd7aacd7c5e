#include "plans/PlanLoader.h"
#include "scene/SceneRoot.h"
#include "view/PlanTest.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPdfWriter>
#include <QStorageInfo>

using namespace Torvik::View3d;
using Kx::Test::PlanTest;
using Kx::Test::QmlWarnings;

namespace {

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** A folder that nothing can be written to, whoever runs the test, as long as it lives. */
class ClosedFolder {
public:
    explicit ClosedFolder(const QString& path)
        : m_path(QDir(path).absolutePath())
        , m_aside(m_path + ".aside")
    {
        QDir().rename(m_path, m_aside);
        QFile(m_path).open(QIODevice::WriteOnly);
    }
    ~ClosedFolder()
    {
        QFile::remove(m_path);
        QDir().rename(m_aside, m_path);
    }

private:
    QString m_path;
    QString m_aside;
};

} // namespace

/** What goes wrong with plans in the application's window: one message, and nothing is lost. */
class tst_PlanTrouble : public PlanTest {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        begin();
        openBar();
        lay(picture("old.png"), false);
    }
    void cleanup() { nothingIsOpen(); }
    void cleanupTestCase() { end(); }

    void aPlanThatCannotBeStoredLeavesTheOldOne_data();
    void aPlanThatCannotBeStoredLeavesTheOldOne();
    void aCopyThatWasCancelledMeddlesWithNothing();
    void anotherLoadIsNotInTheWay();
    void whileTheProjectsPlanLoadsNoneIsChosen();
    void whatCannotBeStoredIsToldOnce();
    void aPlanThatCannotBeForgottenIsTold();
    void withoutRoomNothingIsCopied();
    void whatADrawingHasLostIsTold();
    void aDrawingIsCalledAsTheUserCallsIt();
    void aDroppedPlanIsLaid();
    void whatIsNoProjectClosesNone();
    void closingTheProjectEndsTheLoad();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }

private:
    void drop(const QString& path)
    {
        QMimeData urls;
        urls.setUrls({QUrl::fromLocalFile(path)});
        const QPoint place(600, 400);
        QDragEnterEvent enter(place, Qt::CopyAction, &urls, Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_screen->window(), &enter);
        QDropEvent event(place, Qt::CopyAction, &urls, Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_screen->window(), &event);
    }
    int plansInScene() const { return SceneRoot::instance()->findChildren<IBackgroundPlan*>().size(); }
};

void tst_PlanTrouble::aPlanThatCannotBeStoredLeavesTheOldOne_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("another name") << "new.png";
    QTest::newRow("the same name") << "old.png";
    QTest::newRow("a PDF") << "new.pdf";
}

void tst_PlanTrouble::aPlanThatCannotBeStoredLeavesTheOldOne()
{
    QFETCH(QString, name);
    const QString source = m_files.filePath("other/" + name);
    QVERIFY(QDir().mkpath(m_files.filePath("other")));
    if (name.endsWith(".pdf"))
        QPainter(std::make_unique<QPdfWriter>(source).get()).drawRect(9, 9, 900, 900);
    else
        QVERIFY(QImage(picture("other.png", {90, 90})).save(source));
    const QPointer<IBackgroundPlan> old = plan();
    const QString oldFile = old->fullPath();
    const QByteArray before = content(oldFile);
    const QStringList files = filesOfProject();
    const QByteArray stored = content(planFile());
    QString text;
    // The old one is stored again some time after it was laid.
    QTest::qWait(1000);

    {
        const ClosedFolder closed(graphics());
        choose(source);
        QVERIFY(answer().contains("goes"));
        text = answer();
        QTRY_VERIFY(!m_screen->visible("backButton"));
    }

    QVERIFY2(text.contains(source) && text.contains("not laid"), qPrintable(text));
    QCOMPARE(plan(), old.data());
    QCOMPARE(plan()->fullPath(), oldFile);
    QVERIFY(content(oldFile) == before);
    QCOMPARE(filesOfProject(), files);
    QCOMPARE(content(planFile()), stored);
    QTRY_COMPARE(plansInScene(), 1);
    QTRY_COMPARE(QDir(documents()).entryList({".plan-*"}, QDir::Dirs | QDir::Hidden), QStringList());
}

void tst_PlanTrouble::aCopyThatWasCancelledMeddlesWithNothing()
{
    QSignalSpy failed(&plans(), &PlanWork::failed);
    QSignalSpy set(&FloorNav::instance(), &FloorNav::floorSet);
    plans().load(QUrl::fromLocalFile(picture("large.png", {4000, 4000})));
    QVERIFY(plans().loading());

    plans().cancel();
    QVERIFY(!plans().loading());
    plans().setFloor(0);
    plans().load(QUrl::fromLocalFile(picture("floor.png")));
    QTRY_VERIFY(!plans().loading());
    QTest::qWait(300);

    QCOMPARE(set.count(), 1);
    QCOMPARE(failed.count(), 0);
    QCOMPARE(plan()->fileName(), QString("old.png"));
    plans().remove();
    plans().setFloor(PlanWork::underNetwork);
    QTRY_COMPARE(plansInScene(), 1);
    QTRY_COMPARE(QDir(documents()).entryList({".plan-*"}, QDir::Dirs | QDir::Hidden), QStringList());
}

void tst_PlanTrouble::anotherLoadIsNotInTheWay()
{
    plans().load(QUrl::fromLocalFile(picture("chosen.png")));
    // As a project's own plan does that comes late.
    SceneRoot::instance()->planLoader()->loadPlan(picture("large.png", {4000, 4000}));

    QTRY_VERIFY(!plans().loading());

    QCOMPARE(plan()->fileName(), QString("chosen.png"));
    QVERIFY(!SceneRoot::instance()->planLoader()->planLoading());
    QTRY_COMPARE(plansInScene(), 1);
}

void tst_PlanTrouble::whileTheProjectsPlanLoadsNoneIsChosen()
{
    PlanLoader& loader = *SceneRoot::instance()->planLoader();
    loader.loadPlan(picture("large.png", {4000, 4000}));

    choose(picture("other.png"));

    QVERIFY(answer().contains("still being opened"));
    QVERIFY(!m_screen->visible("backButton"));
    loader.abandon();
    plans().setProjectFilling(true);
    QVERIFY(!plans().refusal(QUrl::fromLocalFile(picture("other.png"))).isEmpty());
    plans().setProjectFilling(false);
    QVERIFY(plans().refusal(QUrl::fromLocalFile(picture("other.png"))).isEmpty());
}

void tst_PlanTrouble::whatCannotBeStoredIsToldOnce()
{
    const auto turn = [this] { return plans().align(PlanWork::NorthLine, {}, {1.0F, 0.0F, 1.0F}, {}, {}); };

    {
        const ClosedFolder closed(graphics());
        QCOMPARE(turn(), QString());
        QVERIFY(answer().contains("could not be stored"));
        turn();
        plans().setLocked(true);
        plans().setLocked(false);
        QTest::qWait(1000);
        QVERIFY(!m_screen->visible("messageBox"));
    }
    turn();
    QVERIFY(!m_screen->visible("messageBox"));
    const ClosedFolder closed(graphics());
    turn();

    QVERIFY(answer().contains(plan()->fullPath()));
}

void tst_PlanTrouble::aPlanThatCannotBeForgottenIsTold()
{
    const QString file = plan()->fullPath();
    QVERIFY(QFile::remove(planFile()));
    // A folder is deleted by nobody by mistake.
    QVERIFY(QDir().mkpath(planFile()));

    plans().remove();

    QVERIFY(answer().contains("plan.xml"));
    QVERIFY(!plan());
    QVERIFY(QFile::exists(file));
    QVERIFY(QDir().rmdir(planFile()));
}

void tst_PlanTrouble::withoutRoomNothingIsCopied()
{
    QFile huge(m_files.filePath("huge.pdf"));
    if (!huge.open(QIODevice::WriteOnly) || !huge.resize(QStorageInfo(documents()).bytesAvailable() + 1))
        QSKIP("this disk takes no file larger than itself");

    choose(huge.fileName());

    QVERIFY(answer().contains("no room"));
    QVERIFY(!m_screen->visible("backButton"));
    huge.remove();
}

void tst_PlanTrouble::whatADrawingHasLostIsTold()
{
    QByteArray text = content(drawing("whole.dxf"));
    const QByteArray end = Kx::Test::Dxf::pair(0, "EOF");
    QVERIFY(text.endsWith(end));
    text.chop(end.size());

    choose(file("open end.dxf", text));
    QVERIFY(answer().contains("loading finished"));
    const QString told = answer();

    QVERIFY2(told.contains("open end.dxf") && told.contains("no end mark"), qPrintable(told));
    QVERIFY(plan());
}

void tst_PlanTrouble::aDrawingIsCalledAsTheUserCallsIt()
{
    QVERIFY(QFile::copy(drawing("site.dxf"), documents() + "site.dxf"));
    const QString source = file("site.dxf", content(m_files.filePath("open end.dxf")));

    choose(source);
    QVERIFY(answer().contains("goes"));
    QVERIFY(answer().contains("loading finished"));
    const QString told = answer();
    QVERIFY2(told.contains("site.dxf has") || told.contains("site.dxf:"), qPrintable(told));
    QVERIFY(!told.contains("site-2"));
    QCOMPARE(plan()->fileName(), QString("site-2.dxf"));

    choose(file("site.dxf", "  0\nSECTION\nnothing of the kind\n"));
    answer();
    const QString broken = answer();
    QVERIFY2(broken.contains("site.dxf") && !broken.contains("site-"), qPrintable(broken));
    QTRY_VERIFY(!m_screen->visible("backButton"));
}

void tst_PlanTrouble::aDroppedPlanIsLaid()
{
    drop(picture("dropped.png"));

    QVERIFY(answer().contains("goes"));
    QVERIFY(answer().contains("loading finished"));
    QVERIFY(m_viewer->projectOpen());
    QTRY_COMPARE(plan()->fileName(), QString("dropped.png"));
}

void tst_PlanTrouble::whatIsNoProjectClosesNone()
{
    for (const QString& path : {file("notes.txt", "notes"), m_files.path()}) {
        drop(path);

        QVERIFY(m_viewer->projectOpen());
        QVERIFY(!m_viewer->busy());
        QVERIFY2(m_viewer->errorText().contains(path), qPrintable(m_viewer->errorText()));
        m_viewer->dismissError();
    }
}

void tst_PlanTrouble::closingTheProjectEndsTheLoad()
{
    const QStringList files = filesOfProject();
    choose(picture("late.png", {3000, 3000}));
    answer();
    QVERIFY(plans().loading());

    m_viewer->closeProject();
    QVERIFY(!plans().loading());
    QTest::qWait(500);

    QVERIFY(!m_screen->visible("backButton"));
    QVERIFY(!plan());
    QVERIFY(!QFileInfo::exists(CFileSystemNames::documentationPathPart()));
    QCOMPARE(filesOfProject(), files);
    open();
    QTRY_VERIFY(plan());
    QCOMPARE(plan()->fileName(), QString("dropped.png"));
    QTRY_COMPARE(QDir(documents()).entryList({".plan-*"}, QDir::Dirs | QDir::Hidden), QStringList());
}

KX_SCENE_TEST_MAIN(tst_PlanTrouble)
#include "tst_PlanTrouble.moc"
