import QtQuick 2.12

/** A queue that runs animations one at a time. An animation has a property `scheduled`, start(), complete() and
 *  `running`, and tells onAnimationFinished() when it has stopped. */
QtObject {
    id: animationsScheduler

    property var scheduledAnimations: []
    /** Where the next animation goes while a delayed callback runs; -1 is the end of the queue. */
    property int priorityScheduleIndex: -1
    property var runningAnimation

    signal animationsStarted()
    signal animationsFinished()

    function scheduleAnimation(animation) {
        if (priorityScheduleIndex !== -1) {
            scheduledAnimations.splice(priorityScheduleIndex, 0, animation)
            priorityScheduleIndex++
        } else {
            scheduledAnimations.push(animation)
        }
        animation.scheduled = true
        if (scheduledAnimations.length === 1) {
            animationsStarted()
            runFirst()
        }
    }

    function runFirst() {
        runningAnimation = scheduledAnimations[0]
        runningAnimation.start()
    }

    function onAnimationFinished(animation) {
        const index = scheduledAnimations.indexOf(animation)
        if (index !== 0) {
            console.log("Error: When animation is over, it should be still in scheduledAnimations array (not -1) and it should be first (index zero). Actually it is: " + index)
        }
        if (index !== -1) {
            scheduledAnimations.splice(index, 1)
        }
        runningAnimation = undefined
        animation.scheduled = false
        if (scheduledAnimations.length > 0) {
            runFirst()
        } else {
            animationsFinished()
        }
    }

    /** Runs the callback when its turn comes, so that it finds the camera where the animations before it left it. */
    function scheduleDelayedAnimation(callback) {
        const pseudoAnimation = {
            scheduled: false,
            running: false,
            start: function() {
                try {
                    executeCallbackWithPriority(callback)
                } finally {
                    onAnimationFinished(pseudoAnimation)
                }
            },
            complete: function() {}
        }
        scheduleAnimation(pseudoAnimation)
    }

    /** What the callback schedules runs before everything that waits already. */
    function executeCallbackWithPriority(callback) {
        priorityScheduleIndex = 1
        try {
            callback()
        } finally {
            priorityScheduleIndex = -1
        }
    }

    function completeNow() {
        if (isAnimationRunning()) {
            runningAnimation.complete()
        }
    }

    function completeAll() {
        while (isAnimationRunning()) {
            completeNow()
        }
    }

    function isAnimationRunning() {
        return !!runningAnimation && !!runningAnimation.running
    }
}
