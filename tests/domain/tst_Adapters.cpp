#include "common/TestProject.h"
#include "domain/NodeAdapter.h"
#include "domain/NotificationMapper.h"
#include "domain/ObservationAdapter.h"
#include "domain/SectionAdapter.h"
#include "domain/boundary/CDatabaseLibrary.h"
#include "domain/boundary/Notifications.h"
#include "host/domain/HostSettings.h"

#include <QPointer>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
using Kx::Test::TestProject;
using Torvik::Database::CDomainObjectProxy;

namespace {

CDomainObjectProxy* proxyOf(const CDomainObjectPointer& object)
{
    return new CDomainObjectProxy(sharedNotificationMapper(), object, nullptr);
}

} // namespace

/** What scene objects get to see of a record. */
class tst_Adapters : public QObject {
    Q_OBJECT

private slots:
    void aNodeReadsItsColumns()
    {
        TestProject project;
        const auto node = project.addNode(
            QStringLiteral("A"), QStringLiteral("POINT ZM(1 2 3 16)"),
            {{"OBJ_Type", "BLD"}, {"OBJ_DepthToInvert", 2.5}, {"OBJ_Size1", 1200}, {"OBJ_Offset", 0.25}});
        const NodeAdapter adapter(proxyOf(node), nullptr);
        QCOMPARE(adapter.key(), QStringLiteral("A"));
        QCOMPARE(adapter.id(), node->id());
        QCOMPARE(adapter.type(), QStringLiteral("BLD"));
        QCOMPARE(adapter.shape().toString(), QStringLiteral("POINT ZM(1 2 3 16)"));
        QCOMPARE(adapter.depthToInvert().toDouble(), 2.5);
        QCOMPARE(adapter.diameter().toDouble(), 1.2);
        QCOMPARE(adapter.offset().toDouble(), 0.25);
        QCOMPARE(adapter.getDomainObject().toStrongRef(), node);
    }

    void aNodesProxyDiesWithItsAdapter()
    {
        TestProject project;
        const QPointer<CDomainObjectProxy> proxy = proxyOf(project.addNode(QStringLiteral("A")));
        auto adapter = std::make_unique<NodeAdapter>(proxy, nullptr);
        QCOMPARE(adapter->getProxy(), proxy.data());
        adapter.reset();
        QVERIFY(proxy.isNull());
    }

    void aNodeThatHasGoneReadsAsEmpty()
    {
        auto project = std::make_unique<TestProject>();
        auto node = project->addNode(QStringLiteral("A"));
        const NodeAdapter adapter(proxyOf(node), nullptr);
        node.reset();
        project.reset();
        QVERIFY(adapter.key().isEmpty());
        QVERIFY(adapter.id().isEmpty());
        QVERIFY(!adapter.shape().isValid());
        QVERIFY(!adapter.diameter().isValid());
    }

    void aSectionReadsPipeAndInspection()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"));
        const auto b = project.addNode(QStringLiteral("B"));
        const auto pipe = project.addSection(QStringLiteral("A-B"), a, b,
                                             {{"OBJ_Size1", 400},
                                              {"OBJ_FromNodeDepth", 1.5},
                                              {"OBJ_ToNodeDepth", 2.5},
                                              {"OBJ_Offset", 0.25},
                                              {"OBJ_Length", 42.5}});
        const auto inspection = project.addInspection(pipe, {}, 2);
        SectionAdapter adapter(inspection, proxyOf(pipe));
        QCOMPARE(adapter.sectionId(), pipe->id());
        QCOMPARE(adapter.getSectionObjectId(), pipe->id());
        QCOMPARE(adapter.inspectionId(), inspection->id());
        QCOMPARE(adapter.getInspectionObjectId(), inspection->id());
        QVERIFY(adapter.isSection());
        QVERIFY(!adapter.isLateral());
        QCOMPARE(adapter.name(), QStringLiteral("A-B"));
        QCOMPARE(adapter.inspectionDir(), 2);
        // The inspection's nodes, which run against the pipe's here.
        QCOMPARE(adapter.startNodeId(), b->id());
        QCOMPARE(adapter.endNodeId(), a->id());
        QCOMPARE(adapter.fromNodeDepth().toFloat(), 1.5F);
        QCOMPARE(adapter.toNodeDepth().toFloat(), 2.5F);
        QCOMPARE(adapter.diameter().toFloat(), 400.0F);
        QCOMPARE(adapter.offset().toDouble(), 0.25);
        QCOMPARE(adapter.sectionLength().toDouble(), 42.5);
    }

    void emptyColumnsOfASectionReadAsZeroAndNodesItHasNotAsNull()
    {
        TestProject project;
        const auto pipe = project.addLateral(QStringLiteral("L"), {});
        SectionAdapter adapter(project.addInspection(pipe, {}, 0), proxyOf(pipe));
        QVERIFY(adapter.isLateral());
        QVERIFY(!adapter.isSection());
        QCOMPARE(adapter.diameter(), QVariant(0.0F));
        QCOMPARE(adapter.fromNodeDepth(), QVariant(0.0F));
        QCOMPARE(adapter.toNodeDepth(), QVariant(0.0F));
        QVERIFY(adapter.offset().isNull());
        QVERIFY(adapter.startNodeId().isNull());
        QVERIFY(adapter.endNodeId().isNull());
    }

    void aSectionsProxyDiesWithItsAdapter()
    {
        TestProject project;
        const auto pipe = project.addLateral(QStringLiteral("L"), {});
        const QPointer<CDomainObjectProxy> proxy = proxyOf(pipe);
        {
            SectionAdapter adapter(project.addInspection(pipe, {}, 0), proxy);
        }
        QVERIFY(proxy.isNull());
    }

    void anObservationReadsItsColumns()
    {
        TestProject project;
        const auto pipe = project.addSection(QStringLiteral("S"), {}, {});
        const auto observation = project.addObservation(project.addInspection(pipe, {}, 0), QStringLiteral("BCC"), 10.0,
                                                        {{"OBS_LateralSection_REF", "lateral"},
                                                         {"OBS_BendClkH", 3},
                                                         {"OBS_JointAngle", 15},
                                                         {"OBS_Q1_Value", 30},
                                                         {"OBS_ClockPos1", 9}});
        const std::unique_ptr<CDomainObjectProxy> proxy(proxyOf(observation));
        const ObservationAdapter adapter(proxy.get(), nullptr);
        QCOMPARE(adapter.code(), QStringLiteral("BCC"));
        QCOMPARE(adapter.codeTypeFlags() & 0x400U, 0x400U);
        QCOMPARE(adapter.observationId(), observation->id());
        QCOMPARE(adapter.distanceMeters(), 10.0F);
        QCOMPARE(adapter.lateralSectionRef().toString(), QStringLiteral("lateral"));
        QCOMPARE(adapter.bendClock().toInt(), 3);
        QCOMPARE(adapter.jointAngle().toInt(), 15);
        QCOMPARE(adapter.q1Value().toInt(), 30);
        QCOMPARE(adapter.clockPos1().toInt(), 9);
        QVERIFY(!proxy->parent());
    }

    void aPipeThatHasGoneReadsAsEmpty()
    {
        auto project = std::make_unique<TestProject>();
        QSharedPointer<Torvik::Database::CGenericPipeObject> pipe =
            project->addLateral(QStringLiteral("L"), {}, {{"OBJ_FromNodeDepth", 1.5}, {"OBJ_ToNodeDepth", 2.5}});
        SectionAdapter adapter(project->addInspection(pipe, {}, 0), proxyOf(pipe));
        QVERIFY(adapter.isLateral());
        pipe.reset();
        project.reset();
        QVERIFY(adapter.sectionId().isEmpty());
        QVERIFY(adapter.getSectionObjectId().isEmpty());
        QVERIFY(!adapter.isLateral());
        QVERIFY(!adapter.isSection());
        QVERIFY(adapter.name().isEmpty());
        QCOMPARE(adapter.fromNodeDepth().toFloat(), 0.0F);
        QCOMPARE(adapter.toNodeDepth().toFloat(), 0.0F);
        QCOMPARE(adapter.diameter().toFloat(), 0.0F);
    }

    void anObservationThatHasGoneReadsAsEmpty()
    {
        auto project = std::make_unique<TestProject>();
        auto observation =
            project->addObservation(project->addInspection(project->addSection(QStringLiteral("S"), {}, {}), {}, 0),
                                    QStringLiteral("BCC"), 10.0);
        const std::unique_ptr<CDomainObjectProxy> proxy(proxyOf(observation));
        const ObservationAdapter adapter(proxy.get(), nullptr);
        QVERIFY(adapter.codeTypeFlags() != 0U);
        observation.reset();
        project.reset();
        QVERIFY(adapter.code().isEmpty());
        QVERIFY(adapter.observationId().isEmpty());
        QCOMPARE(adapter.codeTypeFlags(), 0U);
        QCOMPARE(adapter.distanceMeters(), 0.0F);
        QVERIFY(!adapter.q1Value().isValid());
    }

    void aProjectInFeetGivesDistancesInMetres()
    {
        TestProject project;
        const auto pipe = project.addSection(QStringLiteral("S"), {}, {});
        const auto observation =
            project.addObservation(project.addInspection(pipe, {}, 0), QStringLiteral("BAB"), 10.0);
        const std::unique_ptr<CDomainObjectProxy> proxy(proxyOf(observation));
        Torvik::Base::HostSettings::setDistanceUnit(2);
        const ObservationAdapter inFeet(proxy.get(), nullptr);
        Torvik::Base::HostSettings::setDistanceUnit(1);
        const ObservationAdapter inMetres(proxy.get(), nullptr);
        QCOMPARE(inFeet.distanceMeters(), 10.0F * 0.3048F);
        QCOMPARE(inMetres.distanceMeters(), 10.0F);
    }
};

QTEST_GUILESS_MAIN(tst_Adapters)
#include "tst_Adapters.moc"
