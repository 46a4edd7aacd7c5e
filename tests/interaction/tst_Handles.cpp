#include "interaction/AxisControlArrows.h"
#include "interaction/CoordArrows.h"
#include "interaction/ManualScene.h"
#include "interaction/ObjectPicker.h"
#include "labels/OnTopEffect.h"
#include "scene/Renderable.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <Qt3DCore/QTransform>
#include <Qt3DRender/QFilterKey>
#include <Qt3DRender/QGraphicsApiFilter>
#include <Qt3DRender/QMaterial>
#include <Qt3DRender/QMesh>
#include <Qt3DRender/QParameter>
#include <Qt3DRender/QRenderPass>
#include <Qt3DRender/QShaderProgram>
#include <Qt3DRender/QTechnique>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;

namespace {

class Thing : public Renderable {
public:
    using Renderable::Renderable;
    QString renderableType() const override { return QStringLiteral("thing"); }
};

template <typename Component>
Component* of(const Qt3DCore::QEntity* entity)
{
    return entity->componentsOfType<Component>().value(0);
}

/** Everything below that has a model's mesh, in the order in which it was made. */
QVector<Qt3DCore::QEntity*> modelsUnder(Qt3DCore::QNode* node)
{
    QVector<Qt3DCore::QEntity*> all;
    const auto children = node->childNodes();
    for (Qt3DCore::QNode* child : children) {
        auto* const entity = qobject_cast<Qt3DCore::QEntity*>(child);
        if (!entity)
            continue;
        if (of<Qt3DRender::QMesh>(entity))
            all << entity;
        all += modelsUnder(entity);
    }
    return all;
}

/** The flat colour in which an entity is drawn over everything; invalid when it is not. */
QColor onTopColour(const Qt3DCore::QEntity* entity)
{
    const auto* const material = of<Qt3DRender::QMaterial>(entity);
    if (!material || !qobject_cast<OnTopEffect*>(material->effect()))
        return {};
    const auto parameters = material->parameters();
    for (const Qt3DRender::QParameter* parameter : parameters) {
        if (parameter->name() == QLatin1String("handleColor"))
            return parameter->value().value<QColor>();
    }
    return {};
}

} // namespace

/** What is drawn over everything for the hand or the eye: arrows of an axis, the cross of axes, and their effect. */
class tst_Handles : public QObject {
    Q_OBJECT

private slots:
    void aPairOfArrowsStandsOnBothSides();
    void arrowsLieAlongTheirAxis_data();
    void arrowsLieAlongTheirAxis();
    void arrowsKeepTheirSizeOnTheScreen();
    void aPressTellsOfTheAxis();
    void aCrossIsMadeOnceForEachName();
    void aCrossThatGoesIsForgotten();
    void theAxesHaveTheirColoursAndDirections();
    void anAxisIsHiddenByItsMaterial();
    void aCrossIsPlacedAndTurned();
    void theEffectIsThereForBothKindsOfOpenGl();
};

void tst_Handles::aPairOfArrowsStandsOnBothSides()
{
    Qt3DCore::QEntity root;
    auto* const thing = new Thing(&root);
    const auto arrows = std::make_unique<AxisControlArrows>(thing, QVector3D(0, 2, 0), QVector3D(3, 0, 0), 0.1F);
    QCOMPARE(arrows->parentEntity(), thing);
    QCOMPARE(arrows->axis(), QVector3D(1, 0, 0));
    const auto pair = modelsUnder(arrows.get());
    QCOMPARE(pair.size(), 2);
    float side = -0.12F;
    for (const auto* arrow : pair) {
        QCOMPARE(of<Qt3DRender::QMesh>(arrow)->source(), QUrl("qrc:/models/dirArrow.obj"));
        QCOMPARE(onTopColour(arrow), QColor("green"));
        const auto* const place = of<Qt3DCore::QTransform>(arrow);
        QVERIFY(near(place->translation(), {0, 0, side}, 1e-6F));
        QCOMPARE(place->scale3D(), QVector3D(0.5F, 1, 2));
        // Both point away from the object.
        QVERIFY(near(place->rotation().rotatedVector({0, 0, side < 0 ? -1.0F : 1.0F}), {0, 0, -1}, 1e-5F));
        side = -side;
    }
}

void tst_Handles::arrowsLieAlongTheirAxis_data()
{
    QTest::addColumn<QVector3D>("normal");
    QTest::addColumn<QVector3D>("axis");
    QTest::newRow("x from above") << QVector3D(0, 1, 0) << QVector3D(1, 0, 0);
    QTest::newRow("z from above") << QVector3D(0, 1, 0) << QVector3D(0, 0, 1);
    QTest::newRow("y from the front") << QVector3D(0, 0, -1) << QVector3D(0, 1, 0);
}

void tst_Handles::arrowsLieAlongTheirAxis()
{
    QFETCH(QVector3D, normal);
    QFETCH(QVector3D, axis);
    Qt3DCore::QEntity root;
    const AxisControlArrows* const arrows = new AxisControlArrows(new Thing(&root), normal, axis, 0.1F);
    const auto* const pair = arrows->picker()->parentNode();
    const auto* const transform = of<Qt3DCore::QTransform>(qobject_cast<const Qt3DCore::QEntity*>(pair));
    QVERIFY(transform);
    const QMatrix4x4 matrix = transform->matrix();
    QVERIFY(near(matrix.column(0).toVector3D(), QVector3D::crossProduct(normal, axis), 1e-5F));
    QVERIFY(near(matrix.column(1).toVector3D(), normal, 1e-5F));
    QVERIFY(near(matrix.column(2).toVector3D(), axis, 1e-5F));
    QVERIFY(near(matrix.column(3).toVector3D(), {}, 1e-5F));
}

void tst_Handles::arrowsKeepTheirSizeOnTheScreen()
{
    SceneRoot root;
    auto* const camera = new Qt3DRender::QCamera(&root);
    camera->setPosition({0, 350, 0});
    camera->setViewCenter({0, 0, 0});
    root.setCamera(camera);
    const auto* const arrows = new AxisControlArrows(new Thing(&root), {0, 1, 0}, {1, 0, 0}, 0.1F);
    const auto* const pair = qobject_cast<Qt3DCore::QEntity*>(arrows->picker()->parentNode());
    QCOMPARE(of<Qt3DCore::QTransform>(pair)->scale(), 10.0F);
    camera->setPosition({0, 70, 0});
    QCOMPARE(of<Qt3DCore::QTransform>(pair)->scale(), 2.0F);
    camera->setPosition({0, 7, 0});
    QCOMPARE(of<Qt3DCore::QTransform>(pair)->scale(), 1.0F);
    root.setCamera(nullptr);
}

void tst_Handles::aPressTellsOfTheAxis()
{
    Qt3DCore::QEntity root;
    const auto* const arrows = new AxisControlArrows(new Thing(&root), {0, 1, 0}, {0, 0, 2}, 0.1F);
    QSignalSpy selected(arrows, &AxisControlArrows::controlAxisSelected);
    QSignalSpy deselected(arrows, &AxisControlArrows::controlAxisDeselected);
    emit arrows->picker()->pressed(nullptr);
    QCOMPARE(selected, (QList<QVariantList> {{QVector3D(0, 0, 1)}}));
    QCOMPARE(deselected.count(), 0);
    emit arrows->picker()->released(nullptr);
    QCOMPARE(deselected.count(), 1);
}

void tst_Handles::aCrossIsMadeOnceForEachName()
{
    Qt3DCore::QEntity root;
    auto* const cross = CoordArrows::create(&root, "here");
    QCOMPARE(cross->parentNode(), &root);
    QCOMPARE(CoordArrows::create(nullptr, "here"), cross);
    QVERIFY(CoordArrows::create(&root, "there") != cross);
    QCOMPARE(CoordArrows::arrows().size(), 2);
    QCOMPARE(CoordArrows::arrows().value("here"), cross);
}

void tst_Handles::aCrossThatGoesIsForgotten()
{
    QVERIFY(CoordArrows::arrows().isEmpty());
    Qt3DCore::QEntity root;
    auto* const nameless = CoordArrows::create(&root, "");
    auto* const named = CoordArrows::create(&root, "here");
    delete new CoordArrows(&root); // was never entered
    QCOMPARE(CoordArrows::arrows().value(""), nameless);
    delete named;
    QCOMPARE(CoordArrows::arrows().keys(), QList<QString> {""});
    QVERIFY(CoordArrows::create(&root, "here"));
}

void tst_Handles::theAxesHaveTheirColoursAndDirections()
{
    Qt3DCore::QEntity root;
    const auto axes = modelsUnder(CoordArrows::create(&root, "here"));
    QCOMPARE(axes.size(), 3);
    const QVector<QColor> colours {QColor("green"), QColor("red"), QColor("blue")};
    const QVector<QVector3D> directions {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (int axis = 0; axis < 3; ++axis) {
        QCOMPARE(of<Qt3DRender::QMesh>(axes.at(axis))->source(), QUrl("qrc:/models/arrow.obj"));
        QCOMPARE(onTopColour(axes.at(axis)), colours.at(axis));
        const auto* const place = of<Qt3DCore::QTransform>(axes.at(axis));
        QCOMPARE(place->scale(), 3.0F);
        QVERIFY(near(place->rotation().rotatedVector({0, 1, 0}), directions.at(axis), 1e-5F));
    }
}

void tst_Handles::anAxisIsHiddenByItsMaterial()
{
    Qt3DCore::QEntity root;
    auto* const cross = CoordArrows::create(&root, "here");
    const auto shown = [cross] {
        QVector<bool> all;
        const auto axes = modelsUnder(cross);
        for (const auto* axis : axes)
            all << (of<Qt3DRender::QMaterial>(axis) != nullptr);
        return all;
    };
    QCOMPARE(shown(), (QVector<bool> {true, true, true}));
    cross->setArrowVisible({-1, 0, 1e-5F});
    QCOMPARE(shown(), (QVector<bool> {true, false, false}));
    cross->setArrowVisible({0, 2e-5F, 1});
    QCOMPARE(shown(), (QVector<bool> {false, true, true}));
}

void tst_Handles::aCrossIsPlacedAndTurned()
{
    Qt3DCore::QEntity root;
    auto* const cross = CoordArrows::create(&root, "here");
    const auto* const transform = of<Qt3DCore::QTransform>(cross);
    cross->moveTo({1, 2, 3});
    QCOMPARE(transform->translation(), QVector3D(1, 2, 3));
    cross->rotateTo(QVector3D(1, 0, 0));
    QVERIFY(near(transform->rotation().rotatedVector({0, 1, 0}), {1, 0, 0}, 1e-5F));
    const auto turn = QQuaternion::fromAxisAndAngle(0, 1, 0, 30);
    cross->rotateTo(turn);
    QCOMPARE(transform->rotation(), turn);
    QCOMPARE(transform->translation(), QVector3D(1, 2, 3));
}

void tst_Handles::theEffectIsThereForBothKindsOfOpenGl()
{
    using Qt3DRender::QGraphicsApiFilter;
    const OnTopEffect effect;
    const auto techniques = effect.techniques();
    QCOMPARE(techniques.size(), 2);
    const QVector<QGraphicsApiFilter::Api> apis {QGraphicsApiFilter::OpenGL, QGraphicsApiFilter::OpenGLES};
    for (int index = 0; index < 2; ++index) {
        auto* const technique = techniques.at(index);
        const auto* const api = technique->graphicsApiFilter();
        QCOMPARE(api->api(), apis.at(index));
        QCOMPARE(api->profile(), QGraphicsApiFilter::CoreProfile);
        QCOMPARE(api->majorVersion(), 0);
        QCOMPARE(api->minorVersion(), 0);
        QCOMPARE(technique->filterKeys().size(), 1);
        QCOMPARE(technique->filterKeys().first()->name(), QString("renderingStyle"));
        QCOMPARE(technique->filterKeys().first()->value(), QVariant("forward"));
        QCOMPARE(technique->renderPasses(), techniques.first()->renderPasses());
    }
    QCOMPARE(techniques.first()->renderPasses().size(), 1);
    const auto* const pass = techniques.first()->renderPasses().first();
    QVERIFY(pass->renderStates().isEmpty());
    QVERIFY(pass->shaderProgram()->vertexShaderCode().contains("gl_Position.z = 0.0;"));
    QVERIFY(pass->shaderProgram()->fragmentShaderCode().contains("gl_FragColor = handleColor;"));
}

QTEST_MAIN(tst_Handles)
#include "tst_Handles.moc"
