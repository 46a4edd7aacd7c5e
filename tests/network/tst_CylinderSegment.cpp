#include "PipeFixture.h"

#include "network/PipeProximity.h"

#include <Qt3DCore/QTransform>
#include <Qt3DExtras/QCylinderMesh>
#include <Qt3DExtras/QGoochMaterial>
#include <Qt3DExtras/QSphereMesh>

#include <QtTest>

using namespace Torvik::View3d;
using namespace Kx::Test;

namespace {

template <typename Component>
QVector<Component*> componentsOfChildren(const Qt3DCore::QEntity* entity)
{
    QVector<Component*> found;
    for (const auto* child : entity->findChildren<Qt3DCore::QEntity*>())
        found += child->componentsOfType<Component>();
    return found;
}

float ballRadius(const Qt3DCore::QEntity* ball)
{
    const auto transforms = ball->componentsOfType<Qt3DCore::QTransform>();
    return ball->componentsOfType<Qt3DExtras::QSphereMesh>().value(0)->radius() * transforms.value(0)->scale();
}

QVector<Qt3DCore::QEntity*> balls(const CylinderSegment& segment)
{
    QVector<Qt3DCore::QEntity*> found;
    for (auto* child : segment.findChildren<Qt3DCore::QEntity*>())
        if (!child->componentsOfType<Qt3DExtras::QSphereMesh>().isEmpty())
            found += child;
    return found;
}

} // namespace

class tst_CylinderSegment : public QObject {
    Q_OBJECT

private slots:
    void aFirstSegmentIsDrawnFromBeginToEnd();
    void theMeshLiesAlongTheSegmentFromZeroToItsLength();
    void onlyASegmentWithAPredecessorHasABallAtItsBegin();
    void ballsFollowTheRadius();
    void theConnectionBallStandsAtTheEndUntilItIsRemoved();
    void theUsualColourIsGreen();
    void aColourReachesCylinderAndBalls();
    void segmentsShareMeshAndMaterial();
    void aSegmentIsFewNodes();
    void aNewLengthKeepsBeginAndUp();
    void theEndIsRoundedToCentimetres();
    void aRotationIsRelativeToThePredecessor();
    void aFollowerKeepsItsBendWhenItsPredecessorTurns();
    void aTranslatedSegmentSticksToItsPredecessor();
    void aVerticalSegmentTakesItsUpFromThePredecessor();
    void aSegmentThatTurnsToTheVerticalTakesItsUpFromThePredecessor();
    void aVerticalFirstSegmentHasAnUpOfItsOwn();
    void theMeshTurnsWithThePointsAlone();
    void theWorldsUpIsSeenThroughTheHoldersTransform();
    void aPredecessorThatDiesIsForgotten();
    void proximityBeginsWithoutAPipe();
};

void tst_CylinderSegment::aFirstSegmentIsDrawnFromBeginToEnd()
{
    Qt3DCore::QEntity pipe;
    const auto* segment = new CylinderSegment(&pipe, nullptr, QVector3D(1, 2, 3), QVector3D(5, 2, 3));

    QCOMPARE(segment->length(), 4.0F);
    QCOMPARE(segment->direction(), QVector3D(1, 0, 0));
    QCOMPARE(segment->upDirection(), QVector3D(0, 1, 0));
    QCOMPARE(segment->parentRotation(), QQuaternion());
    QVERIFY(near(segment->rotation().rotatedVector(QVector3D(0, 0, 1)), QVector3D(1, 0, 0)));
    QVERIFY(near(segment->transform()->matrix() * QVector3D(0, 0, 4), QVector3D(5, 2, 3)));
    QVERIFY(segment->components().contains(segment->transform()));
}

void tst_CylinderSegment::theMeshLiesAlongTheSegmentFromZeroToItsLength()
{
    Qt3DCore::QEntity pipe;
    auto* segment = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    segment->setRadius(0.2F);

    const QMatrix4x4 mesh = segment->cylinderTransform()->matrix();

    // The unit mesh lies along y around its centre: its two ends, and a point of its mantle.
    QVERIFY(near(mesh * QVector3D(0, -0.5F, 0), QVector3D(0, 0, 0)));
    QVERIFY(near(mesh * QVector3D(0, 0.5F, 0), QVector3D(0, 0, 3)));
    QVERIFY(near(mesh * QVector3D(1, 0, 0), QVector3D(0.2F, 0, 1.5F)));
}

void tst_CylinderSegment::onlyASegmentWithAPredecessorHasABallAtItsBegin()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(2, 0, 3));

    QCOMPARE(balls(*first).size(), 0);
    QCOMPARE(balls(*second).size(), 1);
    const auto* place = balls(*second).constFirst()->componentsOfType<Qt3DCore::QTransform>().value(0);
    QCOMPARE(place->translation(), QVector3D());
}

void tst_CylinderSegment::ballsFollowTheRadius()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(2, 0, 3));
    second->createConnectionJoint();

    second->setRadius(0.4F);

    QCOMPARE(second->radius(), 0.4F);
    QCOMPARE(balls(*second).size(), 2);
    for (const auto* ball : balls(*second))
        QCOMPARE(ballRadius(ball), 0.4F);
}

void tst_CylinderSegment::theConnectionBallStandsAtTheEndUntilItIsRemoved()
{
    Qt3DCore::QEntity pipe;
    CylinderSegment* segment = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    segment->setRadius(0.3F);

    segment->createConnectionJoint();

    QCOMPARE(balls(*segment).size(), 1);
    const auto* place = balls(*segment).constFirst()->componentsOfType<Qt3DCore::QTransform>().value(0);
    QCOMPARE(place->translation(), QVector3D(0, 0, 3));
    QCOMPARE(ballRadius(balls(*segment).constFirst()), 0.3F);

    segment->removeConnectionJoint();
    QCOMPARE(balls(*segment).size(), 1);
    deleteLatered();
    QCOMPARE(balls(*segment).size(), 0);

    segment->removeConnectionJoint();
    segment->createConnectionJoint();
    segment->createConnectionJoint();
    deleteLatered();
    QCOMPARE(balls(*segment).size(), 1);
}

void tst_CylinderSegment::theUsualColourIsGreen()
{
    Qt3DCore::QEntity pipe;
    const auto* segment = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));

    const auto* material = componentsOfChildren<Qt3DExtras::QGoochMaterial>(segment).value(0);

    QVERIFY(material);
    QCOMPARE(material->cool(), QColor::fromRgbF(0, 0.3, 0, 1));
    QCOMPARE(material->warm(), QColor::fromRgbF(0, 0.9, 0, 1));
    QCOMPARE(material->alpha(), 0.12F);
    QCOMPARE(material->beta(), 1.0F);
    QCOMPARE(material->shininess(), 0.1F);
    QCOMPARE(material->diffuse(), QColor(Qt::black));
    QCOMPARE(material->specular(), QColor(Qt::black));
}

void tst_CylinderSegment::aColourReachesCylinderAndBalls()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(2, 0, 3));
    second->createConnectionJoint();

    second->setColor(QColor(60, 60, 255));

    const auto materials = componentsOfChildren<Qt3DExtras::QGoochMaterial>(second);
    QCOMPARE(materials.size(), 3);
    for (const auto* material : materials) {
        QCOMPARE(material->warm(), QColor(60, 60, 255));
        QVERIFY(qAbs(material->cool().blueF() - 0.3) < 1e-4);
        QVERIFY(qAbs(material->cool().redF() - 0.3 * 60 / 255) < 1e-4);
    }
    QCOMPARE(componentsOfChildren<Qt3DExtras::QGoochMaterial>(first).value(0)->warm(), QColor::fromRgbF(0, 0.9, 0, 1));
}

void tst_CylinderSegment::segmentsShareMeshAndMaterial()
{
    Qt3DCore::QEntity pipe;
    const auto* a = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    const auto* b = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 7));

    QCOMPARE(componentsOfChildren<Qt3DExtras::QCylinderMesh>(a), componentsOfChildren<Qt3DExtras::QCylinderMesh>(b));
    QCOMPARE(componentsOfChildren<Qt3DExtras::QGoochMaterial>(a), componentsOfChildren<Qt3DExtras::QGoochMaterial>(b));
}

void tst_CylinderSegment::aSegmentIsFewNodes()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3));
    new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(2, 0, 3));

    // Four for the first; the second has a ball, which is two more.
    QCOMPARE(pipe.findChildren<Qt3DCore::QNode*>().size(), 10);
}

void tst_CylinderSegment::aNewLengthKeepsBeginAndUp()
{
    Qt3DCore::QEntity pipe;
    auto* segment = new CylinderSegment(&pipe, nullptr, QVector3D(1, 0, 0), QVector3D(1, 0, 3));

    segment->setLength(5.5F);

    QCOMPARE(segment->beginPoint(), QVector3D(1, 0, 0));
    QVERIFY(near(segment->endPoint(), QVector3D(1, 0, 5.5F)));
    QCOMPARE(segment->upDirection(), QVector3D(0, 1, 0));
    QVERIFY(near(segment->cylinderTransform()->matrix() * QVector3D(0, 0.5F, 0), QVector3D(0, 0, 5.5F)));
}

void tst_CylinderSegment::theEndIsRoundedToCentimetres()
{
    Qt3DCore::QEntity pipe;
    const auto* segment = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 3.004F));

    QVERIFY(near(segment->endPoint(), QVector3D(0, 0, 3), 1e-6F));
}

void tst_CylinderSegment::aRotationIsRelativeToThePredecessor()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(4, 0, 0));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(6, 0, 0));

    // The local rotation takes forward (+z) to the left (+x when looking along +z with +y up).
    second->setRotation(QQuaternion::fromDirection(QVector3D(1, 0, 0), QVector3D(0, 1, 0)));

    QVERIFY(near(second->beginPoint(), QVector3D(4, 0, 0)));
    // Left of +x is -z.
    QVERIFY(near(second->endPoint(), QVector3D(4, 0, -2)));
    QVERIFY(near(second->rotation().rotatedVector(QVector3D(0, 0, 1)), QVector3D(0, 0, -1)));
    QCOMPARE(second->parentRotation(), first->rotation());
}

void tst_CylinderSegment::aFollowerKeepsItsBendWhenItsPredecessorTurns()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 4));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(2, 0, 4));

    first->setRotation(QQuaternion::fromDirection(QVector3D(1, 0, 0), QVector3D(0, 1, 0)));
    second->recalcPointsRotation();

    QVERIFY(near(first->endPoint(), QVector3D(4, 0, 0)));
    QVERIFY(near(second->beginPoint(), QVector3D(4, 0, 0)));
    QVERIFY(near(second->endPoint(), QVector3D(4, 0, -2)));
}

void tst_CylinderSegment::aTranslatedSegmentSticksToItsPredecessor()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 4));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(0, 0, 6));

    second->translateBy(QVector3D(3, 0, 0));
    QVERIFY(near(second->beginPoint(), QVector3D(0, 0, 4)));
    // The end is three metres aside, and the length then rounded.
    QVERIFY(near(second->endPoint(), QVector3D(3, 0, 6), 0.005F));

    first->translateBy(QVector3D(0, 1, 0));
    QVERIFY(near(first->beginPoint(), QVector3D(0, 1, 0)));
    QVERIFY(near(first->endPoint(), QVector3D(0, 1, 4)));
    QVERIFY(near(first->transform()->translation(), QVector3D(0, 1, 0)));
}

void tst_CylinderSegment::aVerticalSegmentTakesItsUpFromThePredecessor()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 4));
    const auto* down = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(0, -3, 4));

    QVERIFY(near(down->upDirection(), QVector3D(0, 0, 1)));
    QVERIFY(near(down->rotation().rotatedVector(QVector3D(0, 0, 1)), QVector3D(0, -1, 0)));
    QVERIFY(near(down->rotation().rotatedVector(QVector3D(0, 1, 0)), QVector3D(0, 0, 1)));
}

void tst_CylinderSegment::aSegmentThatTurnsToTheVerticalTakesItsUpFromThePredecessor()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 4));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(0, 0, 7));

    second->setRotation(QQuaternion::fromDirection(QVector3D(0, -1, 0), QVector3D(0, 0, 1)));
    QVERIFY(near(second->endPoint(), QVector3D(0, -3, 4)));
    QVERIFY(near(second->upDirection(), QVector3D(0, 0, 1)));

    second->setRotation(QQuaternion());
    QVERIFY(near(second->endPoint(), QVector3D(0, 0, 7)));
    QVERIFY(near(second->upDirection(), QVector3D(0, 1, 0)));
}

void tst_CylinderSegment::aVerticalFirstSegmentHasAnUpOfItsOwn()
{
    Qt3DCore::QEntity pipe;
    QVERIFY(near(CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 2, 0)).upDirection(), QVector3D(-1, 0, 0)));
    QVERIFY(near(CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, -2, 0)).upDirection(), QVector3D(1, 0, 0)));
}

void tst_CylinderSegment::theMeshTurnsWithThePointsAlone()
{
    Qt3DCore::QEntity pipe;
    auto* segment = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(4, 0, 0));
    const QQuaternion rotation = segment->rotation();
    const QMatrix4x4 drawn = segment->transform()->matrix();

    segment->calcMeshRotation(QQuaternion::fromAxisAndAngle(1, 2, 3, 50.0F));

    QCOMPARE(segment->rotation(), rotation);
    QCOMPARE(segment->transform()->matrix(), drawn);
}

void tst_CylinderSegment::theWorldsUpIsSeenThroughTheHoldersTransform()
{
    Holder holder;
    holder.setRotation(QQuaternion::fromAxisAndAngle(0, 0, 1, 90.0F), 0);
    auto* pipe = new Qt3DCore::QEntity(&holder);

    const auto* segment = new CylinderSegment(pipe, nullptr, QVector3D(), QVector3D(0, 0, 4));

    // Turned by 90 degrees about z, local +x is the world's up.
    QVERIFY(near(segment->upDirection(), QVector3D(1, 0, 0)));
}

void tst_CylinderSegment::aPredecessorThatDiesIsForgotten()
{
    Qt3DCore::QEntity pipe;
    auto* first = new CylinderSegment(&pipe, nullptr, QVector3D(), QVector3D(0, 0, 4));
    auto* second = new CylinderSegment(&pipe, first, first->endPoint(), QVector3D(0, 0, 6));

    delete first;
    second->translateBy(QVector3D(0, 0, 1));

    QVERIFY(!second->prevSegment());
    QVERIFY(near(second->beginPoint(), QVector3D(0, 0, 5)));
}

void tst_CylinderSegment::proximityBeginsWithoutAPipe()
{
    QVERIFY(!PipeProximity().pipe());
}

QTEST_GUILESS_MAIN(tst_CylinderSegment)

#include "tst_CylinderSegment.moc"
