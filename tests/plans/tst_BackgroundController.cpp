#include "plans/BackgroundController.h"
#include "plans/PaperPlan.h"
#include "plans/PlanAlignment.h"
#include "scene/SceneRoot.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace Torvik::View3d;

namespace {

/** Single precision over a few hundred metres. */
constexpr float tolerance = 2e-3F;

bool near(const QVector3D& a, const QVector3D& b)
{
    return (a - b).length() < tolerance;
}

bool near(const QMatrix4x4& a, const QMatrix4x4& b)
{
    for (int i = 0; i < 16; ++i) {
        if (std::abs(a.constData()[i] - b.constData()[i]) > tolerance)
            return false;
    }
    return true;
}

/** As seen from above: the height of a plan is not the alignment's business. */
bool over(const QVector3D& a, const QVector3D& b)
{
    return near({a.x(), 0.0F, a.z()}, {b.x(), 0.0F, b.z()});
}

using Align = void (BackgroundController::*)(QVector3D, QVector3D, QVector3D, QVector3D);

} // namespace

Q_DECLARE_METATYPE(Align)

/** Aligning a plan with the network by points that the user has pointed at. */
class tst_BackgroundController : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_root = std::make_unique<SceneRoot>();
        m_plan = new PaperPlan(m_root.get());
        m_plan->setPosRotScaleFromPlanSettings({40.0F, -3.0F, 12.0F}, {0.0F, 20.0F, 0.0F}, {2.0F, 1.0F, 2.0F});
        m_controller = std::make_unique<BackgroundController>();
        m_controller->setTargetPlan(m_plan);
    }

    void cleanup()
    {
        m_root->setCamera(nullptr);
        m_root.reset();
    }

    void theTargetIsToldOnAChangeOnly()
    {
        BackgroundController controller;
        QSignalSpy told(&controller, &BackgroundController::targetPlanChanged);
        QVERIFY(!controller.getTargetPlan());

        controller.setTargetPlan(m_plan);
        controller.setTargetPlan(m_plan);
        controller.setTargetPlan(nullptr);

        QCOMPARE(told.count(), 2);
    }

    void withoutATargetNothingIsDone_data()
    {
        QTest::addColumn<Align>("align");
        QTest::newRow("scale") << &BackgroundController::scalePlanFile;
        QTest::newRow("rotate") << &BackgroundController::rotatePlanFile;
        QTest::newRow("north") << &BackgroundController::setPlanNorthDirection;
        QTest::newRow("length") << &BackgroundController::setPlanScaleWithSectionAndValue;
    }

    void withoutATargetNothingIsDone()
    {
        QFETCH(Align, align);
        delete m_plan;
        QTest::ignoreMessage(QtCriticalMsg, "target plan of type IBackground must be set");

        (m_controller.get()->*align)({}, {1.0F, 0.0F, 0.0F}, {}, {2.0F, 0.0F, 0.0F});
    }

    void thePlansLineComesToLieOnTheScenes_data()
    {
        QTest::addColumn<QVector3D>("a1");
        QTest::addColumn<QVector3D>("a2");
        QTest::addColumn<QVector3D>("b1");
        QTest::addColumn<QVector3D>("b2");
        const QVector3D a1(50.0F, 0.0F, 20.0F);
        const QVector3D a2(80.0F, 0.0F, 60.0F);
        QTest::newRow("larger and turned") << a1 << a2 << QVector3D(-30, 0, 10) << QVector3D(-130, 0, 60);
        QTest::newRow("smaller") << a1 << a2 << QVector3D(0, 0, 0) << QVector3D(3, 0, 4);
        QTest::newRow("right about, along x")
            << QVector3D(0, 0, 0) << QVector3D(10, 0, 0) << QVector3D(5, 0, 5) << QVector3D(-15, 0, 5);
        QTest::newRow("right about, along z")
            << QVector3D(0, 0, 0) << QVector3D(0, 0, 10) << QVector3D(5, 0, 5) << QVector3D(5, 0, -5);
        QTest::newRow("moved only") << a1 << a2 << a1 + QVector3D(7, 0, -9) << a2 + QVector3D(7, 0, -9);
    }

    void thePlansLineComesToLieOnTheScenes()
    {
        QFETCH(QVector3D, a1);
        QFETCH(QVector3D, a2);
        QFETCH(QVector3D, b1);
        QFETCH(QVector3D, b2);
        const QMatrix4x4 toPlan = m_plan->transformMatrix().inverted();
        const QVector3D p1 = toPlan.map(a1);
        const QVector3D p2 = toPlan.map(a2);
        const QVector3D upBefore = m_plan->transformMatrix().mapVector({0.0F, 1.0F, 0.0F});

        m_controller->scalePlanFile(a1, a2, b1, b2);

        QVERIFY(over(m_plan->transformMatrix().map(p1), b1));
        QVERIFY(over(m_plan->transformMatrix().map(p2), b2));
        QVERIFY(near(m_plan->transformMatrix().mapVector({0.0F, 1.0F, 0.0F}), upBefore));
        QCOMPARE(m_plan->transform()->scale3D().y(), 1.0F);
    }

    void theSameLineChangesNothing()
    {
        const QMatrix4x4 before = m_plan->transformMatrix();

        m_controller->scalePlanFile({1, 0, 2}, {30, 0, 40}, {1, 0, 2}, {30, 0, 40});
        m_controller->rotatePlanFile({1, 0, 2}, {30, 0, 40}, {1, 0, 2}, {30, 0, 40});
        m_controller->setPlanScaleWithSectionAndValue({0, 0, 0}, {30, 0, 40}, {50, 0, 0}, {});

        QVERIFY(near(m_plan->transformMatrix(), before));
    }

    void rotatingTurnsAndMovesWithoutScaling()
    {
        const QVector3D a1(50, 0, 20);
        const QVector3D a2(80, 0, 60);
        const QVector3D p1 = m_plan->transformMatrix().inverted().map(a1);

        m_controller->rotatePlanFile(a1, a2, {5, 0, 5}, {5, 0, 500});

        QVERIFY(over(m_plan->transformMatrix().map(p1), {5, 0, 5}));
        QVERIFY(near(m_plan->transform()->scale3D(), {2, 1, 2}));
        const float turned = std::fmod(m_plan->transform()->rotationY() - 20.0F + 360.0F, 360.0F);
        QVERIFY2(std::abs(turned - (360.0F - 36.8699F)) < 0.01F, qPrintable(QString::number(double(turned))));
    }

    void rotatingByLinesOfOneDirectionOnlyMoves()
    {
        QMatrix4x4 expected = m_plan->transformMatrix();
        expected.setColumn(3, expected.column(3) + QVector4D(-4, 0, 8, 0));

        m_controller->rotatePlanFile({10, 0, 10}, {20, 0, 10}, {6, 0, 18}, {96, 0, 18});

        QVERIFY(near(m_plan->transformMatrix(), expected));
    }

    void aLineGetsItsLengthAndItsBeginStays()
    {
        const QVector3D a1(10, 0, 10);
        const QVector3D a2(13, 0, 14);
        const QMatrix4x4 toPlan = m_plan->transformMatrix().inverted();
        const QVector3D p1 = toPlan.map(a1);
        const QVector3D p2 = toPlan.map(a2);

        m_controller->setPlanScaleWithSectionAndValue(a1, a2, {12.5F, 99, 99}, {99, 99, 99});

        QVERIFY(over(m_plan->transformMatrix().map(p1), a1));
        QVERIFY(over(m_plan->transformMatrix().map(p2), {17.5F, 0, 20}));
    }

    void aLinePointsNorth()
    {
        const QVector3D south(10, 0, 10);
        const QVector3D end(30, 0, 10);
        const QMatrix4x4 toPlan = m_plan->transformMatrix().inverted();
        const QVector3D p1 = toPlan.map(south);
        const QVector3D p2 = toPlan.map(end);

        m_controller->setPlanNorthDirection(south, end, {9, 9, 9}, {9, 9, 9});

        QVERIFY(over(m_plan->transformMatrix().map(p1), south));
        QVERIFY(over(m_plan->transformMatrix().map(p2), {10, 0, 30}));
    }

    void aLockedPlanKeepsItsNewPlaceInTheCamera_data() { withoutATargetNothingIsDone_data(); }

    void aLockedPlanKeepsItsNewPlaceInTheCamera()
    {
        QFETCH(Align, align);
        Qt3DRender::QCamera camera;
        camera.setPosition({0, 100, -10});
        camera.setViewCenter({0, 0, 0});
        m_root->setCamera(&camera);
        m_plan->setLock(true);

        (m_controller.get()->*align)({1, 0, 2}, {30, 0, 40}, {7, 0, 8}, {90, 0, 8});
        const QVector3D place = m_plan->position();
        camera.translateWorld({6, 0, 0});

        QVERIFY(near(m_plan->position(), place + QVector3D(6, 0, 0)));
    }

    void aMoveStatesItsSource()
    {
        m_plan->setTransformFlags(TransformFlags::Manual);

        m_controller->setPlanNorthDirection({}, {1, 0, 0}, {}, {});
        QCOMPARE(m_plan->transformFlags(), int(TransformFlags::Manual));
        m_controller->scalePlanFile({}, {1, 0, 0}, {}, {2, 0, 0});

        QCOMPARE(m_plan->transformFlags(), int(TransformFlags::Observations));
    }

    void theParametersBearTheNamesThatQmlSees()
    {
        const QMetaObject& meta = BackgroundController::staticMetaObject;
        const auto names = [&meta](const char* signature) {
            return meta.method(meta.indexOfMethod(signature)).parameterNames();
        };

        QCOMPARE(names("scalePlanFile(QVector3D,QVector3D,QVector3D,QVector3D)"),
                 (QList<QByteArray> {"A1", "A2", "B1", "B2"}));
        QCOMPARE(names("rotatePlanFile(QVector3D,QVector3D,QVector3D,QVector3D)"),
                 (QList<QByteArray> {"pointStartFrom", "pointEndFrom", "pointStartTo", "pointEndTo"}));
        QCOMPARE(names("setPlanNorthDirection(QVector3D,QVector3D,QVector3D,QVector3D)"),
                 (QList<QByteArray> {"pointStartFrom", "pointEndFrom", "", ""}));
        QCOMPARE(names("setPlanScaleWithSectionAndValue(QVector3D,QVector3D,QVector3D,QVector3D)"),
                 (QList<QByteArray> {"A1", "A2", "valueVector", ""}));
    }

private:
    std::unique_ptr<SceneRoot> m_root;
    std::unique_ptr<BackgroundController> m_controller;
    PaperPlan* m_plan = nullptr;
};

QTEST_MAIN(tst_BackgroundController)
#include "tst_BackgroundController.moc"
