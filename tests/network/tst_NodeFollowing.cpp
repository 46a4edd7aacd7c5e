#include "NetworkScene.h"

#include "common/LogCapture.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QString missingSection = QStringLiteral("Node::calculateTranslation Section is null");
const QVector<QVector3D> course {{3.0F, -4.0F, 5.0F}, {3.0F, -4.0F, 15.0F}};

} // namespace

/** Which of its sections a node follows, and where to. */
class tst_NodeFollowing : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void whatIsStoredIsJudgedByItsPlainOrdinates_data();
    void whatIsStoredIsJudgedByItsPlainOrdinates();
    void aBoundNodeStaysAtOnce_data();
    void aBoundNodeStaysAtOnce();
    void aRealEndHangsByTheDepthAtItsEndOfThePipe();
    void aVirtualEndHangsByTheDepthAtTheLowerNode();
    void followingTellsItsSource_data();
    void followingTellsItsSource();
    void aDeviationWithinTheNoiseStays();
    void aNodeThatLetGoHearsTheSectionsGeometryOnly();
    void aNodeGoesAlongWithOneStartUntilThatLetsGo();

private:
    Node* realNode(const QString& shape = {}, const QVariantMap& values = {})
    {
        return m_scene->node("N", shape, values);
    }
    Node* virtualNode() { return Node::createVirtual(m_scene->root.get(), false, "V", "NOD"); }

    /** A section whose end is followed by the node at it, real or virtual, which is ready to move again. */
    Section* followed(bool real)
    {
        Section* const section =
            m_scene->section(realNode(), real ? realNode() : nullptr, {{"OBJ_ToNodeDepth", 2.0}}, course);
        section->setEndDistance(10.0F);
        section->lockAsEnded();
        QCoreApplication::processEvents();
        return section;
    }
    static QVector3D pipeEnd(const Section* section)
    {
        return section->pipeTransMatrixAtDistance(float(section->length())).column(3).toVector3D();
    }
    static void endColumns()
    {
        QTest::addColumn<bool>("real");
        QTest::newRow("real") << true;
        QTest::newRow("virtual") << false;
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_NodeFollowing::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_NodeFollowing::cleanup()
{
    m_scene.reset();
}

void tst_NodeFollowing::whatIsStoredIsJudgedByItsPlainOrdinates_data()
{
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QVector3D>("expected");
    // The scene's origin is the stored (100 200 50); the pipe ends at (3, -4, 15), 2 m below its node.
    QTest::newRow("the origin itself") << "POINT ZM(100 200 50 0)" << QVector3D();
    QTest::newRow("zeros, far from the origin") << "POINT ZM(0 0 0 0)" << QVector3D(3.0F, -2.0F, 15.0F);
    QTest::newRow("the origin's height") << "POINT ZM(0 0 50 0)" << QVector3D(3.0F, 0.0F, 15.0F);
    QTest::newRow("a height that is no number") << "POINT ZM(93 208 nan 0)" << QVector3D(7.0F, -2.0F, 8.0F);
}

void tst_NodeFollowing::whatIsStoredIsJudgedByItsPlainOrdinates()
{
    QFETCH(QString, shape);
    QFETCH(QVector3D, expected);
    NetworkScene::tieToEarth("POINT ZM(100 200 50 0)");
    Node* const end = realNode(shape);
    Section* const section = m_scene->section(realNode(), end, {{"OBJ_ToNodeDepth", 2.0}}, course);
    section->setPosition({3.0F, -4.0F, 5.0F}, 0);
    section->setEndDistance(10.0F);

    end->snapToSection(section);

    VERIFY_NEAR(end->position(), expected);
}

void tst_NodeFollowing::aBoundNodeStaysAtOnce_data()
{
    endColumns();
}

void tst_NodeFollowing::aBoundNodeStaysAtOnce()
{
    QFETCH(bool, real);
    Section* const section = followed(real);
    Node* const end = section->endNode();
    QCOMPARE(end->snappedSection(), section);
    const QVector3D before = end->position();

    end->setTransformFlags(TransformFlags::GIS);
    section->setPosition({50.0F, 1.0F, 2.0F}, 0);

    QCOMPARE(end->position(), before);
    QCOMPARE(end->transformFlags(), int(TransformFlags::GIS));
}

void tst_NodeFollowing::aRealEndHangsByTheDepthAtItsEndOfThePipe()
{
    // Against the flow the pipe ends at the upper node.
    Section* const section =
        m_scene->section(realNode(), realNode(), {{"OBJ_FromNodeDepth", 3.0}, {"OBJ_ToNodeDepth", 2.0}}, course,
                         TransformFlags::Manual, 2);
    section->setEndDistance(10.0F);
    section->lockAsEnded();

    VERIFY_NEAR(section->endNode()->position(), pipeEnd(section) + QVector3D(0.0F, 3.0F, 0.0F));
}

void tst_NodeFollowing::aVirtualEndHangsByTheDepthAtTheLowerNode()
{
    Section* const section = m_scene->section(
        realNode(), nullptr, {{"OBJ_FromNodeDepth", 3.0}, {"OBJ_ToNodeDepth", 2.0}}, course, TransformFlags::Manual, 2);

    section->onDistanceCounterChanged(12.0);

    QCOMPARE(section->length(), 12.0);
    VERIFY_NEAR(section->endNode()->position(), pipeEnd(section) + QVector3D(0.0F, 2.0F, 0.0F));
}

void tst_NodeFollowing::followingTellsItsSource_data()
{
    endColumns();
}

void tst_NodeFollowing::followingTellsItsSource()
{
    QFETCH(bool, real);
    Section* const section = followed(real);
    Node* const end = section->endNode();
    end->setTransformFlags(0);

    section->setPosition({50.0F, 1.0F, 2.0F}, 0);

    QCOMPARE(end->transformFlags(), int(TransformFlags::Observations));
    VERIFY_NEAR(end->position(), pipeEnd(section) + QVector3D(0.0F, 2.0F, 0.0F));
}

void tst_NodeFollowing::aDeviationWithinTheNoiseStays()
{
    Section* const section = followed(true);
    Node* const end = section->endNode();
    const QVector3D place = end->position();
    const QVector3D almost = place * (1.0F + 5e-6F);
    QVERIFY(almost.x() != place.x() && almost.y() != place.y() && almost.z() != place.z());

    end->setPosition(almost, 0);
    end->moveToEnd();
    // QVector3D's own comparison would not tell the two apart.
    QVERIFY(end->position().x() == almost.x() && end->position().z() == almost.z());

    QCoreApplication::processEvents();
    end->setPosition(place * (1.0F + 5e-5F), 0);
    end->moveToEnd();
    QVERIFY(end->position().x() == place.x() && end->position().z() == place.z());
}

void tst_NodeFollowing::aNodeThatLetGoHearsTheSectionsGeometryOnly()
{
    Section* const section = followed(false);
    Node* const end = section->endNode();
    const QVector3D before = end->position();
    const Kx::Test::LogCapture log;

    end->unSnapFromSection(section);
    section->setPosition({50.0F, 1.0F, 2.0F}, 0);
    section->setRotation(QQuaternion::fromDirection({1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}), 0);
    QCOMPARE(log.count(1, "View3d::Node", missingSection), 0);

    emit section->sectionGeometryChanged();
    QCOMPARE(log.count(1, "View3d::Node", missingSection), 1);
    QCOMPARE(end->position(), before);
}

void tst_NodeFollowing::aNodeGoesAlongWithOneStartUntilThatLetsGo()
{
    Section* const first = m_scene->section(nullptr, nullptr);
    Section* const second = m_scene->section(nullptr, nullptr);
    first->setTransformFlags(TransformFlags::Observations);
    second->setTransformFlags(TransformFlags::Observations);
    Node* const node = virtualNode();
    node->setTransformFlags(TransformFlags::Observations);

    node->linkToBegining(first);
    node->linkToBegining(second);
    second->setPosition({0.0F, 0.0F, 7.0F}, 0);
    QCOMPARE(node->position(), QVector3D());

    node->disconnectSection(first);
    node->linkToBegining(second);
    first->setPosition({0.0F, 0.0F, 8.0F}, 0);
    QCOMPARE(node->position(), QVector3D());
    second->setPosition({0.0F, 0.0F, 9.0F}, 0);
    VERIFY_NEAR(node->position(), QVector3D(0.0F, second->toNodeDepth(), 9.0F));
}

QTEST_MAIN(tst_NodeFollowing)
#include "tst_NodeFollowing.moc"
