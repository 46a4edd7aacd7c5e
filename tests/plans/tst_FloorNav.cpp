#include "plans/FloorNav.h"

#include "plans/PaperPlan.h"

#include <QQmlEngine>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Torvik::View3d;

namespace {

FloorNav& nav()
{
    return FloorNav::instance();
}

bool gone(const QPointer<PaperPlan>& plan)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return plan.isNull();
}

} // namespace

/** Plans of a building's floors. */
class tst_FloorNav : public QObject {
    Q_OBJECT

private slots:
    void atFirstThereIsNoFloor()
    {
        QCOMPARE(nav().getCurrentFloorIndex(), -1);
        QCOMPARE(nav().floorValues(), QVariantList());
        QVERIFY(!nav().hasFloorPlan(0));
        QVERIFY(!nav().getFloorPlan(0));
        QCOMPARE(&FloorNav::instance(), &nav());
        QVERIFY(!nav().parent());
    }

    void init() { m_root = std::make_unique<SceneRoot>(); }
    void cleanup()
    {
        nav().setCurrentFloorIndex(-1);
        for (int floor = 0; floor < 8; ++floor)
            nav().setFloorPlan(floor, nullptr);
        nav().setFloorValues({});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_root.reset();
    }

    void heightsAddUp()
    {
        PaperPlan* plans[4];
        for (int floor = 0; floor < 4; ++floor) {
            plans[floor] = plan();
            nav().setFloorPlan(floor, plans[floor]);
        }
        QSignalSpy changed(&nav(), &FloorNav::floorValuesChanged);

        nav().setFloorValues({0.0, 3.0, 3.0, 3.0});

        QCOMPARE(changed.count(), 1);
        QCOMPARE(nav().property("floorValues").toList(), QVariantList({0.0, 3.0, 3.0, 3.0}));
        for (int floor = 0; floor < 4; ++floor)
            QCOMPARE(plans[floor]->position().y(), 3.0F * float(floor));
    }

    void whatIsNoNumberCountsAsNothing()
    {
        PaperPlan* const top = plan();
        nav().setFloorPlan(2, top);

        nav().setFloorValues({2.5, "attic", "1.5"});

        QCOMPARE(top->position().y(), 4.0F);
        QCOMPARE(nav().floorValues(), QVariantList({2.5, 0.0, 1.5}));
    }

    void aFloorWithoutAPlanStillAddsItsHeight()
    {
        PaperPlan* const top = plan();
        nav().setFloorPlan(1, top);
        nav().setFloorValues({-2.0, 5.0});
        QCOMPARE(top->position().y(), 3.0F);
    }

    void aNewPlanHasItsHeightWithTheNextValues()
    {
        nav().setFloorValues({4.0});
        PaperPlan* const ground = plan();
        nav().setFloorPlan(0, ground);
        QCOMPARE(ground->position().y(), 0.0F);
        nav().setFloorValues({4.0});
        QCOMPARE(ground->position().y(), 4.0F);
    }

    void oneFloorIsShownAtATime()
    {
        PaperPlan* const first = plan();
        PaperPlan* const second = plan();
        nav().setFloorPlan(0, first);
        nav().setFloorPlan(1, second);
        QSignalSpy changed(&nav(), &FloorNav::currentFloorChanged);

        nav().setCurrentFloorIndex(0);
        QVERIFY(first->isEnabled());
        QVERIFY(!second->isEnabled());
        nav().setProperty("current", 1);
        QVERIFY(!first->isEnabled());
        QVERIFY(second->isEnabled());
        nav().setCurrentFloorIndex(1);
        QCOMPARE(changed.count(), 2);

        nav().setCurrentFloorIndex(-1);
        QVERIFY(!first->isEnabled());
        QVERIFY(!second->isEnabled());
    }

    void fromTheSixthFloorOnNothingIsTakenOff()
    {
        PaperPlan* const sixth = plan();
        PaperPlan* const fifth = plan();
        nav().setFloorPlan(5, sixth);
        nav().setFloorPlan(4, fifth);
        nav().setCurrentFloorIndex(5);
        QVERIFY(sixth->isEnabled());
        nav().setCurrentFloorIndex(4);
        QVERIFY(sixth->isEnabled());
        nav().setCurrentFloorIndex(-1);
        QVERIFY(!fifth->isEnabled());
        QVERIFY(sixth->isEnabled());
    }

    void anotherPlanTakesAFloor()
    {
        const QPointer<PaperPlan> old = plan();
        PaperPlan* const fresh = plan();
        QSignalSpy set(&nav(), &FloorNav::floorSet);
        nav().setFloorPlan(0, old);
        nav().setFloorPlan(0, old);
        QCOMPARE(set.count(), 1);
        QVERIFY(!gone(old));

        nav().setFloorPlan(0, fresh);
        QCOMPARE(set.count(), 2);
        QVERIFY(gone(old));
        QCOMPARE(nav().getFloorPlan(0), fresh);
    }

    void aFloorIsEmptied()
    {
        const QPointer<PaperPlan> old = plan();
        QSignalSpy set(&nav(), &FloorNav::floorSet);
        nav().setFloorPlan(6, nullptr);
        QCOMPARE(set.count(), 0);
        nav().setFloorPlan(6, old);
        QVERIFY(nav().hasFloorPlan(6));
        nav().setFloorPlan(6, nullptr);
        QCOMPARE(set.count(), 2);
        QVERIFY(!nav().hasFloorPlan(6));
        QVERIFY(gone(old));
        nav().setFloorPlan(6, nullptr);
        QCOMPARE(set.count(), 2);
    }

    void qmlDoesNotOwnAFloorsPlan()
    {
        PaperPlan* const ground = plan();
        nav().setFloorPlan(0, ground);
        QQmlEngine::setObjectOwnership(ground, QQmlEngine::JavaScriptOwnership);
        QCOMPARE(nav().getFloorPlan(0), ground);
        QCOMPARE(QQmlEngine::objectOwnership(ground), QQmlEngine::CppOwnership);
    }

    void plansStayOnEarthWhenTheOriginMoves()
    {
        PaperPlan* const ground = plan();
        ground->setPosition({10, 2, 30}, 16);
        nav().setFloorPlan(0, ground);
        nav().setFloorPlan(1, plan());
        nav().resetPosition({4, 1, -5});
        QCOMPARE(ground->position(), QVector3D(6, 1, 35));
        QCOMPARE(ground->transformFlags(), 16);
        QCOMPARE(nav().getFloorPlan(1)->position(), QVector3D(-4, -1, 5));
    }

    void aSceneThatGoesTakesItsPlansWithIt()
    {
        nav().setFloorPlan(0, plan());
        m_root.reset();
        QVERIFY(!nav().hasFloorPlan(0));
        QVERIFY(!nav().getFloorPlan(0));
        nav().setFloorValues({1.0});
        nav().setCurrentFloorIndex(0);
        nav().resetPosition({1, 1, 1});
    }

private:
    PaperPlan* plan() const { return new PaperPlan(m_root.get()); }

    std::unique_ptr<SceneRoot> m_root;
};

QTEST_MAIN(tst_FloorNav)
#include "tst_FloorNav.moc"
