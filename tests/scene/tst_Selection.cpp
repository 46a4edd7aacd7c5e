#include "network/NetworkScene.h"

#include "common/LogCapture.h"
#include "interaction/CameraController.h"
#include "network/ObservationConnection.h"
#include "scene/GlobalNav.h"
#include "scene/SelectionAwareness.h"

#include <Qt3DInput/QMouseEvent>
#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QString awareness = QStringLiteral("Torvik::SelectionAwareness");
const QString notOnList = QStringLiteral("Trying to deselect id, which is not on selection list");
constexpr int pastTheGuard = 370;

const QString noObject = QStringLiteral("Cannot dynamic cast existing QNode to Renderable");
const QColor selectedColour(60, 60, 255);
const QColor usualColour(60, 255, 60);

QColor colourOf(const Section* section)
{
    return section->pipe()->appearance().colors.first();
}

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
        // One from the middle of the list begins it anew as well.
        list.selectNext("b");
        QTest::qWait(pastTheGuard);
        QVERIFY(!list.selectionInProgress());
        list.selectNext("a");
        QVERIFY(list.selectionInProgress());
        list.deselectAll();
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

    void aSelectedObjectShowsIt()
    {
        Section* const section = courseOf(m_a, m_b);
        root().selectOneByDomainGuid(section->guid());
        QCOMPARE(colourOf(section), selectedColour);
        root().selectOneByDomainGuid(m_b->guid());
        QCOMPARE(colourOf(section), usualColour);
        root().setMaxSelection(2);
        root().selectNextByDomainGuid(section->guid());
        QCOMPARE(colourOf(section), selectedColour);
        root().deselectAll();
        QCOMPARE(colourOf(section), usualColour);
    }

    void theOnlySelectedObjectIsNotSelectedAgain()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        QCOMPARE(inVariant(root().selectOneByDomainGuid(m_a->guid())), m_a);
        root().setMaxSelection(2);
        QCOMPARE(inVariant(root().selectNextByDomainGuid(m_a->guid())), m_a);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(root().selectionsCount(), 1);
    }

    void anEmptyEntryAmongTheNodesHidesNoSection()
    {
        Section* const section = courseOf(m_a, m_b);
        SceneEntities::instance().getNodes().insert(section->guid(), nullptr);
        QCOMPARE(root().renderableByDomainGuid(section->guid()), section);
        SceneEntities::instance().getNodes().take(section->guid());
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
        QVERIFY(!root().sceneHasVirtualNodesWithPosition());
        auto* const made = root().createVirtualVisibleNode("V", "CON").value<Node*>();
        QVERIFY(made && made->isVirtual() && made->isVisible());
        QVERIFY(root().sceneHasVirtualNodesWithPosition());
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

    void anotherSelectionLeavesTheGesturesToTheObject()
    {
        CameraController controller;
        GlobalNav::instance()->registerCameraController(&controller);
        root().selectOneByDomainGuid(m_a->guid());
        GlobalNav::instance()->setActiveObjectTransformControl(true);
        root().selectOneByDomainGuid(m_b->guid());
        QVERIFY(root().isSelected(m_b->guid()) && !root().isSelected(m_a->guid()));
        QVERIFY(!controller.isEnabled());
        root().deselectAll(false);
        QVERIFY(!controller.isEnabled());
    }

    void deselectingNothingEndsTheConnectionModeAlone()
    {
        CameraController controller;
        GlobalNav::instance()->registerCameraController(&controller);
        GlobalNav::instance()->setActiveObjectTransformControl(true);
        GlobalNav::instance()->setConnectionMode(true);
        root().setMaxSelection(3);
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        root().deselectAll();
        QVERIFY(!GlobalNav::instance()->connectionMode());
        QCOMPARE(root().maxSelection(), 1);
        QVERIFY(!controller.isEnabled());
        QCOMPARE(changed.count(), 0);
    }

    void anUnknownGuidOnTheListIsLogged()
    {
        Kx::Test::LogCapture log;
        SelectionAwareness::instance().selectOne("ghost");
        root().deselectAll();
        QCOMPARE(log.count(1, "Torvik::SceneRoot", noObject), 1);
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

    void aTapOnTheGroundIsPassedOnAfterDeselecting()
    {
        root().selectOneByDomainGuid(m_a->guid());
        QTest::qWait(pastTheGuard);
        QMouseEvent made(QEvent::MouseButtonRelease, QPointF(5, 5), Qt::LeftButton, {}, {});
        Qt3DInput::QMouseEvent tap(made);
        Qt3DInput::QMouseEvent* told = nullptr;
        bool deselected = false;
        connect(&root(), &SceneRoot::deselectionMouseEvent, this, [&](Qt3DInput::QMouseEvent* event) {
            told = event;
            deselected = root().nothingSelected();
        });
        root().onShortTap(&tap);
        QCOMPARE(told, &tap);
        QVERIFY(deselected);
    }

    void anObjectThatDiesDuringTheGuardStaysOnTheList()
    {
        root().selectOneByDomainGuid(m_a->guid());
        Kx::Test::LogCapture log;
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        root().deleteById(m_a->guid());
        QCOMPARE(root().selectionsCount(), 1);
        QCOMPARE(root().selectedRenderable(), nullptr);
        QCOMPARE(log.count(1, awareness, notOnList), 0);
        QCOMPARE(changed.count(), 2);
    }

    void anObjectIsDeselectedByItsGuid()
    {
        Section* const section = courseOf(m_a, m_b);
        root().selectOneByDomainGuid(section->guid());
        QTest::qWait(pastTheGuard);
        root().deselectByDomainGuid(section->guid());
        QVERIFY(root().nothingSelected());
        QCOMPARE(colourOf(section), usualColour);
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

    void anotherProjectForgetsTheSelectionSilently()
    {
        root().selectOneByDomainGuid(m_a->guid());
        Kx::Test::LogCapture log;
        QSignalSpy changed(&root(), &SceneRoot::selectedRenderableChanged);
        Torvik::AppState::instance().setActiveProject({});
        QVERIFY(root().nothingSelected());
        QCOMPARE(changed.count(), 0);
        QCOMPARE(log.count(1, "Torvik::SceneRoot", noObject), 0);
    }

    void anotherProjectForgetsThePreview()
    {
        Section* const section = courseOf(m_a, m_b);
        preview(section, m_c);
        Torvik::AppState::instance().setActiveProject({});
        root().connectCancel();
        QVERIFY(std::abs(section->length() - 40.0) < 0.02);
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
        preview(section, m_c);
        delete section;
        root().connectApply();
    }

    void whatIsNotThereIsNotConnected()
    {
        Section* const section = courseOf(m_a, m_b);
        auto& list = SelectionAwareness::instance();
        list.selectOne("ghost");
        list.selectNext(section->guid());
        root().connectSelectedObjects();
        QVERIFY(root().nothingSelected());
        list.selectOne(section->guid());
        list.selectNext("ghost");
        root().connectSelectedObjects();
        QVERIFY(root().nothingSelected());
        QCOMPARE(section->length(), 10.0);
    }

    void ofThreeTheFirstTwoAreConnected()
    {
        Section* const section = courseOf(m_a, m_b);
        root().setMaxSelection(3);
        root().selectNextByDomainGuid(section->guid());
        root().selectNextByDomainGuid(m_c->guid());
        root().selectNextByDomainGuid(m_b->guid());
        root().connectSelectedObjects();
        QVERIFY(std::abs(section->length() - 40.0) < 0.02);
    }

    void anAppliedPreviewIsNoLongerTheRoots()
    {
        Section* const section = courseOf(m_a, m_b);
        preview(section, m_c);
        root().connectApply();
        section->connectTo(m_b);
        root().connectCancel();
        QVERIFY(std::abs(section->length() - 20.0) < 0.02);
        section->connectCancel();
        QVERIFY(std::abs(section->length() - 40.0) < 0.02);
    }

    void previewsAreTakenBackTogether()
    {
        Section* const one = courseOf(m_a, m_b);
        Section* const other = courseOf(m_b, m_c);
        preview(one, m_c);
        preview(other, m_a);
        QVERIFY(std::abs(one->length() - 40.0) < 0.02 && std::abs(other->length() - 20.0) < 0.02);
        root().connectCancel();
        QVERIFY(std::abs(one->length() - 10.0) < 0.02 && std::abs(other->length() - 10.0) < 0.02);
    }

    void sectionsAreColouredByAColumn()
    {
        Section* const plain = courseOf(m_a, m_b);
        Section* const coloured = courseOf(m_b, m_c);
        // Empty as it comes from the database, not a text of no length.
        recordOf(plain)->updateValue("INS_Purpose", QVariant());
        recordOf(coloured)->updateValue("INS_Purpose", "bad");
        const QVariantMap palette {{"bad", "#ff0000"}, {"DEFAULTPIPECOLOR", "#0000ff"}};
        root().setSectionsColorWithPalette(palette, "INS_Purpose");
        QCOMPARE(colourOf(plain), QColor("#0000ff"));
        QCOMPARE(colourOf(coloured), QColor("#ff0000"));

        root().setSectionsColorWithPalette({{"DEFAULTPIPECOLOR", "#00ff00"}}, "NoSuchColumn");
        QCOMPARE(colourOf(coloured), QColor("#ff0000"));
        root().setSectionsColorWithPalette({{"good", "#00ff00"}}, "INS_Purpose");
        QCOMPARE(colourOf(coloured), QColor("#ff0000"));
        recordOf(coloured)->updateValue("INS_Purpose", "other");
        root().setSectionsColorWithPalette(palette, "INS_Purpose");
        QCOMPARE(colourOf(coloured), QColor("#0000ff"));
    }

    void aColumnOfThePipeColoursItsInspections()
    {
        Section* const section = courseOf(m_a, m_b);
        recordOf(section)->parentObject().toStrongRef()->updateValue("OBJ_Material", "PVC");
        const QVariantMap palette {{"PVC", "#ff0000"}, {"DEFAULTPIPECOLOR", "#0000ff"}};
        root().setSectionsColorWithPalette(palette, "OBJ_Material");
        QCOMPARE(colourOf(section), QColor("#ff0000"));
    }

    void aSectionWithoutARecordKeepsItsColour()
    {
        Section* const section = courseOf(m_a, m_b);
        const QColor before = colourOf(section);
        QVERIFY(Torvik::Database::ProjectStore::instance().deleteObject(recordOf(section)));
        root().setSectionsColorWithPalette({{"DEFAULTPIPECOLOR", "#0000ff"}}, "INS_Purpose");
        QCOMPARE(colourOf(section), before);
        Torvik::AppState::instance().setActiveProject({});
        root().setSectionsColorWithPalette({{"DEFAULTPIPECOLOR", "#0000ff"}}, "INS_Purpose");
        QCOMPARE(colourOf(section), before);
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

    /** By the two steps of the user. */
    void preview(Section* section, Node* target)
    {
        root().setMaxSelection(2);
        root().selectNextByDomainGuid(section->guid());
        root().selectNextByDomainGuid(target->guid());
        root().connectSelectedObjects();
    }

    CDomainObjectPointer recordOf(Section* section)
    {
        return m_scene->project().project()->lookupObject(section->getDomainObjectId());
    }

    std::unique_ptr<NetworkScene> m_scene;
    Node* m_a = nullptr;
    Node* m_b = nullptr;
    Node* m_c = nullptr;
    Node* m_placeless = nullptr;
};

QTEST_GUILESS_MAIN(tst_Selection)
#include "tst_Selection.moc"
