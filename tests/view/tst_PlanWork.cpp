#include "view/PlanTest.h"

using namespace Torvik::View3d;
using Kx::Test::PlanTest;
using Kx::Test::QmlWarnings;

/** A plan from the file to its place: in the application's window, on a real project. The tests follow one another. */
class tst_PlanWork : public PlanTest {
    Q_OBJECT

private slots:
    void initTestCase() { begin(); }
    void cleanup() { nothingIsOpen(); }
    void cleanupTestCase() { end(); }

    void theBarOpensWithoutAPlan();
    void whatCannotBeAPlanIsRefusedInWords();
    void aPictureIsLaidAndTheFileStaysWhereItWas();
    void anotherIsAskedFor();
    void aLoadThatIsCancelledLeavesTheOldPlan();
    void aDrawingThatCannotBeReadIsExplained();
    void aDamagedPictureIsExplained();
    void aPictureThatIsTooLargeIsExplained();
    void reopenedThePlanLiesWhereItWas();
    void anotherTakesItsPlace();
    void removedItIsGoneForGood();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }

private:
    void compareMatrices(const QMatrix4x4& now, const QMatrix4x4& before)
    {
        for (int i = 0; i < 16; ++i)
            QVERIFY2(qAbs(now.constData()[i] - before.constData()[i]) < 2e-3F, qPrintable(QString::number(i)));
    }
};

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
    const QString text = answer();

    // Before anything of it is copied.
    QVERIFY2(text.contains(source) && text.contains("4049"), qPrintable(text));
    QVERIFY(!m_screen->visible("backButton"));
    QVERIFY(plan());
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
