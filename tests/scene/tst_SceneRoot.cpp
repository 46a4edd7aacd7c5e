#include "common/LogCapture.h"
#include "common/TestProject.h"
#include "domain/boundary/CQmlDomainObject.h"
#include "geo/GdalGeoProjector.h"
#include "host/domain/HostSettings.h"
#include "interaction/Utils3d.h"
#include "labels/GridPlane.h"
#include "network/Crawler.h"
#include "network/Node.h"
#include "network/Section.h"
#include "scene/GlobalNav.h"
#include "scene/SceneEntities.h"
#include "scene/SceneRoot.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QPerVertexColorMaterial>
#include <Qt3DExtras/QPhongMaterial>
#include <Qt3DRender/QCamera>
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
        QVERIFY(!m_root->parentNode());
        for (auto* const material : {m_root->materialPipe(), m_root->materialNode(), m_root->materialNodeSelected(),
                                     m_root->materialCone(), m_root->materialConnection()}) {
            QVERIFY(qobject_cast<Qt3DExtras::QPhongMaterial*>(material));
            QCOMPARE(material->parentNode(), m_root);
        }
        QCOMPARE(m_root->findChildren<Qt3DExtras::QPhongMaterial*>().size(), 5);
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

    void aCrawlerComesIntoTheSceneAndTheRegistry()
    {
        qRegisterMetaType<Crawler*>();
        QVERIFY(!m_root->crawler());
        auto* const crawler = new Crawler;
        QSignalSpy changed(m_root, &SceneRoot::crawlerChanged);

        m_root->setProperty("crawler", QVariant::fromValue(crawler));
        m_root->setCrawler(crawler);

        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().value<Crawler*>(), crawler);
        QCOMPARE(m_root->property("crawler").value<Crawler*>(), crawler);
        QCOMPARE(SceneEntities::instance().getCrawler(), crawler);
        QCOMPARE(crawler->parentNode(), m_root);
    }

    void withoutACrawlerTheRegistryKeepsTheLastOne()
    {
        auto* const crawler = new Crawler(m_root);
        m_root->setCrawler(crawler);
        const QSignalSpy changed(m_root, &SceneRoot::crawlerChanged);

        m_root->setCrawler(nullptr);

        QCOMPARE(changed.count(), 1);
        QVERIFY(!m_root->crawler());
        QCOMPARE(SceneEntities::instance().getCrawler(), crawler);
    }

    void aCrawlerIsThereWhileAnInspectionIs()
    {
        TestProject project;
        const auto inspection = project.addInspection(project.addSection("S", {}, {}));
        auto* const crawler = new Crawler(m_root);
        m_root->setCrawler(crawler);
        QVERIFY(crawler->isEnabled());

        AppState::instance().setActiveInspection(inspection);
        QVERIFY(crawler->isEnabled());
        AppState::instance().setActiveInspection({});
        QVERIFY(!crawler->isEnabled());
        AppState::instance().setActiveInspection(inspection);
        QVERIFY(crawler->isEnabled());
        AppState::instance().setActiveInspection({});
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
            QVERIFY2(spy.first().first() == value, property);
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

    void theGridIsThereWhileItIsVisible()
    {
        const auto* const grid = m_root->findChild<GridPlane*>();
        QVERIFY(grid);
        QVERIFY(grid->isEnabled());
        m_root->setGridVisible(false);
        QVERIFY(!grid->isEnabled());
        m_root->setGridVisible(true);
        QVERIFY(grid->isEnabled());
        QCOMPARE(grid->componentsOfType<Qt3DExtras::QPerVertexColorMaterial>().size(), 1);
    }

    void theGridFollowsTheCamera()
    {
        Qt3DRender::QCamera camera;
        camera.setProperty("viewVectorLenToFovScale", 0.5);
        camera.setPosition({0, 40, 0});
        camera.setViewCenter({0, 0, 0});
        m_root->setCamera(&camera);
        const auto* const grid = m_root->findChild<GridPlane*>();
        QCOMPARE(m_root->gridSize(), 20.0);
        QSignalSpy size(m_root, &SceneRoot::gridSizeChanged);

        camera.setPosition({0, 120, 0});
        QCOMPARE(m_root->gridSize(), 50.0);
        QCOMPARE(m_root->property("gridSize").toDouble(), 50.0);
        QCOMPARE(size.count(), 1);
        QCOMPARE(size.first().first().toDouble(), 50.0);

        camera.setViewCenter({13, 0, -6});
        QCOMPARE(grid->position(), QVector3D(10, 0, -5));
        m_root->setCamera(nullptr);
    }

    void theGridsHeightIsThatOfTheProject()
    {
        TestProject project(QStringLiteral("EPSG:25832"));
        project.addNode(QStringLiteral("A"), placeA);
        m_root->qmlOnCompleted();
        QSignalSpy level(m_root, &SceneRoot::gridSeaLevelChanged);
        project.activate();
        QCOMPARE(m_root->gridSeaLevel(), 40.0);
        QVERIFY(level.count() > 0);
        QCOMPARE(level.last().first().toDouble(), 40.0);

        Qt3DRender::QCamera camera;
        m_root->setCamera(&camera);
        camera.setViewCenter({0, 2.5F, 0});
        QCOMPARE(m_root->gridSeaLevel(), 42.5);
        QCOMPARE(level.last().first().toDouble(), 42.5);
        m_root->setCamera(nullptr);
    }

    void feetChangeTheGrid()
    {
        QSignalSpy size(m_root, &SceneRoot::gridSizeChanged);
        Torvik::Base::HostSettings::setDistanceUnit(Torvik::Base::HostSettings::unitFeet);
        QCOMPARE(m_root->gridSize(), static_cast<double>(1.27F));
        Torvik::Base::HostSettings::setDistanceUnit(Torvik::Base::HostSettings::unitMetres);
        QCOMPARE(m_root->gridSize(), 1.0);
        QCOMPARE(size.count(), 2);
    }

    void theSizeIsToldAsItIsKept()
    {
        QSignalSpy width(m_root, &SceneRoot::sceneWidthChanged);
        QSignalSpy height(m_root, &SceneRoot::sceneHeightChanged);
        m_root->setSceneWidth(300.0 + 1e-11);
        m_root->setSceneHeight(300.0 + 1e-11);
        QCOMPARE(width.count() + height.count(), 0);

        // What is kept is a float, which is not 0.1: the same value comes as another one again.
        m_root->setSceneWidth(0.1);
        m_root->setSceneWidth(0.1);
        m_root->setSceneHeight(0.1);
        m_root->setSceneHeight(0.1);

        QCOMPARE(width.count(), 2);
        QCOMPARE(height.count(), 2);
        QCOMPARE(width.first().first().toDouble(), static_cast<double>(0.1F));
        QCOMPARE(height.first().first().toDouble(), static_cast<double>(0.1F));
    }

    void theLastRootAndItsCameraStayKnown()
    {
        Qt3DRender::QCamera camera;
        m_root->setProperty("camera", QVariant::fromValue(&camera));
        QCOMPARE(SceneRoot::camera(), &camera);
        QCOMPARE(m_root->property("camera").value<Qt3DRender::QCamera*>(), &camera);

        const auto* const gone = m_root;
        delete m_root;
        m_root = nullptr;
        QCOMPARE(SceneRoot::instance(), gone);
        QCOMPARE(SceneRoot::camera(), &camera);

        m_root = new SceneRoot;
        m_root->setCamera(nullptr);
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
                          "QtObject { property var sources: [TransformFlags.Unknown, TransformFlags.Observations,"
                          "    TransformFlags.CAD, TransformFlags.Manual, TransformFlags.GPS, TransformFlags.GIS,"
                          "    TransformFlags.Geosensor, TransformFlags.PipeShape]\n"
                          "  property var utils: Utils3d {}\n"
                          "  property var transform: TransformFlags {}\n"
                          "  property Component root: Component { SceneRoot {} }\n"
                          "  property int front: CameraController.View2dFront\n"
                          "  property var entities: SceneEntities\n"
                          "  property Node3d node: Node3d {} }",
                          QUrl());
        QVERIFY2(component.isReady(), qPrintable(component.errorString()));
        const QScopedPointer<QObject> object(component.create());
        QVERIFY(object);
        QCOMPARE(object->property("sources").toList(), (QVariantList {0, 1, 2, 4, 8, 16, 32, 64}));
        QVERIFY(qobject_cast<Utils3d*>(object->property("utils").value<QObject*>()));
        QVERIFY(qobject_cast<FlaggedTransform*>(object->property("transform").value<QObject*>()));
        QCOMPARE(object->property("front").toInt(), 2);
        QCOMPARE(object->property("entities").value<QObject*>(), &SceneEntities::instance());
        QCOMPARE(QQmlEngine::objectOwnership(&SceneEntities::instance()), QQmlEngine::CppOwnership);
        QVERIFY(QMetaType::type("Node3d*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("Section*") != QMetaType::UnknownType);
        for (const char* plans : {"BackgroundLoader*", "PlanLoader*", "FloorPlanLoader*", "BackgroundController*"})
            QVERIFY2(QMetaType::type(plans) != QMetaType::UnknownType, plans);
        QVERIFY(QMetaType::type("Renderable*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("TouchControlBase*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("FlaggedTransform*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("CameraController.ControlModes") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("CameraController.ControlPlanes") != QMetaType::UnknownType);
    }

    void theSingletonOutlivesTheEngine()
    {
        SceneRoot::registerMetaTypes();
        {
            QQmlEngine engine;
            QQmlComponent component(&engine);
            component.setData("import QtQml 2.12\nimport com.torvik.view3d 1.0\n"
                              "QtObject { property var entities: SceneEntities }",
                              QUrl());
            delete component.create();
        }
        // Destroyed with the engine, this would be a use after the end.
        QVERIFY(SceneEntities::instance().getNodes().isEmpty());
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
        m_root->safeGeoProjectorInitFromMap(10, 20, 0);
        QVERIFY(GdalGeoProjector::instance()->origin() == origin);

        // Not because the projector is tied already, which would keep the map away by itself.
        GdalGeoProjector::instance()->deinit();
        m_root->safeGeoProjectorInit(Torvik::Database::WktPoint(placeB), projection);
        m_root->safeGeoProjectorInitFromMap(10, 20, 0);
        QVERIFY(!GdalGeoProjector::instance()->initialized());
        QCOMPARE(projection, QStringLiteral("another"));
    }

    void anEmptySceneIsTiedByTheMap()
    {
        QVERIFY(!GdalGeoProjector::instance()->initialized());
        m_root->safeGeoProjectorInitFromMap(51, 10, 0);
        QVERIFY(GdalGeoProjector::instance()->initialized());
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
        QVector<QPair<double, double>> told; // the distance, and the length when it is told
        connect(m_root, &SceneRoot::distanceValueChanged, this, [&](double distance) {
            told.append({distance, section->length()});
        });

        m_root->onDistanceValueChanged(2.5);

        QCOMPARE(told, (QVector<QPair<double, double>> {{2.5, 2.5}}));
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
        QCOMPARE(SceneEntities::instance().getProjectPathOrEmptyString(), project.project()->projectPath());
        QVERIFY(!project.project()->projectPath().isEmpty());

        AppState::instance().setActiveProject(project.addNode(QStringLiteral("A"), placeA));
        QVERIFY(SceneEntities::instance().getProjectPathOrEmptyString().isEmpty());
    }

    void markersStandWhereTheyAreSet()
    {
        auto* const marker = m_root->createMarker(Qt::red);
        m_root->setMarkerPosition(0, QVector3D(1, 2, 3));
        m_root->setMarkerPosition(7, QVector3D(9, 9, 9));
        const auto transforms = marker->componentsOfType<Qt3DCore::QTransform>();
        QCOMPARE(transforms.size(), 1);
        QCOMPARE(transforms.first()->translation(), QVector3D(1, 2, 3));
        QCOMPARE(marker->parentNode(), m_root);
        const auto poles = marker->componentsOfType<Qt3DExtras::QCylinderMesh>();
        QCOMPARE(poles.size(), 1);
        QCOMPARE(poles.first()->length(), 2.0F);
        QCOMPARE(poles.first()->radius(), 0.02F);
        const auto colours = marker->componentsOfType<Qt3DExtras::QGoochMaterial>();
        QCOMPARE(colours.size(), 1);
        QCOMPARE(colours.first()->cool(), QColor(Qt::red));
        QCOMPARE(colours.first()->warm(), QColor(Qt::red));
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
