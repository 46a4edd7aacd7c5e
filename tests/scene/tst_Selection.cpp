#include "network/NetworkScene.h"

#include "common/LogCapture.h"
#include "interaction/CameraController.h"
#include "network/ObservationConnection.h"
#include "scene/GlobalNav.h"
#include "scene/SelectionAwareness.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QString awareness = QStringLiteral("Torvik::SelectionAwareness");
const QString notOnList = QStringLiteral("Trying to deselect id, which is not on selection list");
constexpr int pastTheGuard = 370;

Renderable* inVariant(const QVariant& variant)
{
    return variant.value<Renderable*>();
}

} // namespace

/** Which objects are selected, and what is done to them. */
class tst_Selection : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        SelectionAwareness::instance().deselectAll();
        m_scene = std::make_unique<NetworkScene>();
        m_a = m_scene->node("A", "POINT ZM(0 0 0 16)");
        m_b = m_scene->node("B", "POINT ZM(0 20 0 16)");
        m_c = m_scene->node("C", "POINT ZM(0 40 0 16)");
        m_placeless = m_scene->node("P");
        root().setMaxSelection(1);
        root().setSelectionsEnabled(true);
    }
    void cleanup() { m_scene.reset(); }

    void theListKeepsTheOrderOfSelection()
    {
        auto& list = SelectionAwareness::instance();
        list.selectOne("a");
        list.selectNext("b");
        list.selectNext("c");
        QCOMPARE(list.selectedGuids(), QList<QString>({"a", "b", "c"}));
        list.selectNext("b");
        QCOMPARE(list.selectedGuids(), QList<QString>({"a", "c", "b"}));
        QCOMPARE(list.lastSelected(), QString("b"));
        QVERIFY(list.isSelected("c") && !list.isSelected("d") && !list.onlyOneSelected());
        list.selectOne("c");
        QVERIFY(list.onlyOneSelected() && list.isSelected("c"));
        list.deselectAll();
        QVERIFY(list.nothingSelected() && list.lastSelected().isEmpty());
    }

    void theGuardLasts350Milliseconds()
    {
        auto& list = SelectionAwareness::instance();
        list.selectOne("a");
        QVERIFY(list.selectionInProgress());
        QTest::qWait(250);
        QVERIFY(list.selectionInProgress());
        list.selectOne("a"); // the same one: no new guard
        QTest::qWait(120);
        QVERIFY(!list.selectionInProgress());
        list.selectNext("a");
        QVERIFY(list.selectionInProgress());
    }

    void aSelectionInProgressKeepsItsGuid()
    {
        Kx::Test::LogCapture log;
        auto& list = SelectionAwareness::instance();
        list.selectOne("a");
        list.deselect("a", false);
        list.deselect("unknown", false);
        QVERIFY(list.isSelected("a"));
        QCOMPARE(log.count(1, awareness, notOnList), 0);
        list.deselect("a", true);
        QVERIFY(list.nothingSelected());
        list.deselect("a", true);
        QCOMPARE(log.count(1, awareness, notOnList), 1);
    }

    void oneObjectIsSelectedInPlaceOfAnother()
    {
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        QCOMPARE(inVariant(root().selectOneByDomainGuid(m_a->guid())), m_a);
        QCOMPARE(root().selectedRenderable(), m_a);
        QCOMPARE(inVariant(root().selectOneByDomainGuid(m_b->guid())), m_b);
        QCOMPARE(root().selectionsCount(), 1);
        QVERIFY(root().isSelected(m_b->guid()) && !root().isSelected(m_a->guid()));
        // a; nothing (a goes); b
        QCOMPARE(changed.count(), 3);
        QCOMPARE(changed.at(1).at(0).value<Renderable*>(), nullptr);
        QCOMPARE(inVariant(root().selectedRenderableVariant()), m_b);
    }

    void theOnlySelectedObjectIsNotSelectedAgain()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        QCOMPARE(inVariant(root().selectOneByDomainGuid(m_a->guid())), m_a);
        QCOMPARE(changed.count(), 0);
    }

    void aNodeWithoutAPlaceCannotBeSelected()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QVERIFY(!root().selectOneByDomainGuid(m_placeless->guid()).isValid());
        QVERIFY(root().isSelected(m_a->guid()));
        QVERIFY(!root().selectOneByDomainGuid("unknown").isValid());
        QVERIFY(!root().selectOneByDomainGuid("").isValid());
    }

    void aVirtualNodeCanBeSelected()
    {
        auto* const made = root().createVirtualVisibleNode("V", "CON").value<Node*>();
        QVERIFY(made && made->isVirtual() && made->isVisible());
        QCOMPARE(made->name(), QString("V"));
        QCOMPARE(made->nodeType(), QString("CON"));
        QCOMPARE(SceneEntities::instance().getNodes().value(made->guid()), made);
        QCOMPARE(inVariant(root().selectOneByDomainGuid(made->guid())), made);
    }

    void severalAreSelectedUpToTheMaximum()
    {
        root().setMaxSelection(2);
        QSignalSpy exceeded(&root(), &SceneRoot::maxSelectionExceeded);
        root().selectNextByDomainGuid(m_a->guid());
        root().selectNextByDomainGuid(m_b->guid());
        QCOMPARE(root().selectionsCount(), 2);
        QVERIFY(!root().selectNextByDomainGuid(m_c->guid()).isValid());
        QCOMPARE(exceeded.count(), 1);
        QCOMPARE(exceeded.at(0).at(0).toInt(), 2);
        QCOMPARE(root().selectedRenderable(), m_b);
    }

    void aSecondSelectionIsTooManyByDefault()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QSignalSpy exceeded(&root(), &SceneRoot::maxSelectionExceeded);
        QVERIFY(!root().selectNextByDomainGuid(m_b->guid()).isValid());
        QCOMPARE(exceeded.at(0).at(0).toInt(), 1);
    }

    void anEarlierObjectBecomesTheCurrentOne()
    {
        root().setMaxSelection(4);
        root().selectNextByDomainGuid(m_a->guid());
        root().selectNextByDomainGuid(m_b->guid());
        root().selectNextByDomainGuid(m_c->guid());
        root().selectNextByDomainGuid(m_a->guid());
        QCOMPARE(root().selectedRenderable(), m_a);
        QCOMPARE(root().selectionsCount(), 3);
    }

    void disabledSelectionsChangeNothing()
    {
        root().setMaxSelection(3);
        root().selectNextByDomainGuid(m_a->guid());
        root().setSelectionsEnabled(false);
        QVERIFY(!root().selectOneByDomainGuid(m_b->guid()).isValid());
        QVERIFY(!root().selectNextByDomainGuid(m_b->guid()).isValid());
        root().deselectAll();
        QCOMPARE(root().maxSelection(), 3);
        QVERIFY(root().isSelected(m_a->guid()));
    }

    void deselectingGivesTheGesturesBackAndEndsTheConnectionMode()
    {
        CameraController controller;
        GlobalNav::instance()->registerCameraController(&controller);
        GlobalNav::instance()->setConnectionMode(true);
        GlobalNav::instance()->setActiveObjectTransformControl(true);
        root().setMaxSelection(2);
        root().selectOneByDomainGuid(m_a->guid());
        QVERIFY(!controller.isEnabled());
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        root().deselectAll();
        QVERIFY(controller.isEnabled());
        QVERIFY(root().nothingSelected());
        QCOMPARE(changed.count(), 1);
        QVERIFY(!GlobalNav::instance()->connectionMode());
        QCOMPARE(root().maxSelection(), 1);
        root().deselectAll();
        QCOMPARE(changed.count(), 1);
    }

    void anUnknownGuidOnTheListIsLogged()
    {
        Kx::Test::LogCapture log;
        SelectionAwareness::instance().selectOne("ghost");
        root().deselectAll();
        QCOMPARE(log.count(1, "Torvik::SceneRoot", "Cannot dynamic cast existing QNode to Renderable"), 1);
        QVERIFY(root().nothingSelected());
    }

    void aTapDeselectsOnceTheGuardIsOver()
    {
        QSignalSpy ground(&root(), &SceneRoot::deselectionMouseEvent);
        root().selectOneByDomainGuid(m_a->guid());
        emit GlobalNav::instance()->shortTap(nullptr);
        QVERIFY(root().isSelected(m_a->guid()));
        QCOMPARE(ground.count(), 0);
        QTest::qWait(pastTheGuard);
        emit GlobalNav::instance()->shortTap(nullptr);
        QVERIFY(root().nothingSelected());
        QCOMPARE(ground.count(), 1);
    }

    void aNodeThatDiesIsDeselected()
    {
        root().selectOneByDomainGuid(m_a->guid());
        const QString guid = m_a->guid();
        QTest::qWait(pastTheGuard);
        Kx::Test::LogCapture log;
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        root().deleteById(guid);
        QVERIFY(root().nothingSelected());
        QVERIFY(!SceneEntities::instance().getNodes().contains(guid));
        // It is asked to go twice, and has gone the second time.
        QCOMPARE(log.count(1, awareness, notOnList), 1);
        QCOMPARE(changed.count(), 2);
        root().deleteById("unknown");
        QCOMPARE(changed.count(), 2);
    }

    void deletingTheSelectedOneTakesItOutOfTheRegistryOnly()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QPointer<Node> kept = m_a;
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        root().deleteSelected();
        QVERIFY(kept);
        QVERIFY(!SceneEntities::instance().getNodes().contains(m_a->guid()));
        QVERIFY(root().isSelected(m_a->guid()));
        QCOMPARE(changed.count(), 1);
        SelectionAwareness::instance().deselectAll();
    }

    void aProjectsChangeForgetsTheSelection()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        root().cleanupBeforeProjectChanged();
        QVERIFY(root().nothingSelected());
        QCOMPARE(changed.count(), 0);
    }

    void connectingNeedsTwo()
    {
        root().selectOneByDomainGuid(m_a->guid());
        root().connectSelectedObjects();
        QVERIFY(root().isSelected(m_a->guid()));
    }

    void theFirstIsConnectedToTheSecond()
    {
        Section* const section = courseOf(m_a, m_b);
        root().setMaxSelection(2);
        root().selectNextByDomainGuid(section->guid());
        root().selectNextByDomainGuid(m_c->guid());
        root().connectSelectedObjects();
        QVERIFY(root().nothingSelected());
        QVERIFY(std::abs(section->length() - 40.0) < 0.02);
        root().connectCancel();
        QVERIFY(std::abs(section->length() - 10.0) < 0.02);

        root().setMaxSelection(2);
        root().selectNextByDomainGuid(section->guid());
        root().selectNextByDomainGuid(m_c->guid());
        root().connectSelectedObjects();
        root().connectApply();
        root().connectCancel();
        QVERIFY(std::abs(section->length() - 40.0) < 0.02);
    }

    void anObjectThatDiedDuringThePreviewIsSkipped()
    {
        Section* const section = courseOf(m_a, m_b);
        root().setMaxSelection(2);
        root().selectNextByDomainGuid(section->guid());
        root().selectNextByDomainGuid(m_c->guid());
        root().connectSelectedObjects();
        delete section;
        root().connectApply();
    }

    void sectionsAreColouredByAColumn()
    {
        const auto colourOf = [](Section* section) { return section->pipe()->appearance().colors.first(); };
        Section* const plain = courseOf(m_a, m_b);
        Section* const coloured = courseOf(m_b, m_c);
        const auto set = [](Section* section, const QVariant& value) {
            const auto record =
                qSharedPointerCast<Torvik::Database::CProjectObject>(Torvik::AppState::instance().getActiveProject())
                    ->lookupObject(section->getDomainObjectId());
            record->updateValue("INS_Purpose", value);
        };
        // Empty as it comes from the database, not a text of no length.
        set(plain, QVariant());
        set(coloured, "bad");
        const QVariantMap palette {{"bad", "#ff0000"}, {"DEFAULTPIPECOLOR", "#0000ff"}};
        root().setSectionsColorWithPalette(palette, "INS_Purpose");
        QCOMPARE(colourOf(plain), QColor("#0000ff"));
        QCOMPARE(colourOf(coloured), QColor("#ff0000"));

        root().setSectionsColorWithPalette({{"DEFAULTPIPECOLOR", "#00ff00"}}, "NoSuchColumn");
        QCOMPARE(colourOf(coloured), QColor("#ff0000"));
        root().setSectionsColorWithPalette({{"good", "#00ff00"}}, "INS_Purpose");
        QCOMPARE(colourOf(coloured), QColor("#ff0000"));
    }

    void nodesAreShownAndHidden()
    {
        courseOf(m_a, m_b);
        m_a->setVisible(false);
        SceneEntities::instance().getNodes().insert("null", nullptr);
        Kx::Test::LogCapture log;
        root().showAllNodes();
        QVERIFY(m_a->isVisible() && m_c->isVisible() && !m_placeless->isVisible());
        QCOMPARE(log.count(1, "Torvik::SceneRoot", "showAllNodes: Node is null"), 1);
        root().hideNodesWithoutParentSection();
        QVERIFY(m_a->isVisible() && m_b->isVisible() && !m_c->isVisible());
        QCOMPARE(log.count(1, "Torvik::SceneRoot", "hideNodesWithoutParentSection: Node is null"), 1);
        SceneEntities::instance().getNodes().take("null");
    }

private:
    SceneRoot& root() { return *m_scene->root; }

    /** Ten metres north from a. */
    Section* courseOf(Node* from, Node* to)
    {
        Section* const section =
            m_scene->section(from, to, {}, {from->position(), from->position() + QVector3D(0, 0, 10)});
        SceneEntities::instance().getPipeEntities().addPipeEntity(section);
        return section;
    }

    std::unique_ptr<NetworkScene> m_scene;
    Node* m_a = nullptr;
    Node* m_b = nullptr;
    Node* m_c = nullptr;
    Node* m_placeless = nullptr;
};

QTEST_GUILESS_MAIN(tst_Selection)
#include "tst_Selection.moc"
