#include "interaction/Utils3d.h"

#include "common/LogCapture.h"

#include <QMetaMethod>
#include <QQmlEngine>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;
using Qt3DRender::QCamera;

namespace {

constexpr float width = 600.0F;
constexpr float height = 400.0F;

std::unique_ptr<QCamera> cameraAbove(const QVector3D& centre)
{
    auto camera = std::make_unique<QCamera>();
    camera->setProjectionType(Qt3DRender::QCameraLens::PerspectiveProjection);
    camera->setFieldOfView(40.0F);
    camera->setAspectRatio(width / height);
    camera->setNearPlane(0.5F);
    camera->setFarPlane(1000.0F);
    camera->setUpVector(QVector3D(0.0F, 1.0F, 0.0F));
    camera->setViewCenter(centre);
    camera->setPosition(centre + QVector3D(5.0F, 20.0F, -30.0F));
    // A turn of nothing makes the up vector perpendicular to the view, as it is after any gesture.
    const QVector3D view = camera->viewVector().normalized();
    const QVector3D left = QVector3D::crossProduct(QVector3D(0.0F, 1.0F, 0.0F), view).normalized();
    camera->setUpVector(QVector3D::crossProduct(view, left));
    return camera;
}

double tiltBelowHorizon(QCamera* camera)
{
    const QVector3D view = camera->viewVector();
    const double level = std::hypot(static_cast<double>(view.x()), static_cast<double>(view.z()));
    return qRadiansToDegrees(std::atan2(-static_cast<double>(view.y()), level));
}

bool near(const QVector3D& a, const QVector3D& b, float tolerance = 1e-3F)
{
    return (a - b).length() < tolerance;
}

} // namespace

class tst_Utils3d : public QObject {
    Q_OBJECT

private slots:
    void theInvokableOperationsStandInOrder();
    void qmlSeesUndefinedForAHorizontalRay();
    void qmlSeesThePointOfARay();
    void qmlReachesTheCamerasPixels();
    void aRayMeetsAnyPlane();
    void aPlaneOfAnotherNormalIsMetWhereItStands();
    void theCamerasOwnRetinaAndRay();
    void anIntersectionLeavesItsTargetUntouchedWhenThereIsNone();
    void aHorizontalRayGivesTheMarkOfFailureAndOneWarning();
    void aRayThatPointsAwayFromTheGroundMeetsItBehindTheCamera();
    void aGroundPointComesBackToItsPixel();
    void noCameraGivesTheScreensCorner();
    void noCameraGivesNoGroundPoint();
    void horizontalTranslationKeepsTheHeight();
    void verticalTranslationTakesTheWholeWay();
    void rotationCarriesTheFirstPointToTheSecond();
    void aTiltThatOvershootsEndsOnTheLimit();
    void aTiltInsideTheLimitsIsAFifthOfADegreePerPixel();
    void aZoomLeavesTheViewCentre();
    void aZoomThatReachesTheLeastDistanceMovesNothing();
    void aCameraStraightAboveHasAFixedFrontPosition();
    void mappedVectorsAreNotMoved();
    void axisAndAngleComeBack();
};

void tst_Utils3d::theInvokableOperationsStandInOrder()
{
    const QMetaObject* meta = Utils3d::instance().metaObject();
    QStringList names;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        // Default arguments appear as shorter clones behind their method.
        const QString name = QString::fromLatin1(meta->method(i).name());
        if (!names.contains(name))
            names << name;
    }

    QCOMPARE(names, QStringList({"pointScreenToWorldGround", "pointWorldToScreen", "rayPlaneIntersec", "mapVector",
                                 "camFrontPosition"}));
    for (const char* signature :
         {"pointScreenToWorldGround(float,float,Qt3DRender::QCamera*,double,double,QVector3D)",
          "pointScreenToWorldGround(float,float,Qt3DRender::QCamera*,double,double)",
          "pointWorldToScreen(Qt3DRender::QCamera*,QVector3D,float,float)",
          "rayPlaneIntersec(QVector3D,QVector3D,QVector3D,QVector3D)", "rayPlaneIntersec(QVector3D,QVector3D)",
          "mapVector(QMatrix4x4,QVector3D)", "camFrontPosition(QVector3D,QVector3D)"})
        QVERIFY2(meta->indexOfMethod(signature) >= 0, signature);
}

void tst_Utils3d::qmlSeesUndefinedForAHorizontalRay()
{
    QQmlEngine engine;
    QQmlEngine::setObjectOwnership(&Utils3d::instance(), QQmlEngine::CppOwnership);
    engine.globalObject().setProperty("Utils3D", engine.newQObject(&Utils3d::instance()));
    engine.globalObject().setProperty("source", engine.toScriptValue(QVector3D(1, 5, 1)));
    engine.globalObject().setProperty("level", engine.toScriptValue(QVector3D(1, 0, 0)));

    const QJSValue result = engine.evaluate("Utils3D.rayPlaneIntersec(source, level)");

    QVERIFY2(result.isUndefined(), qPrintable(result.toString()));
}

void tst_Utils3d::qmlSeesThePointOfARay()
{
    QQmlEngine engine;
    QQmlEngine::setObjectOwnership(&Utils3d::instance(), QQmlEngine::CppOwnership);
    engine.globalObject().setProperty("Utils3D", engine.newQObject(&Utils3d::instance()));
    engine.globalObject().setProperty("source", engine.toScriptValue(QVector3D(1, 5, 1)));
    engine.globalObject().setProperty("down", engine.toScriptValue(QVector3D(0, -1, 0)));

    const QJSValue result = engine.evaluate("Utils3D.rayPlaneIntersec(source, down)");

    QCOMPARE(result.toVariant().value<QVector3D>(), QVector3D(1, 0, 1));
}

void tst_Utils3d::qmlReachesTheCamerasPixels()
{
    QQmlEngine engine;
    QQmlEngine::setObjectOwnership(&Utils3d::instance(), QQmlEngine::CppOwnership);
    const auto camera = cameraAbove(QVector3D(40, 0, -70));
    QQmlEngine::setObjectOwnership(camera.get(), QQmlEngine::CppOwnership);
    engine.globalObject().setProperty("Utils3D", engine.newQObject(&Utils3d::instance()));
    engine.globalObject().setProperty("camera", engine.newQObject(camera.get()));
    engine.globalObject().setProperty("matrix",
                                      engine.toScriptValue(QMatrix4x4(QQuaternion(0, 0, 1, 0).toRotationMatrix())));
    engine.globalObject().setProperty("ahead", engine.toScriptValue(QVector3D(0, 0, 1)));
    const auto vector = [&engine](const char* text) {
        const QJSValue result = engine.evaluate(text);
        return result.isError() ? QVector3D(qQNaN(), 0, 0) : result.toVariant().value<QVector3D>();
    };

    const QPointF middle =
        engine.evaluate("Utils3D.pointWorldToScreen(camera, camera.viewCenter, 600, 400)").toVariant().toPointF();
    QVERIFY((middle - QPointF(299.5, 199.5)).manhattanLength() < 0.1);
    QVERIFY(
        near(vector("Utils3D.pointScreenToWorldGround(299.5, 199.5, camera, 600, 400)"), QVector3D(40, 0, -70), 0.01F));
    QVERIFY(near(vector("Utils3D.mapVector(matrix, ahead)"), QVector3D(0, 0, -1)));
    QVERIFY(near(vector("Utils3D.camFrontPosition(camera.position, camera.viewCenter)"),
                 Utils3d::camFrontPosition(camera->position(), camera->viewCenter())));
}

void tst_Utils3d::aRayMeetsAnyPlane()
{
    QCOMPARE(Utils3d::rayPlaneIntersec(QVector3D(), QVector3D(1, 1, 0), QVector3D(4, 9, 9), QVector3D(10, 0, 0)),
             QVariant(QVector3D(4, 4, 0)));
    QVERIFY(
        !Utils3d::rayPlaneIntersec(QVector3D(), QVector3D(0, 1, 0), QVector3D(4, 9, 9), QVector3D(10, 0, 0)).isValid());
}

void tst_Utils3d::aPlaneOfAnotherNormalIsMetWhereItStands()
{
    auto camera = cameraAbove(QVector3D());
    camera->setPosition(QVector3D(0, 5, -30));
    camera->setViewCenter(QVector3D(0, 5, 0));
    camera->setUpVector(QVector3D(0, 1, 0));
    const Kx::Test::LogCapture log;

    const QVector3D point =
        Utils3d::pointScreenToWorldGround(100.0F, 50.0F, camera.get(), 201.0, 101.0, QVector3D(0, 0, 1));

    QVERIFY(near(point, QVector3D(0, 5, 0)));
    QVERIFY(log.lines().isEmpty());
}

void tst_Utils3d::theCamerasOwnRetinaAndRay()
{
    const auto camera = cameraAbove(QVector3D(1, 2, 3));

    const auto halfHeight = static_cast<float>(0.5 * std::tan(qDegreesToRadians(20.0)));
    const RayMath::RetinaLimits limits = Utils3d::cameraRetinaLimits(camera.get());
    QVERIFY(std::abs(limits.left - 1.5F * halfHeight) < 1e-5F);
    QVERIFY(std::abs(limits.right + 1.5F * halfHeight) < 1e-5F);
    QVERIFY(std::abs(limits.top - halfHeight) < 1e-5F);
    QVERIFY(std::abs(limits.bottom + halfHeight) < 1e-5F);

    const QMatrix4x4 rotation = Utils3d::cameraToWorldRotation(camera.get());
    QVERIFY(near(rotation.column(1).toVector3D(), camera->upVector().normalized(), 1e-5F));
    QVERIFY(near(rotation.column(2).toVector3D(), camera->viewVector().normalized(), 1e-5F));

    const QVector3D ray = Utils3d::cameraToScreenRay(299.5F, 199.5F, camera.get(), width, height);
    QVERIFY(near(ray, camera->viewVector().normalized() * 0.5F, 1e-5F));

    QCOMPARE(Utils3d::roundToFloat(0.12345674), 0.1234567F);
}

void tst_Utils3d::anIntersectionLeavesItsTargetUntouchedWhenThereIsNone()
{
    const Kx::Test::LogCapture log;
    QVector3D out(7, 8, 9);
    QVERIFY(!Utils3d::rayPlaneIntersec(QVector3D(0, 1, 0), QVector3D(1, 0, 0)).isValid());

    QVERIFY(
        !Utils3d::rayPlaneIntersection(QVector3D(0, 1, 0), QVector3D(1, 0, 0), out, QVector3D(), QVector3D(0, 1, 0)));
    QCOMPARE(out, QVector3D(7, 8, 9));

    QVERIFY(
        Utils3d::rayPlaneIntersection(QVector3D(0, 1, 0), QVector3D(1, -1, 0), out, QVector3D(), QVector3D(0, 1, 0)));
    QCOMPARE(out, QVector3D(1, 0, 0));
    QVERIFY(log.lines().isEmpty());
}

void tst_Utils3d::aHorizontalRayGivesTheMarkOfFailureAndOneWarning()
{
    auto camera = cameraAbove(QVector3D());
    camera->setPosition(QVector3D(0, 5, -30));
    camera->setViewCenter(QVector3D(0, 5, 0));
    camera->setUpVector(QVector3D(0, 1, 0));

    const Kx::Test::LogCapture log;

    // The middle of the picture's middle pixel.
    const QVector3D point = Utils3d::pointScreenToWorldGround(100.0F, 50.0F, camera.get(), 201.0, 101.0);

    QCOMPARE(point, QVector3D(0, -1, 0));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.count(2, "View3d::Utils3d", "Intersection failed."), 1);
}

void tst_Utils3d::aRayThatPointsAwayFromTheGroundMeetsItBehindTheCamera()
{
    auto camera = cameraAbove(QVector3D());
    camera->setPosition(QVector3D(0, 5, 0));
    camera->setViewCenter(QVector3D(0, 10, 10));
    camera->setUpVector(QVector3D(0, 1, -0.5F).normalized());
    const Kx::Test::LogCapture log;

    const QVector3D point = Utils3d::pointScreenToWorldGround(100.0F, 50.0F, camera.get(), 201.0, 101.0);

    QVERIFY(near(point, QVector3D(0, 0, -10)));
    QVERIFY(log.lines().isEmpty());
}

void tst_Utils3d::aGroundPointComesBackToItsPixel()
{
    auto camera = cameraAbove(QVector3D(40, 0, -70));

    for (const QPointF pixel : {QPointF(3, 390), QPointF(300, 200), QPointF(580, 20)}) {
        const QVector3D ground =
            Utils3d::pointScreenToWorldGround(static_cast<float>(pixel.x()), static_cast<float>(pixel.y()),
                                              camera.get(), static_cast<double>(width), static_cast<double>(height));
        const QPointF back = Utils3d::pointWorldToScreen(camera.get(), ground, width, height);

        // Floats of some tens of metres against pixels of a few centimetres.
        QVERIFY2((back - pixel).manhattanLength() < 0.1, qPrintable(QString("%1 %2").arg(back.x()).arg(back.y())));
    }
    // The view centre is in the middle of the picture; whole pixels count from the middle of the first.
    const QPointF middle = Utils3d::pointWorldToScreen(camera.get(), camera->viewCenter(), width, height);
    QVERIFY((middle - QPointF(299.5, 199.5)).manhattanLength() < 0.1);
    // What lies to the right of the view appears right of the middle.
    const QVector3D right = QVector3D::crossProduct(camera->viewVector(), camera->upVector()).normalized();
    QVERIFY(Utils3d::pointWorldToScreen(camera.get(), camera->viewCenter() + right, width, height).x() > 310.0);
}

void tst_Utils3d::noCameraGivesTheScreensCorner()
{
    const Kx::Test::LogCapture log;
    QCOMPARE(Utils3d::pointWorldToScreen(nullptr, QVector3D(1, 2, 3), width, height), QPointF());
    QVERIFY(log.lines().isEmpty());
}

void tst_Utils3d::noCameraGivesNoGroundPoint()
{
    const Kx::Test::LogCapture log;

    QCOMPARE(Utils3d::pointScreenToWorldGround(1.0F, 1.0F, nullptr, 10.0, 10.0), QVector3D(0, -1, 0));
    QCOMPARE(log.lines().size(), 1);
}

void tst_Utils3d::horizontalTranslationKeepsTheHeight()
{
    auto camera = cameraAbove(QVector3D(1, 2, 3));
    const QVector3D position = camera->position();

    Utils3d::translateHorizontally(camera.get(), QVector3D(1, 5, 1), QVector3D(4, 9, 8));

    QVERIFY(near(camera->position(), position + QVector3D(3, 0, 7)));
    QVERIFY(near(camera->viewCenter(), QVector3D(4, 2, 10)));
}

void tst_Utils3d::verticalTranslationTakesTheWholeWay()
{
    auto camera = cameraAbove(QVector3D(1, 2, 3));
    const QVector3D position = camera->position();

    Utils3d::translateVertically(camera.get(), QVector3D(1, 5, 1), QVector3D(4, 9, 8));

    QVERIFY(near(camera->position(), position + QVector3D(3, 4, 7)));
    QVERIFY(near(camera->viewCenter(), QVector3D(4, 6, 10)));
}

void tst_Utils3d::rotationCarriesTheFirstPointToTheSecond()
{
    const QVector3D centre(10, 0, 10);
    auto camera = cameraAbove(centre);
    camera->setPosition(centre + QVector3D(20, 15, 0));

    // From +x to +z, a quarter of a turn about the vertical.
    Utils3d::rotateAroundCenter(camera.get(), centre + QVector3D(3, 0, 0), centre + QVector3D(0, 0, 5));

    QVERIFY(near(camera->viewCenter(), centre));
    QVERIFY(near(camera->position(), centre + QVector3D(0, 15, 20)));
}

void tst_Utils3d::aTiltThatOvershootsEndsOnTheLimit()
{
    auto camera = cameraAbove(QVector3D(10, 0, 10));

    Utils3d::tiltCamera(camera.get(), 5000.0, 10.1F, 89.5F);
    QVERIFY2(std::abs(tiltBelowHorizon(camera.get()) - 89.5) < 1e-3,
             qPrintable(QString::number(tiltBelowHorizon(camera.get()))));

    Utils3d::tiltCamera(camera.get(), -5000.0, 10.1F, 89.5F);
    QVERIFY2(std::abs(tiltBelowHorizon(camera.get()) - 10.1) < 1e-3,
             qPrintable(QString::number(tiltBelowHorizon(camera.get()))));
}

void tst_Utils3d::aTiltInsideTheLimitsIsAFifthOfADegreePerPixel()
{
    auto camera = cameraAbove(QVector3D(10, 0, 10));
    const double before = tiltBelowHorizon(camera.get());

    Utils3d::tiltCamera(camera.get(), 25.0, 10.1F, 89.5F);

    QVERIFY(std::abs(tiltBelowHorizon(camera.get()) - before - 5.0) < 1e-3);
}

void tst_Utils3d::aZoomLeavesTheViewCentre()
{
    auto camera = cameraAbove(QVector3D(10, 0, 10));
    const float distance = camera->viewVector().length();

    Utils3d::zoomTranslatingAlongViewVector(camera.get(), 99.0, 15.0, 5.0, 1.0, 500.0);

    QVERIFY(near(camera->viewCenter(), QVector3D(10, 0, 10)));
    // Ten pixels of two percent each.
    QVERIFY(std::abs(camera->viewVector().length() - 0.8F * distance) < 1e-3F);
}

void tst_Utils3d::aZoomThatReachesTheLeastDistanceMovesNothing()
{
    auto camera = cameraAbove(QVector3D());
    camera->setPosition(QVector3D(0, 30, 40));
    camera->setViewCenter(QVector3D());

    Utils3d::zoomTranslatingAlongViewVector(camera.get(), 0.0, 10.0, 0.0, 40.0, 500.0);
    QCOMPARE(camera->position(), QVector3D(0, 30, 40));

    Utils3d::zoomTranslatingAlongViewVector(camera.get(), 0.0, 10.0, 0.0, 39.9, 500.0);
    QVERIFY(near(camera->position(), QVector3D(0, 24, 32)));
}

void tst_Utils3d::aCameraStraightAboveHasAFixedFrontPosition()
{
    QCOMPARE(Utils3d::camFrontPosition(QVector3D(7, 100, -3), QVector3D(7, 2, -3)), QVector3D(0, 0, 200));
    QVERIFY(near(Utils3d::camFrontPosition(QVector3D(7, 5, -3), QVector3D(4, 1, -3)), QVector3D(9, 1, -3)));
}

void tst_Utils3d::mappedVectorsAreNotMoved()
{
    QMatrix4x4 matrix;
    matrix.translate(100, 100, 100);
    matrix.rotate(90.0F, 0, 1, 0);
    matrix.scale(2.0F);

    QVERIFY(near(Utils3d::mapVector(matrix, QVector3D(0, 0, 1)), QVector3D(2, 0, 0)));
}

void tst_Utils3d::axisAndAngleComeBack()
{
    QVector3D axis(9, 9, 9);
    float angle = 9.0F;

    Utils3d::getAxisAndAngle(QQuaternion::fromAxisAndAngle(0, 0, 1, 33.0F), axis, angle);
    QVERIFY(near(axis, QVector3D(0, 0, 1)));
    QVERIFY(std::abs(angle - 33.0F) < 1e-3F);

    Utils3d::getAxisAndAngle(QQuaternion(), axis, angle);
    QCOMPARE(axis, QVector3D());
    QCOMPARE(angle, 0.0F);
}

QTEST_GUILESS_MAIN(tst_Utils3d)

#include "tst_Utils3d.moc"
