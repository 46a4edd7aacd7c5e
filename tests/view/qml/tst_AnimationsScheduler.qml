import QtQuick 2.12
import QtTest 1.12

import "qrc:/qml/view3d"

TestCase {
    id: testCase

    readonly property string outOfTurn: "Error: When animation is over, it should be still in scheduledAnimations array"
        + " (not -1) and it should be first (index zero). Actually it is: "

    property var log: []

    name: "AnimationsScheduler"

    Component {
        id: schedulerComponent

        AnimationsScheduler {
            onAnimationsStarted: testCase.log.push("started")
            onAnimationsFinished: testCase.log.push("finished")
        }
    }

    Component {
        id: animationComponent

        PauseAnimation {
            property var scheduled
            property string name
            property var scheduler

            duration: 60000
            onStarted: testCase.log.push(name)
            onStopped: scheduler.onAnimationFinished(this)
        }
    }

    property var scheduler

    function init() {
        log = []
        scheduler = createTemporaryObject(schedulerComponent, testCase)
    }

    function animation(name) {
        return createTemporaryObject(animationComponent, testCase, { name: name, scheduler: scheduler })
    }

    function test_oneRunsAtATimeInTheOrderOfScheduling() {
        const a = animation("a")
        const b = animation("b")
        scheduler.scheduleAnimation(a)
        scheduler.scheduleAnimation(b)

        compare(log, ["started", "a"])
        verify(scheduler.isAnimationRunning())
        verify(b.scheduled)
        scheduler.completeNow()
        compare(log, ["started", "a", "b"])
        verify(!a.scheduled)
        scheduler.completeNow()
        compare(log, ["started", "a", "b", "finished"])
        verify(!scheduler.isAnimationRunning())
    }

    function test_completeAllEmptiesTheQueue() {
        const names = ["a", "b", "c"]
        for (let i = 0; i < names.length; ++i) {
            scheduler.scheduleAnimation(animation(names[i]))
        }

        scheduler.completeAll()

        compare(log, ["started", "a", "b", "c", "finished"])
        compare(scheduler.scheduledAnimations.length, 0)
    }

    function test_completingNothingDoesNothing() {
        scheduler.completeNow()
        scheduler.completeAll()

        compare(log, [])
    }

    function test_aDelayedCallbackRunsWhenItsTurnComes() {
        const a = animation("a")
        scheduler.scheduleAnimation(a)
        scheduler.scheduleDelayedAnimation(function() { log.push("callback") })

        compare(log, ["started", "a"])
        scheduler.completeNow()
        compare(log, ["started", "a", "callback", "finished"])
    }

    function test_aDelayedCallbackOnAnEmptyQueueRunsAtOnce() {
        scheduler.scheduleDelayedAnimation(function() { log.push("callback") })

        compare(log, ["started", "callback", "finished"])
    }

    function test_whatACallbackSchedulesComesBeforeWhatWaited() {
        const a = animation("a")
        const b = animation("b")
        const inner1 = animation("inner1")
        const inner2 = animation("inner2")
        scheduler.scheduleAnimation(a)
        scheduler.scheduleDelayedAnimation(function() {
            scheduler.scheduleAnimation(inner1)
            scheduler.scheduleAnimation(inner2)
        })
        scheduler.scheduleAnimation(b)

        scheduler.completeAll()

        compare(log, ["started", "a", "inner1", "inner2", "b", "finished"])
        compare(scheduler.priorityScheduleIndex, -1)
    }

    function test_aCallbackThatFailsLeavesTheQueueUsable() {
        let failed = false
        try {
            scheduler.scheduleDelayedAnimation(function() { throw new Error("broken") })
        } catch (error) {
            failed = true
        }

        verify(failed)
        compare(scheduler.priorityScheduleIndex, -1)
        compare(scheduler.scheduledAnimations.length, 0)
        compare(log, ["started", "finished"])
        scheduler.scheduleAnimation(animation("a"))
        compare(log, ["started", "finished", "started", "a"])
    }

    function test_whatNestedCallbacksScheduleComesFirst() {
        const a = animation("a")
        const inner = animation("inner")
        const waiting = animation("waiting")
        scheduler.scheduleAnimation(a)
        scheduler.scheduleDelayedAnimation(function() {
            log.push("outer callback")
            compare(scheduler.priorityScheduleIndex, 1)
            scheduler.scheduleDelayedAnimation(function() { log.push("inner callback") })
            scheduler.scheduleAnimation(inner)
        })
        scheduler.scheduleAnimation(waiting)

        scheduler.completeAll()

        compare(log, ["started", "a", "outer callback", "inner callback", "inner", "waiting", "finished"])
    }

    function test_aWaitingAnimationThatEndsLeavesTheQueue() {
        const a = animation("a")
        const b = animation("b")
        scheduler.scheduleAnimation(a)
        scheduler.scheduleAnimation(b)

        host.expectLog(outOfTurn + "1")
        scheduler.onAnimationFinished(b)

        compare(scheduler.scheduledAnimations.length, 1)
        compare(scheduler.scheduledAnimations[0], a)
        compare(b.scheduled, false)
    }

    function test_anEndOutOfTurnLeavesTheQueue() {
        const a = animation("a")
        const b = animation("b")
        scheduler.scheduleAnimation(a)

        host.expectLog(outOfTurn + "-1")
        scheduler.onAnimationFinished(b)

        compare(scheduler.scheduledAnimations.length, 1)
        compare(scheduler.scheduledAnimations[0], a)
    }
}
