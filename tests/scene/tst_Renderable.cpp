#include "scene/Renderable.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <functional>

using namespace Torvik::View3d;

namespace {

class Thing : public Renderable {
public:
    explicit Thing(Qt3DCore::QEntity* parent = nullptr)
        : Renderable(parent)
    {
    }
    QString renderableType() const override { return QStringLiteral("thing"); }
    void setSelectedMaterial() override { calls << QStringLiteral("selected"); }
    void setDefaultMaterial() override { calls << QStringLiteral("default"); }
    /** What happens to the thing and to its control, in order. */
    QStringList calls;
};

/** As a node does: whatever moves it says where it comes from in the end. */
class Dragged : public Thing {
public:
    using Thing::move;
    void move(QVector3D vector, MeasurementType flags) override
    {
        calls << QStringLiteral("move %1").arg(int(flags));
        Thing::move(vector, flags);
        setTransformFlags(TransformFlags::Manual);
    }
};

class Control : public TouchControlBase {
public:
    explicit Control(Thing* thing)
        : TouchControlBase(thing)
        , m_calls(thing->calls)
    {
    }
    void disableArrows() override { m_calls << QStringLiteral("disableArrows"); }
    void enablePick() override { m_calls << QStringLiteral("enablePick"); }
    void disablePick() override { m_calls << QStringLiteral("disablePick"); }
    void allow(bool allowed) override { m_allowed = allowed; }
    bool isAllowed() const override { return m_allowed; }
    void setMode(Mode const&) override {}
    void addAxisControlArrows(float) override {}
    void clearAxisControlArrows() override {}
    bool axisArrowVisible() const override { return false; }
    void setAxisArrowVisible(bool) override {}
    QString axisArrowMode() const override { return {}; }
    void setAxisArrowMode(QString const&) override {}

private:
    QStringList& m_calls;
    bool m_allowed = false;
};

const QVector3D place(1, 2, 3);

} // namespace

class tst_Renderable : public QObject {
    Q_OBJECT

private slots:
    void whichSourcesHaveAPositionAndWhichBindIt_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("hasPosition");
        QTest::addColumn<bool>("bound");
        QTest::newRow("unknown") << int(TransformFlags::Unknown) << false << false;
        QTest::newRow("observations") << int(TransformFlags::Observations) << true << false;
        QTest::newRow("CAD") << int(TransformFlags::CAD) << true << true;
        QTest::newRow("manual") << int(TransformFlags::Manual) << true << true;
        QTest::newRow("GPS") << int(TransformFlags::GPS) << true << true;
        QTest::newRow("GIS") << int(TransformFlags::GIS) << true << true;
        QTest::newRow("geosensor") << int(TransformFlags::Geosensor) << true << true;
        QTest::newRow("pipe shape") << int(TransformFlags::PipeShape) << true << true;
        QTest::newRow("observations and GIS") << 17 << true << true;
        QTest::newRow("only a direction bit") << 128 << false << false;
    }

    void whichSourcesHaveAPositionAndWhichBindIt()
    {
        QFETCH(int, flags);
        QFETCH(bool, hasPosition);
        QFETCH(bool, bound);
        const TransformFlags value(flags);
        QCOMPARE(value.getFlags(), flags);
        QCOMPARE(value.hasPosition(), hasPosition);
        QCOMPARE(value.positionBound(), bound);
    }

    void theSourcesAreStoredAsTheseBits()
    {
        using F = TransformFlags;
        QCOMPARE(
            (QVector<int> {F::Unknown, F::Observations, F::CAD, F::Manual, F::GPS, F::GIS, F::Geosensor, F::PipeShape}),
            (QVector<int> {0, 1, 2, 4, 8, 16, 32, 64}));
    }

    void aStoredValueLosesTheBitsAbove64()
    {
        QCOMPARE(TransformFlags::allTransformFlags(), 127);
        QCOMPARE((256 | 16) & TransformFlags::allTransformFlags(), 16);
    }

    void settingTheSameFlagsEmitsNothing()
    {
        FlaggedTransform transform(4);
        QSignalSpy spy(&transform, &FlaggedTransform::flagsChanged);

        transform.resetFlags(4);
        transform.setFlag(4);
        transform.unsetFlag(8);
        transform.resetFlagsIfKnown(0);
        QCOMPARE(spy.count(), 0);

        transform.setFlag(8);
        QCOMPARE(transform.getFlags(), 12);
        transform.unsetFlag(4);
        QCOMPARE(transform.getFlags(), 8);
        transform.resetFlags(0);
        QCOMPARE(transform.getFlags(), 0);
        QCOMPARE(spy.count(), 3);
    }

    void followersAddTheirSourceWithoutASignal()
    {
        FlaggedTransform transform(4);
        QSignalSpy spy(&transform, &FlaggedTransform::flagsChanged);
        transform.addFlagsSilently(1);
        QCOMPARE(transform.getFlags(), 5);
        QCOMPARE(spy.count(), 0);
    }

    void everyTransformSetterStatesItsSource()
    {
        FlaggedTransform transform;
        transform.setTranslation(place, 2);
        QCOMPARE(transform.getFlags(), 2);
        transform.setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 30), 4);
        QCOMPARE(transform.getFlags(), 4);
        transform.setRotationY(45, 8);
        QCOMPARE(transform.getFlags(), 8);
        QCOMPARE(transform.rotationY(), 45.0F);
        QMatrix4x4 matrix;
        matrix.translate(4, 5, 6);
        transform.setMatrix(matrix, 16);
        QCOMPARE(transform.getFlags(), 16);
        QCOMPARE(transform.translation(), QVector3D(4, 5, 6));
    }

    void aSetterWithoutASourceLeavesTheSourceAlone()
    {
        FlaggedTransform transform(4);
        QSignalSpy spy(&transform, &FlaggedTransform::flagsChanged);
        QMatrix4x4 matrix;
        matrix.translate(4, 5, 6);

        transform.setMatrix(matrix, 0);
        QCOMPARE(transform.translation(), QVector3D(4, 5, 6));
        transform.setRotationY(30, 0);
        transform.setTranslation(place, 0);
        transform.setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 60), 0);

        QCOMPARE(transform.getFlags(), 4);
        QCOMPARE(spy.count(), 0);
    }

    void theSourceIsToldBeforeTheGeometryChanges()
    {
        FlaggedTransform transform;
        QVector<QMatrix4x4> told;
        connect(&transform, &FlaggedTransform::flagsChanged, this, [&] { told.append(transform.matrix()); });
        QVector<QMatrix4x4> before;
        const auto set = [&](const std::function<void()>& setter) {
            before.append(transform.matrix());
            setter();
        };
        QMatrix4x4 matrix;
        matrix.translate(4, 5, 6);

        set([&] { transform.setTranslation(place, 2); });
        set([&] { transform.setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 30), 4); });
        set([&] { transform.setRotationY(45, 8); });
        set([&] { transform.setMatrix(matrix, 16); });

        QCOMPARE(told, before);
        QCOMPARE(transform.matrix(), matrix);
    }

    void everyKindOfChangeIsToldOnce()
    {
        Thing thing;
        const QSignalSpy spy(&thing, &Renderable::transformChanged);
        thing.setPosition(place, 0);
        QCOMPARE(spy.count(), 1);
        thing.setRotation(QQuaternion::fromAxisAndAngle(0, 1, 0, 30), 0);
        QCOMPARE(spy.count(), 2);
        thing.setTransformFlags(4);
        QCOMPARE(spy.count(), 3);
    }

    void whatABareThingDoesNot()
    {
        Thing thing;
        Thing other;
        thing.setPosition(place, TransformFlags::Manual);
        const QMatrix4x4 before = thing.transformMatrix();
        const QSignalSpy moved(&thing, &Renderable::transformChanged);
        const QSignalSpy named(&thing, &Renderable::nameChanged);

        QCOMPARE(before, thing.transform()->matrix());
        QCOMPARE(thing.connectionPoint(&other), place);
        thing.setName(QStringLiteral("x"));
        QCOMPARE(thing.name(), QString());
        thing.connectTo(&other);
        thing.connectApply();
        thing.connectCancel();
        thing.doubleTapped();

        QCOMPARE(named.count(), 0);
        QCOMPARE(moved.count(), 0);
        QCOMPARE(thing.transformMatrix(), before);
        QVERIFY(thing.calls.isEmpty());
    }

    void aDragFromQmlGoesTheObjectsOwnWay()
    {
        Dragged thing;
        thing.setTransformFlags(TransformFlags::GIS);

        QVERIFY(QMetaObject::invokeMethod(&thing, "move", Q_ARG(QVector3D, place)));

        QCOMPARE(thing.calls, QStringList {QStringLiteral("move 0")});
        QCOMPARE(thing.position(), place);
        QCOMPARE(thing.transformFlags(), int(TransformFlags::Manual));
    }

    void aNewThingStandsAtTheOriginWithoutASource()
    {
        Thing thing;
        QCOMPARE(thing.position(), QVector3D());
        QCOMPARE(thing.rotation(), QQuaternion());
        QCOMPARE(thing.transformFlags(), 0);
        QCOMPARE(thing.center(), QVector3D());
        QCOMPARE(thing.orientation(), QQuaternion());
        QVERIFY(thing.name().isEmpty());
        QVERIFY(!thing.touchControl());
        QVERIFY(!thing.isTouchControlAllowed());
        QVERIFY(thing.components().contains(thing.transform()));
    }

    void guidsAreMarkedAndDiffer()
    {
        Thing one;
        Thing other;
        QVERIFY(one.guid().startsWith(QStringLiteral("rnd_")));
        QVERIFY(one.guid().size() > 4);
        QVERIFY(one.guid() != other.guid());
        QCOMPARE(one.property("guid").toString(), one.guid());
        QCOMPARE(one.property("type").toString(), QStringLiteral("thing"));
    }

    void setPositionWithoutASourceKeepsManual()
    {
        Thing thing;
        thing.setPosition(place, TransformFlags::Manual);
        thing.setPosition(place * 2, 0);
        QCOMPARE(thing.transformFlags(), int(TransformFlags::Manual));
        QCOMPARE(thing.position(), place * 2);
    }

    void aNewSourceReplacesTheOldOne()
    {
        Thing thing;
        thing.setPosition(place, TransformFlags::Manual);
        thing.setPosition(place, TransformFlags::GPS);
        QCOMPARE(thing.transformFlags(), int(TransformFlags::GPS));
    }

    void writingThePropertiesNeverChangesTheSource()
    {
        Thing thing;
        thing.setTransformFlags(TransformFlags::GIS);
        thing.setProperty("position", place);
        thing.setProperty("rotation", QQuaternion::fromAxisAndAngle(0, 1, 0, 90));
        QCOMPARE(thing.position(), place);
        QCOMPARE(thing.transformFlags(), int(TransformFlags::GIS));
        QCOMPARE(thing.property("transform").value<FlaggedTransform*>(), thing.transform());
        QVERIFY(thing.property("name").toString().isEmpty());
    }

    void transformFlagsAreClearedByZero()
    {
        Thing thing;
        thing.setTransformFlags(TransformFlags::GIS);
        thing.setTransformFlags(0);
        QCOMPARE(thing.transformFlags(), 0);
        thing.setProperty("transformFlags", int(TransformFlags::GIS));
        QCOMPARE(thing.property("transformFlags").toInt(), int(TransformFlags::GIS));
        thing.setProperty("transformFlags", 0);
        QCOMPARE(thing.transformFlags(), 0);
    }

    void movingAddsTheVectorAndStatesTheSource()
    {
        Thing thing;
        thing.setPosition(place, TransformFlags::GIS);
        thing.move(QVector3D(1, 1, 1));
        QCOMPARE(thing.position(), QVector3D(2, 3, 4));
        QCOMPARE(thing.transformFlags(), int(TransformFlags::GIS));
        thing.move(QVector3D(1, 0, 0), TransformFlags::Manual);
        QCOMPARE(thing.position(), QVector3D(3, 3, 4));
        QCOMPARE(thing.transformFlags(), int(TransformFlags::Manual));
    }

    void takingOverATransformCopiesMatrixAndSourceAndTellsOnceMore()
    {
        Thing thing;
        FlaggedTransform other(8);
        other.Qt3DCore::QTransform::setTranslation(place);
        QSignalSpy spy(&thing, &Renderable::transformChanged);

        thing.setTransform(&other);
        QCOMPARE(thing.position(), place);
        QCOMPARE(thing.transformFlags(), 8);
        const int first = spy.count();
        QVERIFY(first >= 3);

        thing.setTransform(&other);
        QCOMPARE(spy.count(), first + 1);

        const FlaggedTransform sourceless(0);
        thing.setTransform(&sourceless);
        QCOMPARE(thing.position(), QVector3D());
        QCOMPARE(thing.transformFlags(), 8);
    }

    void twoChangesWithinTheWaitAreOneEndOfEditing()
    {
        Thing thing;
        QSignalSpy spy(&thing, &Renderable::editingFinished);
        QElapsedTimer clock;

        thing.setPosition(place, 0);
        QTest::qWait(400);
        thing.setPosition(place * 2, 0);
        clock.start();
        QTest::qWait(500);
        QCOMPARE(spy.count(), 0);

        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 2000);
        QVERIFY2(clock.elapsed() >= 745, qPrintable(QString::number(clock.elapsed())));
        QTest::qWait(900);
        QCOMPARE(spy.count(), 1);
    }

    void theSameFlagsDoNotStartTheWaitOver()
    {
        Thing thing;
        QSignalSpy spy(&thing, &Renderable::editingFinished);
        thing.setTransformFlags(4);
        QElapsedTimer clock;
        clock.start();
        QTest::qWait(500);
        thing.setTransformFlags(4);
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 2000);
        QVERIFY2(clock.elapsed() < 1100, qPrintable(QString::number(clock.elapsed())));
    }

    void anObjectThatGoesDuringTheWaitNeverEndsEditing()
    {
        int ends = 0;
        auto* thing = new Thing;
        connect(thing, &Renderable::editingFinished, this, [&] { ++ends; });
        thing->setPosition(place, 0);
        delete thing;
        QTest::qWait(900);
        QCOMPARE(ends, 0);
    }

    void selectionSwitchesTheLookAndPutsTheArrowsAway()
    {
        Thing thing;
        thing.setTouchControl(new Control(&thing));
        thing.setAsSelected();
        thing.setAsDeselected();
        QCOMPARE(thing.calls, (QStringList {QStringLiteral("selected"), QStringLiteral("default"),
                                            QStringLiteral("disableArrows")}));
    }

    void theTouchControlIsToldAndReplacedQuietly()
    {
        Thing thing;
        thing.setEnablePicker(true);
        QSignalSpy spy(&thing, &Renderable::touchControlChanged);
        QPointer<Control> control = new Control(&thing);
        thing.setTouchControl(control);
        thing.setEnablePicker(true);
        thing.setEnablePicker(false);
        QCOMPARE(thing.calls, (QStringList {QStringLiteral("enablePick"), QStringLiteral("disablePick")}));
        thing.setProperty("isTouchControlAllowed", true);
        QVERIFY(control->isAllowed());
        QVERIFY(thing.property("isTouchControlAllowed").toBool());
        QCOMPARE(thing.property("touchControl").value<TouchControlBase*>(), control.data());

        thing.setTouchControl(new Control(&thing));
        QTRY_VERIFY(control.isNull());
        QVERIFY(!thing.isTouchControlAllowed());
        QCOMPARE(spy.count(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_Renderable)
#include "tst_Renderable.moc"
