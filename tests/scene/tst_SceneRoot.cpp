#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "geo/GdalGeoProjector.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QLayer>
#include <Qt3DRender/QRayCaster>
#include <QtTest>

using namespace Torvik::View3d;
using Kx::Test::LogCapture;
using Kx::Test::TestProject;
using Torvik::AppState;
using Torvik::QmlWrapper::CQmlDomainObject;

namespace {

const QString placeA = QStringLiteral("POINT ZM(570000 5830000 40 16)");
const QString placeB = QStringLiteral("POINT ZM(570030 5830040 39 16)");

} // namespace

class tst_SceneRoot : public QObject {
    Q_OBJECT

private slots:
    void init() { m_root = new SceneRoot; }

    void cleanup()
    {
        AppState::instance().setActiveProject({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_root;
        GdalGeoProjector::instance()->deinit();
    }

    void aNewRootHasItsDefaults()
    {
        QCOMPARE(SceneRoot::instance(), m_root);
        QVERIFY(qobject_cast<Qt3DExtras::QPhongMaterial*>(m_root->materialPipe()));
        QVERIFY(qobject_cast<Qt3DExtras::QPhongMaterial*>(m_root->materialNode()));
        QVERIFY(qobject_cast<Qt3DExtras::QPhongMaterial*>(m_root->materialConnection()));
        QVERIFY(!m_root->materialVertexLabel());
        QVERIFY(m_root->gridVisible());
        QVERIFY(!m_root->backgroundVisible());
        QVERIFY(m_root->planLayerEnabled());
        QVERIFY(m_root->planLayerOnAllViewModesEnabled());
        QVERIFY(m_root->selectionsEnabled());
        QCOMPARE(m_root->maxSelection(), 1);
        QCOMPARE(m_root->sceneWidth(), 300.0);
        QCOMPARE(m_root->sceneHeight(), 300.0);
        QVERIFY(m_root->rayCaster());
        QVERIFY(m_root->components().contains(m_root->rayCaster()));
        QVERIFY(!m_root->layerGrid() && !m_root->layerObservation() && !m_root->layerStructure());
    }

    void theSelectedMaterialIsABlueGoochAndItsForerunnerStays()
    {
        auto* const first = qobject_cast<Qt3DExtras::QGoochMaterial*>(m_root->materialSelected());
        QVERIFY(first);
        QCOMPARE(first->warm(), QColor(12, 12, 255));
        QCOMPARE(first->cool(), QColor(12, 12, 255));
        QCOMPARE(first->alpha(), 0.12F);
        QCOMPARE(first->beta(), 1.0F);
        QCOMPARE(first->shininess(), 0.1F);
        QCOMPARE(first->diffuse(), QColor(Qt::black));
        QCOMPARE(first->specular(), QColor(Qt::black));
        m_root->createSetDefaultMaterialSelected();
        QVERIFY(m_root->materialSelected() != first);
        QVERIFY(m_root->childNodes().contains(first));
    }

    void everySetterEmitsOnAChangeOnly()
    {
        auto* const material = new Qt3DExtras::QGoochMaterial(m_root);
        auto* const layer = new Qt3DRender::QLayer(m_root);
        auto* const caster = new Qt3DRender::QRayCaster(m_root);
        const auto twice = [this](const char* property, const char* signal, const QVariant& value) {
            QSignalSpy spy(m_root, signal);
            m_root->setProperty(property, value);
            m_root->setProperty(property, value);
            QVERIFY2(spy.count() == 1, property);
            QVERIFY2(m_root->property(property) == value, property);
        };
        const QVariant m = QVariant::fromValue<Qt3DRender::QMaterial*>(material);
        const QVariant l = QVariant::fromValue(layer);
        twice("materialPipe", SIGNAL(materialPipeChanged(Qt3DRender::QMaterial*)), m);
        twice("materialNode", SIGNAL(materialNodeChanged(Qt3DRender::QMaterial*)), m);
        twice("materialNodeSelected", SIGNAL(materialNodeSelectedChanged(Qt3DRender::QMaterial*)), m);
        twice("materialCone", SIGNAL(materialConeChanged(Qt3DRender::QMaterial*)), m);
        twice("materialConnection", SIGNAL(materialConnectionChanged(Qt3DRender::QMaterial*)), m);
        twice("materialVertexLabel", SIGNAL(vertexLabelMaterialChanged(Qt3DRender::QMaterial*)), m);
        twice("materialSelected", SIGNAL(materialSelectedChanged(Qt3DRender::QMaterial*)), m);
        twice("layerGrid", SIGNAL(layerGridChanged(Qt3DRender::QLayer*)), l);
        twice("layerObservation", SIGNAL(layerObservationChanged(Qt3DRender::QLayer*)), l);
        twice("layerStructure", SIGNAL(layerStructureChanged(Qt3DRender::QLayer*)), l);
        twice("gridVisible", SIGNAL(gridVisibleChanged(bool)), false);
        twice("backgroundVisible", SIGNAL(backgroundVisibleChanged(bool)), true);
        twice("planLayerEnabled", SIGNAL(planLayerEnabledChanged(bool)), false);
        twice("selectionsEnabled", SIGNAL(selectionsEnabledChanged(bool)), false);
        twice("maxSelection", SIGNAL(maxSelectionChanged(int)), 2);
        twice("sceneWidth", SIGNAL(sceneWidthChanged(double)), 640.0);
        twice("sceneHeight", SIGNAL(sceneHeightChanged(double)), 480.0);
        twice("rayCaster", SIGNAL(rayCasterChanged(Qt3DRender::QRayCaster*)), QVariant::fromValue(caster));
    }

    void theSizeIsToldAsItIsKept()
    {
        QSignalSpy spy(m_root, &SceneRoot::sceneWidthChanged);
        m_root->setSceneWidth(0.1);
        QCOMPARE(spy.first().first().toDouble(), static_cast<double>(0.1F));
    }

    void withoutAPlanTheLockIsOffAndTheLayerOnlyAFlag()
    {
        QSignalSpy spy(m_root, &SceneRoot::planLayerLockChanged);
        m_root->setPlanLayerLock(true);
        QVERIFY(!m_root->planLayerLock());
        QCOMPARE(spy.count(), 0);
        m_root->setPlanLayerEnabled(false);
        QVERIFY(!m_root->planLayerEnabled());
    }

    void qmlFindsTheModulesTypes()
    {
        SceneRoot::registerMetaTypes();
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import QtQml 2.12\nimport com.torvik.view3d 1.0\n"
                          "QtObject { property int manual: TransformFlags.Manual\n"
                          "  property int front: CameraController.View2dFront\n"
                          "  property var entities: SceneEntities\n"
                          "  property Node3d node: Node3d {} }",
                          QUrl());
        QVERIFY2(component.isReady(), qPrintable(component.errorString()));
        const QScopedPointer<QObject> object(component.create());
        QVERIFY(object);
        QCOMPARE(object->property("manual").toInt(), 4);
        QCOMPARE(object->property("front").toInt(), 2);
        QCOMPARE(object->property("entities").value<QObject*>(), &SceneEntities::instance());
        QCOMPARE(QQmlEngine::objectOwnership(&SceneEntities::instance()), QQmlEngine::CppOwnership);
        QVERIFY(QMetaType::type("Node3d*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("Section*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("Renderable*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("CameraController.ControlModes") != QMetaType::UnknownType);
    }

    void theBoundsOfASystemCannotBeMadeInQml()
    {
        SceneRoot::registerMetaTypes();
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData("import com.torvik.view3d 1.0\nEpsgBounds {}", QUrl());
        QVERIFY(component.errorString().contains(QStringLiteral("EpsgBounds cannot be created in QML")));
    }

    void theFirstPositionedNodeStaysTheOrigin()
    {
        TestProject project(QStringLiteral("EPSG:25832"));
        project.addNode(QStringLiteral("A"), placeA);
        m_root->qmlOnCompleted();
        QVERIFY(!m_root->sceneHasNodesWithPosition());
        project.activate();
        QVERIFY(m_root->sceneHasNodesWithPosition());
        QVERIFY(!m_root->sceneHasVirtualNodesWithPosition());
        const auto origin = GdalGeoProjector::instance()->origin();

        QString projection = QStringLiteral("another");
        m_root->safeGeoProjectorInit(Torvik::Database::WktPoint(placeB), projection);
        GdalGeoProjector::instance()->initialized();
        m_root->safeGeoProjectorInitFromMap(10, 20, 0);

        QVERIFY(GdalGeoProjector::instance()->origin() == origin);
        QCOMPARE(projection, QStringLiteral("another"));
    }

    void aProjectChangeUntiesTheScene()
    {
        TestProject project;
        project.addNode(QStringLiteral("A"), placeA);
        m_root->qmlOnCompleted();
        project.activate();
        QVERIFY(GdalGeoProjector::instance()->initialized());
        AppState::instance().setActiveProject({});
        QVERIFY(!GdalGeoProjector::instance()->initialized());
    }

    void objectsAreFoundByTheirIds()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        const auto inspection = project.addInspection(project.addSection(QStringLiteral("S"), a, {}));
        m_root->qmlOnCompleted();
        project.activate();
        const auto found = [this](const QString& id) {
            return m_root->getRenderableByDomainGuid(id).value<Renderable*>();
        };
        QVERIFY(dynamic_cast<Node*>(found(a->id())));
        QVERIFY(dynamic_cast<Section*>(found(inspection->id())));
        QVERIFY(!found(QStringLiteral("nobody")));
    }

    void theDistanceReachesTheActiveSectionAndIsPassedOn()
    {
        TestProject project;
        const auto inspection = project.addInspection(
            project.addSection(QStringLiteral("S"), project.addNode(QStringLiteral("A"), placeA), {}));
        m_root->qmlOnCompleted();
        project.activate();
        AppState::instance().setActiveInspection(inspection);
        Section* const section = SceneEntities::instance().getActiveSectionEntity();
        QVERIFY(section);
        QSignalSpy spy(m_root, &SceneRoot::distanceValueChanged);

        m_root->onDistanceValueChanged(2.5);

        QCOMPARE(section->length(), static_cast<double>(2.5F));
        QCOMPARE(spy.first().first().toDouble(), 2.5);
    }

    void oneArrowShowsWhitherTheActivePipeWillGrow()
    {
        TestProject project;
        const auto a = project.addNode(QStringLiteral("A"), placeA);
        const auto b = project.addNode(QStringLiteral("B"), placeB);
        const auto first = project.addInspection(project.addSection(QStringLiteral("S"), a, b));
        const auto second = project.addInspection(project.addSection(QStringLiteral("T"), b, a));
        m_root->qmlOnCompleted();
        project.activate();
        const auto shown = [](const CDomainObjectPointer& inspection) {
            return SceneEntities::instance()
                .getPipeEntities()
                .getByInspectionId(inspection->id())
                ->isDirectionArrowShown();
        };
        AppState::instance().setActiveInspection(first);
        QVERIFY(shown(first));
        QVERIFY(!shown(second));
        AppState::instance().setActiveInspection(second);
        QVERIFY(!shown(first));
        QVERIFY(shown(second));
    }

    void theActiveInspectionIsTakenOverInEitherOrder()
    {
        TestProject project;
        const auto pipe = project.addSection(QStringLiteral("S"), project.addNode(QStringLiteral("A"), placeA), {});
        const auto inspection = project.addInspection(pipe);
        m_root->qmlOnCompleted();
        project.activate();
        auto& entities = SceneEntities::instance();
        QSignalSpy cleared(entities.getPipeEntities().getByInspectionId(inspection->id()),
                           &Section::lateralNotInProximity);

        AppState::instance().setActiveStructure(pipe);
        QCOMPARE(cleared.count(), 0);
        AppState::instance().setActiveInspection(inspection);
        QCOMPARE(cleared.count(), 1);
        QVERIFY(entities.getActiveSectionEntity());
        entities.onActiveStructureChanged(CQmlDomainObject(pipe));
        QCOMPARE(cleared.count(), 2);
        entities.onActiveStructureChanged(CQmlDomainObject());
        QCOMPARE(cleared.count(), 2);
    }

    void aChangeOfInspectionEndsAMeasurement()
    {
        GlobalNav::instance()->setRealTimeEnabled(true);
        SceneEntities::instance().onActiveInspectionChanged(CQmlDomainObject());
        QVERIFY(!GlobalNav::instance()->realTimeEnabled());
        QVERIFY(!SceneEntities::instance().getActiveSectionEntity());
    }

    void aSectionsNodeGivesAPlaceToGoTo()
    {
        TestProject project(QStringLiteral("EPSG:25832"));
        const auto a = project.addNode(QStringLiteral("A"));
        const auto b = project.addNode(QStringLiteral("B"), placeA);
        const auto pipe = project.addSection(QStringLiteral("S"), a, b);
        project.addInspection(pipe);
        m_root->qmlOnCompleted();
        project.activate();
        const auto& entities = SceneEntities::instance();
        QCOMPARE(entities.getPositionOfAnyNodeFromSection(pipe->id()).value<QVector3D>(), QVector3D());
        QVERIFY(entities.getPositionOfAnyNodeFromSection(pipe->id()).isValid());
        QVERIFY(!entities.getPositionOfAnyNodeFromSection(QStringLiteral("nobody")).isValid());
    }

    void theProjectsFolderIsKnownWhileItIsActive()
    {
        QVERIFY(SceneEntities::instance().getProjectPathOrEmptyString().isEmpty());
        TestProject project;
        project.activate();
        QVERIFY(SceneEntities::instance().getProjectPathOrEmptyString().startsWith(project.path()));
    }

    void markersStandWhereTheyAreSet()
    {
        auto* const marker = m_root->createMarker(Qt::red);
        m_root->setMarkerPosition(0, QVector3D(1, 2, 3));
        m_root->setMarkerPosition(7, QVector3D(9, 9, 9));
        const auto transforms = marker->componentsOfType<Qt3DCore::QTransform>();
        QCOMPARE(transforms.size(), 1);
        QCOMPARE(transforms.first()->translation(), QVector3D(1, 2, 3));
    }

    void fourPointsGiveARotationAboutTheFirst()
    {
        const QMatrix4x4 turn = m_root->rotationMatrixFromFourPoints({1, 0, 0}, {2, 0, 0}, {0, 0, 0}, {0, 0, -1});
        QVERIFY((turn * QVector3D(2, 0, 0) - QVector3D(1, 0, -1)).length() < 1e-5F);
        QVERIFY((turn * QVector3D(1, 0, 0) - QVector3D(1, 0, 0)).length() < 1e-5F);
    }

private:
    SceneRoot* m_root = nullptr;
};

QTEST_MAIN(tst_SceneRoot)
#include "tst_SceneRoot.moc"
