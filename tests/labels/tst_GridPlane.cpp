#include "host/domain/HostSettings.h"
#include "labels/GridPlane.h"

#include <QSignalSpy>
#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QPerVertexColorMaterial>
#include <Qt3DRender/QAttribute>
#include <Qt3DRender/QBuffer>
#include <Qt3DRender/QGeometry>
#include <Qt3DRender/QGeometryRenderer>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;
namespace HostSettings = Torvik::Base::HostSettings;
using Qt3DRender::QGeometryRenderer;

class tst_GridPlane : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aNewGridHasTheBaseSize();
    void theMeshIsOfBlackLines();
    void anotherDistanceScalesTheMesh();
    void theSizeIsToldBeforeTheLinesAreMoved();
    void theSameStepIsToldOnce();
    void theGridMovesByWholeSquares();
    void aMoveWithinASquareIsNoMove();
    void feetBringTheirOwnSquares();
    void feetAreToldNearByAndFarAway();
    void aGridOfAProjectInFeetStartsSo();

private:
    template <typename Component>
    Component* component() const
    {
        const auto found = m_grid->componentsOfType<Component>();
        return found.size() == 1 ? found.first() : nullptr;
    }
    Qt3DCore::QTransform* transform() const { return component<Qt3DCore::QTransform>(); }

    std::unique_ptr<Qt3DCore::QEntity> m_root;
    GridPlane* m_grid = nullptr;
};

void tst_GridPlane::init()
{
    m_root = std::make_unique<Qt3DCore::QEntity>();
    m_grid = new GridPlane(m_root.get(), new Qt3DExtras::QPerVertexColorMaterial);
}

void tst_GridPlane::cleanup()
{
    m_root.reset();
    HostSettings::setDistanceUnit(HostSettings::unitMetres);
}

void tst_GridPlane::aNewGridHasTheBaseSize()
{
    QCOMPARE(m_grid->parentNode(), m_root.get());
    QVERIFY(!GridPlane::imperialUnits());
    QCOMPARE(m_grid->squareSize(), 1.0F);
    QCOMPARE(m_grid->position(), QVector3D());
    QVERIFY(transform());
    QCOMPARE(transform()->scale3D(), QVector3D(50, 50, 1));
    // The mesh's plane comes to lie on the ground.
    const QVector3D north = transform()->rotation().rotatedVector({0, 1, 0});
    QVERIFY((north - QVector3D(0, 0, 1)).length() < 1e-6F);
    const auto* const material = component<Qt3DRender::QMaterial>();
    QVERIFY(material);
    QCOMPARE(material->parent(), m_grid);
}

void tst_GridPlane::theMeshIsOfBlackLines()
{
    const auto* const mesh = component<QGeometryRenderer>();
    QVERIFY(mesh);
    QCOMPARE(mesh->primitiveType(), QGeometryRenderer::Lines);
    const auto attributes = mesh->geometry()->attributes();
    QCOMPARE(attributes.size(), 2);
    QSet<QString> names;
    for (const auto* const attribute : attributes) {
        names << attribute->name();
        QCOMPARE(attribute->count(), 51U * 4);
        QCOMPARE(attribute->vertexSize(), 3U);
        QCOMPARE(attribute->byteStride(), 24U);
        QCOMPARE(attribute->vertexBaseType(), Qt3DRender::QAttribute::Float);
        QCOMPARE(attribute->byteOffset(), attribute->name() == "vertexColor" ? 12U : 0U);
        QCOMPARE(attribute->buffer()->data().size(), 51 * 4 * 24);
    }
    QCOMPARE(names, (QSet<QString> {"vertexPosition", "vertexColor"}));
}

void tst_GridPlane::anotherDistanceScalesTheMesh()
{
    QSignalSpy changed(m_grid, &GridPlane::gridSquareSizeChanged);
    auto* const mesh = component<QGeometryRenderer>();
    auto* const geometry = mesh->geometry();

    m_grid->resizeForDistance(60);

    QCOMPARE(m_grid->squareSize(), 50.0F);
    QCOMPARE(transform()->scale3D(), QVector3D(2500, 2500, 1));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toFloat(), 50.0F);
    QCOMPARE(component<QGeometryRenderer>(), mesh);
    QCOMPARE(mesh->geometry(), geometry);
    QCOMPARE(m_grid->calculateGridSquareSize(49), 20.0F);
    QCOMPARE(m_grid->squareSize(), 50.0F);
}

void tst_GridPlane::theSizeIsToldBeforeTheLinesAreMoved()
{
    int told = 0;
    connect(m_grid, &GridPlane::gridSquareSizeChanged, this, [&](float size) {
        ++told;
        QCOMPARE(size, 50.0F);
        QCOMPARE(m_grid->squareSize(), 50.0F);
        QCOMPARE(transform()->scale3D(), QVector3D(50, 50, 1));
    });

    m_grid->resizeForDistance(60);

    QCOMPARE(told, 1);
    QCOMPARE(transform()->scale3D(), QVector3D(2500, 2500, 1));
}

void tst_GridPlane::theSameStepIsToldOnce()
{
    QSignalSpy changed(m_grid, &GridPlane::gridSquareSizeChanged);
    QSignalSpy scaled(transform(), &Qt3DCore::QTransform::scale3DChanged);

    for (const float distance : {60.0F, 60.0F, 99.0F, 51.0F})
        m_grid->resizeForDistance(distance);

    QCOMPARE(changed.count(), 1);
    QCOMPARE(scaled.count(), 1);
}

void tst_GridPlane::theGridMovesByWholeSquares()
{
    QSignalSpy moved(m_grid, &GridPlane::positionChanged);

    m_grid->reposition({0.25F, 3, 0});

    QVERIFY((m_grid->position() - QVector3D(0.2F, 3, 0)).length() < 1e-6F);
    QCOMPARE(m_grid->position(), transform()->translation());
    QCOMPARE(moved.count(), 1);
}

void tst_GridPlane::aMoveWithinASquareIsNoMove()
{
    m_grid->resizeForDistance(60);
    m_grid->reposition({12, 0, 7});
    QSignalSpy moved(m_grid, &GridPlane::positionChanged);
    QSignalSpy changed(transform(), &Qt3DCore::QTransform::matrixChanged);

    m_grid->reposition({14.9F, 0, 9.9F});

    QCOMPARE(moved.count(), 0);
    QCOMPARE(changed.count(), 0);
}

void tst_GridPlane::feetBringTheirOwnSquares()
{
    m_grid->resizeForDistance(60);
    m_grid->reposition({1000, 2, 1000});
    QSignalSpy changed(m_grid, &GridPlane::gridSquareSizeChanged);

    HostSettings::setDistanceUnit(HostSettings::unitFeet);

    QVERIFY(GridPlane::imperialUnits());
    QCOMPARE(m_grid->squareSize(), 30.48F);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(transform()->scale3D(), QVector3D(1524, 1524, 1));
    // On the lattice of the new squares.
    QVERIFY(qAbs(m_grid->position().x() / 3.048F - std::round(m_grid->position().x() / 3.048F)) < 1e-3F);
    QCOMPARE(m_grid->position().y(), 2.0F);
}

void tst_GridPlane::feetAreToldNearByAndFarAway()
{
    QSignalSpy changed(m_grid, &GridPlane::gridSquareSizeChanged);

    m_grid->resizeForDistance(1);
    HostSettings::setDistanceUnit(HostSettings::unitFeet);
    QCOMPARE(m_grid->squareSize(), 1.27F);
    QVERIFY((transform()->scale3D() - QVector3D(63.5F, 63.5F, 1)).length() < 1e-4F);
    QCOMPARE(changed.count(), 1);

    HostSettings::setDistanceUnit(HostSettings::unitMetres);
    QCOMPARE(m_grid->squareSize(), 1.0F);
    QCOMPARE(transform()->scale3D(), QVector3D(50, 50, 1));
    QCOMPARE(changed.count(), 2);
}

void tst_GridPlane::aGridOfAProjectInFeetStartsSo()
{
    HostSettings::setDistanceUnit(HostSettings::unitFeet);

    auto* const grid = new GridPlane(m_root.get(), new Qt3DExtras::QPerVertexColorMaterial);

    QCOMPARE(grid->squareSize(), 1.27F);
    grid->resizeForDistance(3.5F);
    QCOMPARE(grid->squareSize(), 3.048F);
}

QTEST_GUILESS_MAIN(tst_GridPlane)
#include "tst_GridPlane.moc"
