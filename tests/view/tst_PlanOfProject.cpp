#include "host/app/PlanDesk.h"
#include "plans/PlanSettingsIO.h"
#include "scene/GlobalNav.h"
#include "view/PlanTest.h"

#include <Qt3DCore/QTransform>

using namespace Torvik::View3d;
using Kx::Test::PlanTest;
using Kx::Test::QmlWarnings;
using Torvik::Viewer::PlanDesk;

/** The plan that a project has when it is opened in the application's window, and one for a look over it. The tests
 *  follow one another. */
class tst_PlanOfProject : public PlanTest {
    Q_OBJECT

private slots:
    void initTestCase() { begin(); }
    void cleanup() { nothingIsOpen(); }
    void cleanupTestCase() { end(); }

    void aDamagedPlanIsToldAtTheFirstOpening();
    void aPlanThatIsNotThereIsAskedFor();
    void aPlanForALookCoversTheProjectsOwn();
    void takenAwayItShowsThatAgain();
    void aNewPlanEndsTheLook();
    void aPictureWithAShortEndingIsLaidForALook();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list().join("\n"), QString()); }

protected:
    /** As large as a town's: while it returns to the event loop, much waits there. */
    void prepare() override
    {
        for (int i = 0; i < 1500; ++i)
            m_project->addNode(QString::number(i), QString("POINT ZM(%1 5600100 100 16)").arg(400000 + i % 40));
        QVERIFY(QDir().mkpath(graphics()));
        QVERIFY(QFile::copy(file("damaged.png", "0123456789"), documents() + "damaged.png"));
        QVERIFY(PlanSettingsIO::savePlanFile(m_project->project()->projectPath(), Qt3DCore::QTransform(),
                                             documents() + "damaged.png", {}));
    }

private:
    QString lookAt(const QString& path)
    {
        auto* const desk = new PlanDesk(m_viewer.get());
        QString problem = "not done";
        desk->lay({path, 1.0, {}}, [&problem](const QString& text) { problem = text; });
        return QTest::qWaitFor([&problem] { return problem != "not done"; }, 15000) ? problem : "not done";
    }
    static IBackgroundPlan* waiting() { return SceneEntities::instance().getBackgroundPlanToConfirm(); }
};

void tst_PlanOfProject::aDamagedPlanIsToldAtTheFirstOpening()
{
    QVERIFY2(m_viewer->errorText().contains(documents() + "damaged.png"), qPrintable(m_viewer->errorText()));
    m_viewer->dismissError();
    QCOMPARE(m_viewer->errorText(), QString());
}

void tst_PlanOfProject::aPlanThatIsNotThereIsAskedFor()
{
    openBar();
    choose(picture("own.png"));

    const QString text = answer("noButton");

    QVERIFY2(text.contains("damaged.png") && text.contains("could not be laid"), qPrintable(text));
    QVERIFY(!plan());
    choose(picture("own.png"));
    answer();
    QVERIFY(answer().contains("loading finished"));
    QTRY_COMPARE(plan()->fileName(), QString("own.png"));
    QVERIFY(QFile::exists(documents() + "damaged.png"));
}

void tst_PlanOfProject::aPlanForALookCoversTheProjectsOwn()
{
    const QString stored = planFile();
    QVERIFY(plan()->isEnabled());

    QCOMPARE(lookAt(picture("look.png")), QString());
    QVERIFY(waiting());
    QVERIFY(!plan()->isEnabled());
    for (const char* button : {"3dButton", "topButton"}) {
        m_screen->click(button);
        m_screen->settle();
        QVERIFY(!plan()->isEnabled());
    }

    QCOMPARE(m_screen->text("planName"), QString("look.png, for a look"));
    QVERIFY(plans().forALook());
}

void tst_PlanOfProject::takenAwayItShowsThatAgain()
{
    m_screen->click("planRemoveButton");
    QVERIFY(answer().contains("stays where it is"));
    m_screen->waitFrames(2);

    QVERIFY(!waiting());
    QVERIFY(plan()->isEnabled());
    QVERIFY(QFile::exists(m_files.filePath("look.png")));
    QCOMPARE(m_screen->text("planName"), QString("own.png"));
    QVERIFY(QFile::exists(planFile()));
}

void tst_PlanOfProject::aNewPlanEndsTheLook()
{
    QCOMPARE(lookAt(picture("look.png")), QString());

    lay(picture("newer.png"), true);

    QVERIFY(!waiting());
    QCOMPARE(plan()->fileName(), QString("newer.png"));
    QVERIFY(plan()->isEnabled());
}

void tst_PlanOfProject::aPictureWithAShortEndingIsLaidForALook()
{
    const QString source = m_files.filePath("look.tif");
    QVERIFY(QImage(picture("look.png")).save(source, "TIFF"));

    QCOMPARE(lookAt(source), QString());
    QCOMPARE(waiting()->fullPath(), source);
    plans().remove();

    const QString broken = file("broken.pdf", "%PDF-1.4 not at all");
    const QString problem = lookAt(broken);
    QVERIFY2(problem.contains(broken) && problem.contains("PDF"), qPrintable(problem));
    QVERIFY(QFile::exists(broken));
}

KX_SCENE_TEST_MAIN(tst_PlanOfProject)
#include "tst_PlanOfProject.moc"
