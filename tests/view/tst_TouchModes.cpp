#include "common/SceneTest.h"
#include "view/SceneWindow.h"

#include "interaction/TouchControl.h"
#include "network/Node.h"
#include "network/Pipe.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <Qt3DInput/QMouseHandler>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

/** What a press of a rendered scene selects, and in which order things happen to it. Two pipes cross: the lower one was
 *  there first. */
class tst_TouchModes : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_view = std::make_unique<SceneWindow>(); }
    void cleanupTestCase() { m_view.reset(); }
    void init();
    void cleanup();

    void aTapKeepsTheOneThatIsSeen();
    void aSlowTapThatFillsTheListIsNoRefusal();
    void anAbandonedPressBeginsNothing();
    void anObjectAllowedByItsSelectionIsDraggedAtOnce();
    void thePressedObjectKnowsOfItsFinger();

private:
    Section* section(const QSharedPointer<Torvik::Database::CPipeInspectionObject>& inspection) const
    {
        return SceneEntities::instance().getPipeEntities().getByInspectionId(inspection->id());
    }
    Node* node() const { return SceneEntities::instance().getNodes().value(m_node->id()); }
    QSharedPointer<Torvik::Database::CPipeInspectionObject> addPipe(const QString& key, const QString& course)
    {
        const auto pipe = m_project->addSection(key, nullptr, nullptr, {{"OBJ_Size1", 1000}});
        return m_project->addInspection(pipe, course, 2);
    }
    static TouchControl* controlOf(const Renderable* object)
    {
        return qobject_cast<TouchControl*>(object->touchControl());
    }
    /** Held longer than the selection guards its tap, and still a tap. */
    void slowTap(QPoint at)
    {
        m_view->press(at);
        QTest::qWait(370);
        QTest::mouseRelease(m_view->window(), Qt::LeftButton, {}, m_view->inWindow(at));
        m_view->frames(4);
    }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_node;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_lower;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_upper;
    QPoint m_crossing;
};

void tst_TouchModes::init()
{
    m_project = std::make_unique<TestProject>();
    m_node = m_project->addNode("N", "POINT ZM(400000 5600010 100 16)");
    m_lower = addPipe("lower", "LINESTRING ZM(400000 5600000 95 132,400030 5600000 95 0)");
    m_upper = addPipe("upper", "LINESTRING ZM(400015 5600012 98 132,400015 5599988 98 0)");
    m_project->activate();
    QTRY_VERIFY(section(m_lower) && section(m_upper) && node());
    const auto middle = [this](const auto& inspection) {
        const auto* const pipe = section(inspection)->pipe();
        return pipe->getTransformMatrixAtDistance(pipe->length() / 2.0F).column(3).toVector3D();
    };
    const QVector3D crossing = middle(m_upper);
    const QVector3D apart = crossing - middle(m_lower);
    QVERIFY(QVector2D(apart.x(), apart.z()).length() < 0.1F && apart.y() > 1.0F);
    m_view->lookDown({crossing.x(), 0, crossing.z()}, 900);
    m_crossing = m_view->pixelOf(crossing);
    QTest::qWait(400); // past the guard of an earlier selection
}

void tst_TouchModes::cleanup()
{
    m_view->root()->deselectAll();
    m_project->close();
    m_project.reset();
    m_view->frames(3);
}

void tst_TouchModes::aTapKeepsTheOneThatIsSeen()
{
    m_view->tap(m_crossing);
    QVERIFY(m_view->root()->isSelected(m_upper->id()));
    QTest::qWait(400);
    m_view->tap(m_crossing); // nothing new, so nothing guards the tap
    QVERIFY(m_view->root()->isSelected(m_upper->id()));
    m_view->root()->deselectAll();
    QTest::qWait(400);
    slowTap(m_crossing);
    QVERIFY(m_view->root()->isSelected(m_upper->id()));
    QCOMPARE(m_view->root()->selectionsCount(), 1);
}

void tst_TouchModes::aSlowTapThatFillsTheListIsNoRefusal()
{
    m_view->root()->setMaxSelection(2);
    m_view->root()->selectNextByDomainGuid(m_node->id());
    QTest::qWait(400);
    QSignalSpy refused(m_view->root(), &SceneRoot::maxSelectionExceeded);
    slowTap(m_crossing);
    QCOMPARE(m_view->root()->selectionsCount(), 2);
    QCOMPARE(refused.count(), 0);
}

void tst_TouchModes::anAbandonedPressBeginsNothing()
{
    node()->allowTouchControl(true);
    const QVector3D place = node()->position();
    const QPoint at = m_view->pixelOf(place);
    // A second finger is there before the renderer has told what the first one has hit.
    auto* const mouse = m_view->root()->touchInput()->mouseHandler();
    const auto connection =
        connect(mouse, &Qt3DInput::QMouseHandler::pressed, m_view->root(), [this] { m_view->root()->abandonTouch(); });
    m_view->press(at);
    disconnect(connection);
    QVERIFY(m_view->controller()->isEnabled());
    m_view->moveTo(at + QPoint(30, 30));
    QCOMPARE(node()->position(), place);
    m_view->release(at + QPoint(30, 30));
    // The next finger is heard again.
    m_view->lookDown(place, 900);
    const QPoint now = m_view->pixelOf(place);
    m_view->drag(now, now + QPoint(30, 30));
    QVERIFY((node()->position() - place).length() > 0.5F);
}

void tst_TouchModes::anObjectAllowedByItsSelectionIsDraggedAtOnce()
{
    const QVector3D place = node()->position();
    const auto connection = connect(m_view->root(), &SceneRoot::selectedRenderableChanged, this,
                                    [this] { node()->allowTouchControl(true); });
    const QPoint at = m_view->pixelOf(place);
    m_view->drag(at, at + QPoint(30, 30));
    disconnect(connection);
    QVERIFY((node()->position() - place).length() > 0.5F);
}

void tst_TouchModes::thePressedObjectKnowsOfItsFinger()
{
    const QPoint at = m_view->pixelOf(node()->position());
    QVERIFY(!controlOf(node())->containsMouse());
    m_view->press(at);
    QVERIFY(controlOf(node())->containsMouse());
    QVERIFY(!controlOf(section(m_upper))->containsMouse());
    QCOMPARE(m_view->root()->touchInput()->hit(), node());
    m_view->release(at);
    QVERIFY(!controlOf(node())->containsMouse());
}

KX_SCENE_TEST_MAIN(tst_TouchModes)
#include "tst_TouchModes.moc"
