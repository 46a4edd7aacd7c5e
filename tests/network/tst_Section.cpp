#include "NetworkScene.h"

#include "common/LogCapture.h"
#include "scene/GlobalNav.h"

#include <QtTest>

using namespace Torvik::View3d;

namespace {

const QVector<QVector3D> tenMetresNorth {{0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 10.0F}};
const QString category = QStringLiteral("View3d::Section");

} // namespace

/** How a section comes into being and how it stands to its nodes. */
class tst_Section : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aSectionWithoutAnythingIsAStubBetweenVirtualNodes();
    void creationIsLogged();
    void anUnknownDirectionIsLoggedAndCountsAsUpstream();
    void theStoredShapeIsTheCourse();
    void identity();
    void theNameIsAQuestionMarkUntilItIsSet();
    void diameter_data();
    void diameter();
    void settingTheDiameterTwice();

    void theStartHangsAtHalfTheNodesDepth();
    void recordedDepthsBeatTheNodes();
    void depthsChangeSidesWithTheDirection();
    void aConnectionHasNoDepth();
    void offsetShiftsTheOutletIntoTheCourse();
    void aSectionGoesAlongWithItsStartNode();
    void aSectionAtAConnectionStaysWhereItIs();
    void aManualSectionStaysWhereItIs();
    void aSectionOfAnotherSourceStartsAtItsNode();
    void aSectionThatIsBoundNoLongerFollowsItsStartNode();
    void aSectionInPlaceStaysSilent();

    void modifyingReadsTheRecordAgain();

private:
    Node* nodeAt(const QVector3D& place, const QVariantMap& values = {}, int flags = TransformFlags::GIS)
    {
        return m_scene->nodeAt(place, values, flags);
    }

    std::unique_ptr<NetworkScene> m_scene;
};

void tst_Section::init()
{
    m_scene = std::make_unique<NetworkScene>();
}

void tst_Section::cleanup()
{
    m_scene.reset();
    GlobalNav::instance()->setRealTimeEnabled(false);
}

void tst_Section::aSectionWithoutAnythingIsAStubBetweenVirtualNodes()
{
    Section* const section = m_scene->section(nullptr, nullptr);

    QVERIFY(section->startNode() && section->startNode()->isVirtual() && !section->startNode()->isVisible());
    QVERIFY(section->endNode() && section->endNode()->isVirtual() && !section->endNode()->isVisible());
    QVERIFY(section->startNode() != section->endNode());
    QCOMPARE(section->startNode()->nodeType(), QStringLiteral("NOD"));
    QCOMPARE(section->length(), double(0.01F));
    QCOMPARE(section->pipe()->radius(), 0.15F);
    QCOMPARE(section->diameter(), 300.0);
    QCOMPARE(section->transformFlags(), 0);
    VERIFY_NEAR(section->position(), QVector3D(0.0F, -0.5F, 0.0F));
    QVERIFY(!section->hasMultipipe());
    QVERIFY(!section->hasUpstreamNode());
    QVERIFY(!section->hasDownstreamNode());
}

void tst_Section::creationIsLogged()
{
    const Kx::Test::LogCapture log;

    m_scene->section(nullptr, nullptr);

    QCOMPARE(log.count(4, category, "create"), 1);
}

void tst_Section::anUnknownDirectionIsLoggedAndCountsAsUpstream()
{
    const auto pipe = m_scene->project().addSection("S", nullptr, nullptr);
    const auto inspection = m_scene->project().addInspection(pipe, {}, 7);
    const Kx::Test::LogCapture log;

    Section* const section = m_scene->section(inspection);

    QCOMPARE(log.count(1, category, "Cannot setup inspection flow for ? "), 1);
    QVERIFY(section->inspectionDirUnknown());
    QVERIFY(section->inspectionUpstream());
    QCOMPARE(section->upstreamNode(), section->startNode());
    QCOMPARE(section->downstreamNode(), section->endNode());

    section->setName("S7");
    section->setInspectionDirection();
    QCOMPARE(log.count(1, category, "Cannot setup inspection flow for S7 "), 1);
}

void tst_Section::theStoredShapeIsTheCourse()
{
    for (const int direction : {1, 2}) {
        Section* const section =
            m_scene->section(nullptr, nullptr, {}, {{1.0F, 2.0F, 3.0F}, {1.0F, 2.0F, 7.0F}, {4.0F, 2.0F, 7.0F}},
                             TransformFlags::Manual, direction);

        const auto shapes = section->getShapePoints();
        QCOMPARE(shapes.size(), 1);
        QCOMPARE(shapes.first().size(), 3);
        VERIFY_NEAR(shapes.first().at(0), QVector3D(1.0F, 2.0F, 3.0F));
        VERIFY_NEAR(shapes.first().at(1), QVector3D(1.0F, 2.0F, 7.0F));
        VERIFY_NEAR(shapes.first().at(2), QVector3D(4.0F, 2.0F, 7.0F));
        QCOMPARE(section->length(), 7.0);
        QCOMPARE(section->transformFlags(), int(TransformFlags::Manual));
        VERIFY_NEAR(section->connectionPoint(nullptr), QVector3D(4.0F, 2.0F, 7.0F));
        VERIFY_NEAR(section->center(), QVector3D(0.0F, 0.0F, 3.5F));
    }
}

void tst_Section::identity()
{
    const auto pipe = m_scene->project().addSection("S", nullptr, nullptr);
    const auto inspection = m_scene->project().addInspection(pipe);
    Section* const section = m_scene->section(inspection);

    QCOMPARE(section->renderableType(), QStringLiteral("section"));
    QCOMPARE(section->guid(), inspection->id());
    QCOMPARE(section->getDomainObjectId(), inspection->id());
    QCOMPARE(section->getInspectionObjectId(), inspection->id());
    QCOMPARE(section->wktPrefix(), QStringLiteral("LINESTRING ZM"));
    QCOMPARE(section->orientation(), QQuaternion());

    Section bare(m_scene->root.get(), nullptr);
    QVERIFY(bare.guid().startsWith("rnd_"));
    QCOMPARE(bare.getDomainObjectId(), QString());
}

void tst_Section::theNameIsAQuestionMarkUntilItIsSet()
{
    Section* const section = m_scene->section(nullptr, nullptr);
    const QSignalSpy named(section, &Section::nameChanged);
    QCOMPARE(section->name(), QStringLiteral("?"));

    section->setName("?");
    QCOMPARE(named.count(), 1);
    section->setName("S1");
    section->setName("S1");
    QCOMPARE(named.count(), 2);
    QCOMPARE(section->name(), QStringLiteral("S1"));

    section->refreshName();
    QCOMPARE(section->name(), QStringLiteral("S"));
}

void tst_Section::diameter_data()
{
    QTest::addColumn<QVariant>("size");
    QTest::addColumn<double>("diameter");
    QTest::addColumn<float>("radius");
    QTest::newRow("none") << QVariant() << 300.0 << 0.15F;
    QTest::newRow("0") << QVariant(0) << 300.0 << 0.15F;
    QTest::newRow("1000") << QVariant(1000) << 1000.0 << 0.5F;
    QTest::newRow("50") << QVariant(50) << 50.0 << 0.05F;
    QTest::newRow("40") << QVariant(40) << 40.0 << 0.05F;
}

void tst_Section::diameter()
{
    QFETCH(QVariant, size);
    Section* const section = m_scene->section(nullptr, nullptr, {{"OBJ_Size1", size}});

    QTEST(section->diameter(), "diameter");
    QTEST(section->pipe()->radius(), "radius");
    QTEST(section->pipeScale(), "radius");
}

void tst_Section::settingTheDiameterTwice()
{
    Section* const section = m_scene->section(nullptr, nullptr);

    section->setDiameter(500.0);
    section->setDiameter(500.0);
    QCOMPARE(section->pipe()->radius(), 0.25F);

    section->setDiameter(0.0);
    QCOMPARE(section->diameter(), 300.0);
}

void tst_Section::theStartHangsAtHalfTheNodesDepth()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F}, {{"OBJ_DepthToInvert", 3.0}});

    Section* const section = m_scene->section(start, nullptr, {{"OBJ_FromNodeDepth", 0.0}});

    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.5F, 20.0F));
    QCOMPARE(section->fromNodeDepth(), 1.5F);
}

void tst_Section::recordedDepthsBeatTheNodes()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F}, {{"OBJ_DepthToInvert", 3.0}});
    Node* const end = nodeAt({10.0F, 5.0F, 60.0F}, {{"OBJ_DepthToInvert", 3.0}});

    Section* const section = m_scene->section(start, end, {{"OBJ_FromNodeDepth", 2.0}, {"OBJ_ToNodeDepth", 2.5}});

    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.0F));
    QCOMPARE(section->getOutletDepthOffset(start), 2.0F);
    QCOMPARE(section->getOutletDepthOffset(end), 2.5F);
}

void tst_Section::depthsChangeSidesWithTheDirection()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Node* const end = nodeAt({10.0F, 5.0F, 60.0F});

    Section* const section = m_scene->section(start, end, {{"OBJ_FromNodeDepth", 2.0}, {"OBJ_ToNodeDepth", 2.5}}, {},
                                              TransformFlags::Manual, 2);

    QCOMPARE(section->startNode(), start);
    QCOMPARE(section->getOutletDepthOffset(start), 2.5F);
    QCOMPARE(section->getOutletDepthOffset(end), 2.0F);
    QCOMPARE(section->getOutletDepthOffset(nullptr), 2.0F);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 2.5F, 20.0F));
    QCOMPARE(section->upstreamNode(), end);
    QCOMPARE(section->downstreamNode(), start);
}

void tst_Section::aConnectionHasNoDepth()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F}, {{"OBJ_DepthToInvert", 3.0}, {"OBJ_Type", "CON"}});

    Section* const section = m_scene->section(start, nullptr, {{"OBJ_FromNodeDepth", 2.0}});

    QCOMPARE(section->fromNodeDepth(), 0.0F);
    VERIFY_NEAR(section->position(), start->position());
}

void tst_Section::offsetShiftsTheOutletIntoTheCourse()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});

    Section* const section = m_scene->section(start, nullptr, {{"OBJ_Offset", 0.4}, {"OBJ_FromNodeDepth", 2.0}});

    // The stub runs along +z.
    VERIFY_NEAR(section->getOutletOffset(), QVector3D(0.0F, 0.0F, -0.4F));
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.4F));
}

void tst_Section::aSectionGoesAlongWithItsStartNode()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(start, nullptr, {{"OBJ_FromNodeDepth", 2.0}});
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    start->setPosition({11.0F, 6.0F, 20.0F}, TransformFlags::Manual);

    VERIFY_NEAR(section->position(), QVector3D(11.0F, 4.0F, 20.0F));
    // Once by the alignment, once by the tie itself.
    QCOMPARE(geometry.count(), 2);
}

void tst_Section::aSectionAtAConnectionStaysWhereItIs()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F}, {{"OBJ_Type", "CON"}});
    Section* const section = m_scene->section(start, nullptr);
    const QVector3D before = section->position();

    start->setPosition({11.0F, 6.0F, 20.0F}, TransformFlags::Manual);

    QCOMPARE(section->position(), before);
}

void tst_Section::aManualSectionStaysWhereItIs()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(start, nullptr, {}, tenMetresNorth, TransformFlags::Manual);

    VERIFY_NEAR(section->position(), QVector3D());
    section->alignToOutlet(start);
    VERIFY_NEAR(section->position(), QVector3D());
    start->setPosition({11.0F, 6.0F, 20.0F}, TransformFlags::Manual);
    VERIFY_NEAR(section->position(), QVector3D());
    section->alignToOutlet(nullptr);
}

void tst_Section::aSectionOfAnotherSourceStartsAtItsNode()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section =
        m_scene->section(start, nullptr, {{"OBJ_FromNodeDepth", 2.0}}, tenMetresNorth, TransformFlags::GIS);

    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.0F));
    QCOMPARE(section->transformFlags(), int(TransformFlags::GIS));
    // It stands there, but doesn't go along.
    start->setPosition({11.0F, 5.0F, 20.0F}, TransformFlags::Manual);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 3.0F, 20.0F));
}

void tst_Section::aSectionThatIsBoundNoLongerFollowsItsStartNode()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(start, nullptr);
    section->setTransformFlags(TransformFlags::Geosensor);
    const QVector3D before = section->position();

    start->setPosition({11.0F, 6.0F, 20.0F}, TransformFlags::Manual);

    QCOMPARE(section->position(), before);
}

void tst_Section::aSectionInPlaceStaysSilent()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    Section* const section = m_scene->section(start, nullptr);
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);

    section->alignToOutlet(start);

    QCOMPARE(geometry.count(), 0);
}

void tst_Section::modifyingReadsTheRecordAgain()
{
    Node* const start = nodeAt({10.0F, 5.0F, 20.0F});
    const auto pipe = m_scene->project().addSection("S", NetworkScene::recordOf(start), nullptr);
    Section* const section = m_scene->section(m_scene->project().addInspection(pipe));
    const QSignalSpy geometry(section, &Section::sectionGeometryChanged);
    pipe->updateValue("OBJ_Size1", 800);
    pipe->updateValue("OBJ_FromNodeDepth", 3.0);

    section->modify();

    QCOMPARE(section->pipe()->radius(), 0.4F);
    VERIFY_NEAR(section->position(), QVector3D(10.0F, 2.0F, 20.0F));
    QVERIFY(geometry.count() >= 1);
    QCOMPARE(section->startNode(), start);
}

QTEST_MAIN(tst_Section)
#include "tst_Section.moc"
