#include "view/SceneWindow.h"

#include "network/Node.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::SceneWindow;
using Kx::Test::TestProject;

/** A finger on the objects of a rendered scene: what they and the database hold afterwards. */
class tst_Touch : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_view = std::make_unique<SceneWindow>(); }
    void cleanupTestCase() { m_view.reset(); }
    void init();
    void cleanup();

    void aTapSelectsTheManholeUnderIt();
    void aTapOnTheGroundDeselects();
    void aTapOnAPipeSelectsItsSection();
    void aManholeIsDraggedWithItsPipeAndStored();
    void anObjectThatIsNotAllowedStays();
    void theCameraStaysDuringADrag();

private:
    Node* node(const CDomainObjectPointer& record) const
    {
        return SceneEntities::instance().getNodes().value(record->id());
    }
    QPoint pixel(const Node* at) const { return m_view->pixelOf(at->position()); }

    std::unique_ptr<SceneWindow> m_view;
    std::unique_ptr<TestProject> m_project;
    CDomainObjectPointer m_a;
    CDomainObjectPointer m_b;
    QSharedPointer<Torvik::Database::CPipeInspectionObject> m_inspection;
};

void tst_Touch::init()
{
    m_project = std::make_unique<TestProject>();
    m_a = m_project->addNode("A", "POINT ZM(400000 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    m_b = m_project->addNode("B", "POINT ZM(400030 5600000 100 16)", {{"OBJ_DepthToInvert", 2.0}});
    const auto pipe = m_project->addSection("A-B", m_a, m_b, {{"OBJ_Size1", 1000}});
    m_inspection = m_project->addInspection(pipe, "LINESTRING ZM(400030 5600000 98 320,400000 5600000 98 0)");
    m_project->activate();
    QTRY_COMPARE(SceneEntities::instance().getNodes().size(), 2);
    const QVector3D middle = (node(m_a)->position() + node(m_b)->position()) / 2.0F;
    m_view->lookDown({middle.x(), 0, middle.z()}, 900);
    QTest::qWait(400); // past the guard of an earlier selection
}

void tst_Touch::cleanup()
{
    m_view->root()->deselectAll();
    m_project->close();
    m_project.reset();
    m_view->frames(3);
}

void tst_Touch::aTapSelectsTheManholeUnderIt()
{
    m_view->tap(pixel(node(m_a)));
    m_view->keep("selected");
    QTRY_COMPARE(m_view->root()->selectionsCount(), 1);
    QVERIFY(m_view->root()->isSelected(m_a->id()));
}

void tst_Touch::aTapOnTheGroundDeselects()
{
    m_view->root()->selectOneByDomainGuid(m_a->id());
    QTest::qWait(400);
    m_view->tap(pixel(node(m_a)) + QPoint(0, 120));
    QTRY_VERIFY(m_view->root()->nothingSelected());
}

void tst_Touch::aTapOnAPipeSelectsItsSection()
{
    m_view->tap((pixel(node(m_a)) + pixel(node(m_b))) / 2);
    QTRY_VERIFY(m_view->root()->isSelected(m_inspection->id()));
}

void tst_Touch::aManholeIsDraggedWithItsPipeAndStored()
{
    Node* const manhole = node(m_a);
    manhole->allowTouchControl(true);
    const QVector3D before = manhole->position();
    const QPoint from = pixel(manhole);

    m_view->drag(from, from + QPoint(0, -60));

    const QVector3D moved = manhole->position() - before;
    QVERIFY2(moved.z() > 1.0F, qPrintable(QString::number(double(moved.z()))));
    QVERIFY(qAbs(moved.y()) < 0.001F);
    const QPoint now = pixel(manhole);
    QVERIFY((now - (from + QPoint(0, -60))).manhattanLength() <= 3);
    QCOMPARE(manhole->transformFlags(), int(TransformFlags::Manual));
    // 750 ms until the drag has ended for sure, 700 ms until it is written.
    const QString shape = m_a->readValue("OBJ_Shape_WKT").toString();
    QTRY_VERIFY_WITH_TIMEOUT(m_a->readValue("OBJ_Shape_WKT").toString() != shape, 4000);
    QTRY_COMPARE(m_project->stored("NODE", "OBJ_PK", m_a->id(), "OBJ_Shape_WKT").toString(),
                 m_a->readValue("OBJ_Shape_WKT").toString());
}

void tst_Touch::anObjectThatIsNotAllowedStays()
{
    const QVector3D before = node(m_a)->position();
    const QPoint from = pixel(node(m_a));
    m_view->drag(from, from + QPoint(0, -60));
    QCOMPARE(node(m_a)->position(), before);
}

void tst_Touch::theCameraStaysDuringADrag()
{
    node(m_a)->allowTouchControl(true);
    const QPoint from = pixel(node(m_a));
    m_view->press(from);
    const QVector3D camera = m_view->camera()->position();
    m_view->moveTo(from + QPoint(10, -30));
    m_view->moveTo(from + QPoint(20, -60));
    QCOMPARE(m_view->camera()->position(), camera);
    QVERIFY(!m_view->controller()->isEnabled());
    m_view->release(from + QPoint(20, -60));
    QVERIFY(m_view->controller()->isEnabled());
    // The finger is up: the camera must not take up what it has missed.
    m_view->moveTo(from + QPoint(80, 60));
    QCOMPARE(m_view->camera()->position(), camera);
}

QTEST_MAIN(tst_Touch)
#include "tst_Touch.moc"
