#include "common/SceneTest.h"
#include "common/TestProject.h"
#include "host/app/SceneReader.h"
#include "host/app/ViewerController.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/SceneEntities.h"
#include "view/ViewerScreen.h"

#include <QScreen>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::QmlWarnings;
using Kx::Test::TestProject;
using Kx::Test::ViewerScreen;
using Torvik::Viewer::SceneSnapshot;
using Torvik::Viewer::ViewerController;

/** The page of observations in the application's window, typed into by keys, with the scene beside it. */
class tst_Observations : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void withoutAnInspectionNothingCanBeAdded();
    void aTapOnThePipeShowsItsObservations();
    void aConnectionThatIsAddedStandsInTheScene();
    void wrongInputStandsAtItsField();
    void aChangedDistanceMovesItInTheScene();
    void aBendTurnsThePipeAndGoesAgain();
    void deletingTakesASecondTap();
    void fieldsAreAsHighAsAFingerNeeds();
    void closingTheProjectEmptiesThePage();
    void nothingWarnedOnTheWay() { QCOMPARE(QmlWarnings::list(), QStringList()); }

private:
    Section* pipe() const { return SceneEntities::instance().getPipeEntities().getPipeEntities().first(); }
    QVector<SceneSnapshot::Observation> inScene() const { return Torvik::Viewer::SceneReader::snapshot().observations; }
    void type(const QString& field, const QString& text);
    void fill(const QString& code, const QString& distance, const QString& clock, const QString& angle);
    void markFirst();

    std::unique_ptr<QmlWarnings> m_warnings;
    std::unique_ptr<TestProject> m_project;
    std::unique_ptr<ViewerController> m_viewer;
    std::unique_ptr<ViewerScreen> m_screen;
    QString m_lateral;
};

void tst_Observations::initTestCase()
{
    m_warnings = std::make_unique<QmlWarnings>();
    m_project = std::make_unique<TestProject>();
    const QVariantMap manhole {{"OBJ_DepthToInvert", 2.0}, {"OBJ_Type", "MH"}};
    const auto a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", manhole);
    const auto b = m_project->addNode("B", "POINT ZM(400030 5600000 100 16)", manhole);
    const auto s = m_project->addSection("A-B", a, b, {{"OBJ_Size1", 1000}});
    m_project->addInspection(s, "LINESTRING ZM(400030 5600000 98 320,400000 5600000 98 0)");
    m_lateral = m_project->addLateral("L1", s, {{"OBJ_Size1", 150}})->id();
    m_project->close();
    m_viewer = std::make_unique<ViewerController>();
    m_screen = std::make_unique<ViewerScreen>(*m_viewer);
    QSignalSpy opened(m_viewer.get(), &ViewerController::opened);
    m_viewer->openFolder(m_project->path());
    QTRY_COMPARE(opened.count(), 1);
    m_screen->settle();
    m_screen->waitFrames(10);
    m_screen->click("tab3");
}

void tst_Observations::cleanupTestCase()
{
    m_screen.reset();
    m_viewer.reset();
    m_warnings.reset();
}

void tst_Observations::type(const QString& field, const QString& text)
{
    m_screen->click(field + "FieldInput");
    QTest::keyClick(m_screen->window(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_screen->window(), Qt::Key_Delete);
    for (const QChar letter : text)
        QTest::keyClick(m_screen->window(), letter.toLatin1());
    QCOMPARE(m_screen->text(field + "FieldInput"), text);
}

void tst_Observations::fill(const QString& code, const QString& distance, const QString& clock, const QString& angle)
{
    type("code", code);
    type("distance", distance);
    type("clock", clock);
    type("angle", angle);
}

void tst_Observations::markFirst()
{
    const QQuickItem* const list = m_screen->item("observationList");
    m_screen->tapWindow(list->mapToScene({40, 15}).toPoint());
    QTRY_VERIFY(m_screen->enabled("changeObservationButton"));
}

void tst_Observations::withoutAnInspectionNothingCanBeAdded()
{
    QVERIFY(!m_screen->enabled("addObservationButton"));
    QVERIFY(!m_screen->enabled("deleteObservationButton"));
    QVERIFY(m_screen->text("observationsTitle").contains("Select a pipe"));
}

void tst_Observations::aTapOnThePipeShowsItsObservations()
{
    const QVector<QVector3D> course = pipe()->pipe()->getShapePoints();

    m_screen->tap(m_screen->pixelOf((course.first() + course.last()) / 2));

    QTRY_COMPARE(m_screen->text("observationsTitle"), QString("A-B"));
    QVERIFY(m_screen->enabled("addObservationButton"));
    QVERIFY(!m_screen->enabled("changeObservationButton"));
}

void tst_Observations::aConnectionThatIsAddedStandsInTheScene()
{
    m_screen->click("addObservationButton");
    fill("BCAAA", "10", "3", "45");
    m_screen->item("lateralBox")->setProperty("currentIndex", 1);
    m_screen->keep("observation-form");

    m_screen->click("saveObservationButton");

    QVERIFY(!m_screen->visible("observationEditor"));
    QTRY_COMPARE(inScene().size(), 1);
    const SceneSnapshot::Observation observation = inScene().first();
    QCOMPARE(observation.kind, QString("connection"));
    QCOMPARE(observation.lateral, m_lateral);
    QCOMPARE(observation.clock, 3);
    const QVector3D begin = pipe()->pipe()->getShapePoints().first();
    QVERIFY(std::abs((observation.position - begin).length() - 10.0F) < 0.01F);
    QCOMPARE(Torvik::Viewer::SceneReader::snapshot().connections.size(), 1);
    QTRY_COMPARE(m_viewer->observations()->count(), 1);
    m_screen->keep("observations");
}

void tst_Observations::wrongInputStandsAtItsField()
{
    m_screen->click("addObservationButton");
    fill("BCAAA", "-4", "13", "steep");
    m_screen->item("lateralBox")->setProperty("currentIndex", 1);

    m_screen->click("saveObservationButton");

    QVERIFY(m_screen->visible("observationEditor"));
    QVERIFY(m_screen->text("distanceFieldError").contains("negative"));
    QVERIFY(m_screen->text("clockFieldError").contains("0 to 12"));
    QVERIFY(m_screen->text("angleFieldError").contains("not a number"));
    QVERIFY2(m_screen->text("lateralError").contains("Taken already"), qPrintable(m_screen->text("lateralError")));
    QVERIFY(!m_screen->visible("codeFieldError"));
    m_screen->keep("observation-errors");
    QCOMPARE(inScene().size(), 1);

    m_screen->click("leaveObservationButton");
    QVERIFY(!m_screen->visible("observationEditor"));
    QCOMPARE(m_viewer->observations()->count(), 1);
}

void tst_Observations::aChangedDistanceMovesItInTheScene()
{
    markFirst();
    m_screen->click("changeObservationButton");
    QCOMPARE(m_screen->text("codeFieldInput"), QString("BCAAA"));
    QCOMPARE(m_screen->item("lateralBox")->property("currentIndex").toInt(), 1);
    type("distance", "17,5");

    m_screen->click("saveObservationButton");

    const QVector3D begin = pipe()->pipe()->getShapePoints().first();
    QTRY_COMPARE(inScene().first().distance, 17.5);
    QTRY_VERIFY(std::abs((inScene().first().position - begin).length() - 17.5F) < 0.01F);
    QCOMPARE(inScene().first().lateral, m_lateral);
}

void tst_Observations::aBendTurnsThePipeAndGoesAgain()
{
    const QVector<QVector3D> straight = pipe()->pipe()->getShapePoints();
    m_screen->click("addObservationButton");
    fill("BCCAA", "15", "3", "30");
    m_screen->click("saveObservationButton");

    QTRY_COMPARE(inScene().size(), 2);
    QTRY_COMPARE(pipe()->pipe()->getShapePoints().size(), straight.size() + 1);
    m_screen->keep("bend");

    markFirst();
    m_screen->click("deleteObservationButton");
    m_screen->click("deleteObservationButton");
    QTRY_COMPARE(inScene().size(), 1);
    QTRY_COMPARE(pipe()->pipe()->getShapePoints().size(), straight.size());
}

void tst_Observations::deletingTakesASecondTap()
{
    QTRY_COMPARE(m_viewer->observations()->count(), 1);
    markFirst();

    m_screen->click("deleteObservationButton");
    QCOMPARE(m_screen->text("deleteObservationButton"), QString("Really?"));
    QCOMPARE(inScene().size(), 1);

    m_screen->click("deleteObservationButton");
    QTRY_COMPARE(inScene().size(), 0);
    QTRY_COMPARE(m_viewer->observations()->count(), 0);
    QVERIFY(Torvik::Viewer::SceneReader::snapshot().connections.isEmpty());
    QVERIFY(!m_screen->enabled("deleteObservationButton"));
}

void tst_Observations::fieldsAreAsHighAsAFingerNeeds()
{
    m_screen->click("addObservationButton");
    for (const char* name : {"codeFieldInput", "clockFieldInput", "lateralBox", "saveObservationButton"}) {
        const double heightMm =
            m_screen->item(name)->height() / (m_screen->window()->screen()->physicalDotsPerInch() / 25.4);
        QVERIFY2(heightMm >= 9.0, qPrintable(QString("%1: %2 mm").arg(name).arg(heightMm)));
    }
    m_screen->click("leaveObservationButton");
}

void tst_Observations::closingTheProjectEmptiesThePage()
{
    m_screen->click("addObservationButton");

    m_viewer->closeProject();

    QTRY_VERIFY(!m_screen->visible("observationEditor"));
    QVERIFY(!m_screen->enabled("addObservationButton"));
}

KX_SCENE_TEST_MAIN(tst_Observations)
#include "tst_Observations.moc"
