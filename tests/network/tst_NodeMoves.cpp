#include "NodeScene.h"

#include "common/LogCapture.h"

#include <QtTest>

using namespace Torvik::View3d;

/** How a node follows the pipes at it, and where it goes by itself. */
class tst_NodeMoves : public QObject, private NodeScene {
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void movingToTheStartOfNothingIsLogged();
    void movingToTheStartRaisesByTheDepth();
    void movingToARenderableTakesItsPlaceAndRotation();
    void aSnappedNodeFollowsItsSection();
    void snappingAddsTheSourceWithoutASignal();
    void aBoundNodeDoesNotSnap();
    void aNodeFollowsOneSectionOnly();
    void movingWithoutASectionIsLogged();
    void aBurstOfChangesMovesTheNodeOnce();
    void anUnchangedPlaceOnlyResetsTheFlags();
    void storedPositionBeatsThePipesEnd_data();
    void storedPositionBeatsThePipesEnd();
    void aNodeThatTheUserPlacedNoLongerFollowsItsSection();
    void unsnappingFromAnotherSectionDoesNothing();
    void aLinkedNodeGoesAlongWithTheStart();
    void aBoundNodeDoesNotGoAlongWithTheStart();
    void disconnectingTheSectionCutsTheLink();
    void connectionPointLiesAtThePipe();

    void anotherTieToTheEarthEndsEditing();
    void aMoveIsStored();
    void aDestroyedNodeLeavesItsSections();
    void aDestroyedSectionLetsItsFollowerGo();
};

void tst_NodeMoves::movingToTheStartOfNothingIsLogged()
{
    Node* const node = virtualNode();
    const Kx::Test::LogCapture log;

    node->moveToStart(nullptr);

    QCOMPARE(log.count(1, "View3d::Node", "Node::calculateTranslation Section is null"), 1);
    QCOMPARE(node->position(), QVector3D());
}

void tst_NodeMoves::movingToTheStartRaisesByTheDepth()
{
    Section* const section = m_scene->section(realNode(), nullptr, {{"OBJ_ToNodeDepth", 2.0}});
    section->transform()->setTranslation({1.0F, -3.0F, 2.0F}, 0);
    Node* const node = virtualNode();

    node->moveToStart(section);

    VERIFY_NEAR(node->position(), QVector3D(1.0F, -1.0F, 2.0F));
    QCOMPARE(node->transformFlags(), int(TransformFlags::Observations));
}

void tst_NodeMoves::movingToARenderableTakesItsPlaceAndRotation()
{
    Node* const other = virtualNode();
    other->setPosition({1.0F, 2.0F, 3.0F}, TransformFlags::GPS);
    other->setRotation(QQuaternion::fromAxisAndAngle(0.0F, 1.0F, 0.0F, 90.0F), 0);
    Node* const node = virtualNode();

    node->moveToRenderable(other);

    QCOMPARE(node->position(), other->position());
    QCOMPARE(node->rotation(), other->rotation());
    QCOMPARE(node->transformFlags(), int(TransformFlags::Observations));
}

void tst_NodeMoves::aSnappedNodeFollowsItsSection()
{
    Section* const section =
        m_scene->section(realNode(), nullptr, {{"OBJ_ToNodeDepth", 2.0}}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});
    Node* const end = section->endNode();
    QVERIFY(end->isVirtual());
    QCOMPARE(end->snappedSection(), section);

    section->transform()->setTranslation({5.0F, 0.0F, 0.0F}, 0);

    VERIFY_NEAR(end->position(), QVector3D(5.0F, 2.0F, 10.0F));
    section->setRotation(QQuaternion::fromDirection({1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}), 0);
    VERIFY_NEAR(end->position(), QVector3D(15.0F, 2.0F, 0.0F));
    section->onDistanceCounterChanged(12.0);
    VERIFY_NEAR(end->position(), QVector3D(17.0F, 2.0F, 0.0F));
}

void tst_NodeMoves::snappingAddsTheSourceWithoutASignal()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();
    node->setPosition(section->endNode()->position(), 0);
    const QSignalSpy flags(node->transform(), &FlaggedTransform::flagsChanged);

    node->snapToSection(section);

    QCOMPARE(node->transformFlags(), int(TransformFlags::Observations));
    QCOMPARE(flags.count(), 0);
}

void tst_NodeMoves::aBoundNodeDoesNotSnap()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();
    node->setPosition({1.0F, 2.0F, 3.0F}, TransformFlags::Manual);

    node->snapToSection(section);
    node->moveToEnd();

    QVERIFY(!node->snappedSection());
    QCOMPARE(node->transformFlags(), int(TransformFlags::Manual));
    QCOMPARE(node->position(), QVector3D(1.0F, 2.0F, 3.0F));
}

void tst_NodeMoves::aNodeFollowsOneSectionOnly()
{
    Section* const first = m_scene->section(realNode(), nullptr);
    Section* const second = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();

    node->snapToSection(first);
    node->snapToSection(second);
    QCOMPARE(node->snappedSection(), first);

    node->unSnapFromSection(first);
    node->snapToSection(second);
    QCOMPARE(node->snappedSection(), second);
}

void tst_NodeMoves::movingWithoutASectionIsLogged()
{
    Node* const virtualOne = virtualNode();
    Node* const realOne = realNode({}, QString());
    const Kx::Test::LogCapture log;

    virtualOne->moveToEnd();
    realOne->moveToEnd();

    QCOMPARE(log.count(1, "View3d::Node", "Node::calculateTranslation Section is null"), 2);
    QCOMPARE(virtualOne->position(), QVector3D());
    QCOMPARE(realOne->position(), QVector3D());
}

void tst_NodeMoves::aBurstOfChangesMovesTheNodeOnce()
{
    Node* const end = realNode({}, QString());
    Section* const section =
        m_scene->section(realNode(), end, {{"OBJ_ToNodeDepth", 2.0}}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});
    section->setEndDistance(10.0F);
    section->lockAsEnded();
    QCoreApplication::processEvents();
    const QSignalSpy moved(end->transform(), &FlaggedTransform::translationChanged);

    section->transform()->setTranslation({5.0F, 0.0F, 0.0F}, 0);
    section->transform()->setTranslation({6.0F, 0.0F, 0.0F}, 0);
    emit section->sectionGeometryChanged();

    QCOMPARE(moved.count(), 1);
    VERIFY_NEAR(end->position(), QVector3D(5.0F, 2.0F, 10.0F));
    QCoreApplication::processEvents();
    emit section->sectionGeometryChanged();
    QCOMPARE(moved.count(), 2);
    VERIFY_NEAR(end->position(), QVector3D(6.0F, 2.0F, 10.0F));
}

void tst_NodeMoves::anUnchangedPlaceOnlyResetsTheFlags()
{
    Node* const end = realNode({}, QString());
    Section* const section = m_scene->section(realNode(), end, {}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});
    section->setEndDistance(10.0F);
    section->lockAsEnded();
    QCoreApplication::processEvents();
    end->setTransformFlags(0);
    const QSignalSpy moved(end->transform(), &FlaggedTransform::translationChanged);

    end->moveToEnd();

    QCOMPARE(moved.count(), 0);
    QCOMPARE(end->transformFlags(), int(TransformFlags::Observations));
}

void tst_NodeMoves::storedPositionBeatsThePipesEnd_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVector3D>("expected");
    // The pipe ends 10 m north of the origin, 2 m below the node.
    QTest::newRow("nothing stored") << QString() << QVector3D(0.0F, 2.0F, 10.0F);
    QTest::newRow("place and height") << "POINT ZM(-7 8 9 0)" << QVector3D(7.0F, 9.0F, 8.0F);
    QTest::newRow("no northing") << "POINT ZM(-7 0 9 0)" << QVector3D(0.0F, 9.0F, 10.0F);
    QTest::newRow("no height") << "POINT ZM(-7 8 0 0)" << QVector3D(7.0F, 2.0F, 8.0F);
    QTest::newRow("only a height") << "POINT ZM(0 0 9 0)" << QVector3D(0.0F, 9.0F, 10.0F);
}

void tst_NodeMoves::storedPositionBeatsThePipesEnd()
{
    QFETCH(QString, shape);
    QFETCH(QVector3D, expected);
    Node* const end = realNode({}, shape);
    Section* const section =
        m_scene->section(realNode(), end, {{"OBJ_ToNodeDepth", 2.0}}, {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}});

    section->setEndDistance(10.0F);
    end->snapToSection(section);

    VERIFY_NEAR(end->position(), expected);
}

void tst_NodeMoves::aNodeThatTheUserPlacedNoLongerFollowsItsSection()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const end = section->endNode();
    const QVector3D before = end->position();

    end->move({1.0F, 0.0F, 0.0F}, TransformFlags::GPS);
    section->transform()->setTranslation({50.0F, 0.0F, 0.0F}, 0);
    emit section->sectionGeometryChanged();

    QCOMPARE(end->transformFlags(), int(TransformFlags::Manual));
    QVERIFY(!end->snappedSection());
    QCOMPARE(end->position(), before + QVector3D(1.0F, 0.0F, 0.0F));
}

void tst_NodeMoves::unsnappingFromAnotherSectionDoesNothing()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Section* const other = m_scene->section(realNode(), nullptr);
    Node* const end = section->endNode();

    end->unSnapFromSection(other);
    QCOMPARE(end->snappedSection(), section);

    end->unSnapFromSection(nullptr);
    QCOMPARE(end->snappedSection(), section);
}

void tst_NodeMoves::aLinkedNodeGoesAlongWithTheStart()
{
    Section* const section = m_scene->section(realNode(), nullptr, {{"OBJ_ToNodeDepth", 2.0}});
    section->setTransformFlags(TransformFlags::Observations);
    Node* const node = virtualNode();
    node->setTransformFlags(TransformFlags::Observations);

    node->linkToBegining(section);
    node->linkToBegining(section);
    const QSignalSpy moved(node->transform(), &FlaggedTransform::translationChanged);
    section->transform()->setTranslation({3.0F, 1.0F, 0.0F}, 0);

    QCOMPARE(moved.count(), 1);
    VERIFY_NEAR(node->position(), QVector3D(3.0F, 1.0F + section->toNodeDepth(), 0.0F));
}

void tst_NodeMoves::aBoundNodeDoesNotGoAlongWithTheStart()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const node = virtualNode();
    node->linkToBegining(section);

    section->setTransformFlags(TransformFlags::Observations);
    node->setTransformFlags(TransformFlags::Manual);
    section->transform()->setTranslation({3.0F, 1.0F, 0.0F}, 0);
    QCOMPARE(node->position(), QVector3D());

    section->setTransformFlags(0);
    node->setTransformFlags(TransformFlags::Observations);
    section->transform()->setTranslation({4.0F, 1.0F, 0.0F}, 0);
    QCOMPARE(node->position(), QVector3D());
}

void tst_NodeMoves::disconnectingTheSectionCutsTheLink()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    section->setTransformFlags(TransformFlags::Observations);
    Node* const node = virtualNode();
    node->setTransformFlags(TransformFlags::Observations);
    node->connectSection(section);
    node->linkToBegining(section);

    node->disconnectSection(section);
    section->transform()->setTranslation({3.0F, 1.0F, 0.0F}, 0);

    QCOMPARE(node->position(), QVector3D());
}

void tst_NodeMoves::connectionPointLiesAtThePipe()
{
    Node* const start = realNode({{"OBJ_DepthToInvert", 4.0}});
    Section* const section = m_scene->section(start, nullptr, {{"OBJ_ToNodeDepth", 3.0}});

    VERIFY_NEAR(start->connectionPoint(section), start->position() - QVector3D(0.0F, 3.0F, 0.0F));
    VERIFY_NEAR(start->connectionPoint(virtualNode()), start->position());
    VERIFY_NEAR(start->connectionPoint(nullptr), start->position());
}

void tst_NodeMoves::anotherTieToTheEarthEndsEditing()
{
    Node* const node = realNode();
    const QSignalSpy finished(node, &Node::editingFinished);

    NetworkScene::tieToEarth();

    QCOMPARE(finished.count(), 1);
}

void tst_NodeMoves::aMoveIsStored()
{
    Node* const node = realNode();
    const auto record = NetworkScene::recordOf(node);

    node->move({1.0F, 0.0F, 0.0F}, TransformFlags::Manual);

    QTRY_COMPARE(m_scene->project().stored("NODE", "OBJ_PK", record->id(), "OBJ_Shape_WKT").toString(),
                 QStringLiteral("POINT ZM(-11 20 5 4)"));
}

void tst_NodeMoves::aDestroyedNodeLeavesItsSections()
{
    Node* const start = realNode();
    Node* const end = realNode();
    Section* const section = m_scene->section(start, end);

    delete start;
    QCOMPARE(section->startNode(), nullptr);
    QCOMPARE(section->endNode(), end);
    QCOMPARE(section->fromNodeDepth(), 0.0F);

    delete end;
    QCOMPARE(section->endNode(), nullptr);
}

void tst_NodeMoves::aDestroyedSectionLetsItsFollowerGo()
{
    Section* const section = m_scene->section(realNode(), nullptr);
    Node* const end = section->endNode();

    delete section;

    QVERIFY(!end->snappedSection());
    QVERIFY(!end->isConnected());
    Section* const next = m_scene->section(realNode(), nullptr);
    end->snapToSection(next);
    QCOMPARE(end->snappedSection(), next);
}

QTEST_MAIN(tst_NodeMoves)
#include "tst_NodeMoves.moc"
