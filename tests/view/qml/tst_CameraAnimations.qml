import QtQuick 2.12

CameraWindow {
    id: window3d

    CameraTestCase {
        readonly property string endOutOfTurn: "Error: When animation is over, it should be still in"
            + " scheduledAnimations array (not -1) and it should be first (index zero). Actually it is: -1"
        readonly property var moves: camera ? camera.animationsHolder : null

        name: "CameraAnimations"

        function test_aMoveWithoutTheSchedulerIsLogged_data() {
            return [{tag: "cameraTranslationAnimation", error: true}, {tag: "camera2dTop", error: true},
                    {tag: "camera2dFront", error: false}, {tag: "setCamera3dView", error: true},
                    {tag: "resetCamera", error: true}, {tag: "returnToLastFullView", error: true}]
        }

        function test_aMoveWithoutTheSchedulerIsLogged(data) {
            if (data.error) {
                host.expectError(data.tag + " not in scheduler")
            } else {
                host.expectLog(data.tag + " not in scheduler")
            }
            moves[data.tag].start()

            host.expectLog(endOutOfTurn)
            moves[data.tag].complete()
        }

        function test_movesTakeTheirTime_data() {
            return [{tag: "cameraTranslationAnimation", duration: 250, easing: Easing.InOutQuad},
                    {tag: "camera2dTop", duration: 600, easing: Easing.Linear},
                    {tag: "camera2dFront", duration: 600, easing: Easing.Linear},
                    {tag: "setCamera3dView", duration: 600, easing: Easing.Linear},
                    {tag: "resetCamera", duration: 600, easing: Easing.Linear},
                    {tag: "returnToLastFullView", duration: 600, easing: Easing.Linear}]
        }

        function test_movesTakeTheirTime(data) {
            const parts = moves[data.tag].animations
            compare(parts.length, 3)
            for (let i = 0; i < parts.length; ++i) {
                compare(parts[i].property, ["position", "viewCenter", "upVector"][i])
                compare(parts[i].duration, data.duration)
                compare(parts[i].easing.type, data.easing)
            }
            compare(moves[data.tag].alwaysRunToEnd, data.tag === "returnToLastFullView")
            compare(moves.cameraTranslationAnimation.duration, 210)
        }

        function test_aMovePassesThroughThePosesBetween() {
            let between = 0
            camera.positionChanged.connect(function() {
                between += camera.position.z < -1 && camera.position.z > -174 ? 1 : 0
            })
            const start = Date.now()
            camera.set3dView()
            tryVerify(function() { return !camera.animationsRunning })

            verify(Date.now() - start >= 550)
            verify(between > 0)
            near(camera.position, Qt.vector3d(0, 175, -175), 0.05)
        }

        function test_theTiltOutlivesAChainOf2dViews() {
            lookTilted()
            camera.set2dTopView()
            settle()
            camera.set2dFrontView()
            settle()
            near(camera.position, Qt.vector3d(0, 0, -100), 0.1)
            camera.set3dView()
            settle()
            near(camera.position, tilted, 0.1)
            near(camera.upVector, tiltedUp, 0.01)

            camera.set2dFrontView()
            settle()
            camera.set2dTopView()
            settle()
            near(camera.position, Qt.vector3d(0, 100, 0), 0.1)
            camera.set3dView()
            settle()
            near(camera.position, tilted, 0.1)
            near(camera.upVector, tiltedUp, 0.01)
        }

        function test_theTopViewLooksAtTheGroundFromTheSameDistance() {
            camera.setCameraOrientation(Qt.vector3d(10, 60, -66.6), Qt.vector3d(10, 10, 20), tiltedUp)
            camera.set2dTopView()
            settle()

            near(camera.viewCenter, Qt.vector3d(10, 0, 20))
            near(camera.position, Qt.vector3d(10, 100, 20), 0.05)
        }

        function test_fromARaisedFrontViewTheTiltIsThatOfBefore() {
            camera.setCameraOrientation(Qt.vector3d(0, 60, -86.6), Qt.vector3d(0, 10, 0), tiltedUp)
            camera.set2dFrontView()
            settle()
            near(camera.position, Qt.vector3d(0, 10, -100), 0.05)
            near(camera.viewCenter, Qt.vector3d(0, 10, 0))

            camera.set3dView()
            settle()
            near(camera.position, tilted, 0.1)
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
        }

        function test_fromTheTopViewTheCentreKeepsItsHeight() {
            camera.setPose(Qt.vector3d(0, 110, 0), Qt.vector3d(0, 10, 0), Qt.vector3d(0, 0, 1))
            camera.set3dView()
            settle()

            near(camera.viewCenter, Qt.vector3d(0, 10, 0))
            near(camera.position, Qt.vector3d(0, 80.711, -70.711), 0.05)
        }

        function test_the3dViewAgainKeepsThePose() {
            lookTilted()
            camera.set3dView()
            verify(camera.animationsRunning)
            settle()

            near(camera.position, tilted)
            near(camera.upVector, tiltedUp)
            compare(camera.viewType, view3d)
        }

        function test_theTopViewAgainDoesNothing() {
            camera.set2dTopView()

            verify(!camera.animationsRunning)
        }

        function test_theFrontViewKeepsAnObjectThatItLooksAt() {
            camera.animation2dFrontTargetObjectPosition = Qt.vector3d(5, 2, 7)
            camera.set2dFrontView()
            settle()

            near(camera.viewCenter, Qt.vector3d(5, 2, 7))
            near(camera.position, Qt.vector3d(0, 0, -247.487), 0.05)
            near(camera.upVector, Qt.vector3d(0, 1, 0))
        }

        function test_onlyItsEndChangesThe2dView() {
            lookTilted()
            camera.set2dTopView()
            compare(camera.viewType, view3d)
            settle()
            compare(camera.viewType, topView)
            camera.set2dFrontView()
            compare(camera.viewType, topView)
            camera.set3dView()
            compare(camera.viewType, topView)
            camera.animScheduler.completeNow()
            // The way back has begun.
            compare(camera.viewType, view3d)
            settle()
        }

        function test_the3dViewReturnsToTheTiltBeforeTheTopView() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0.866, 0.5))

            camera.set2dTopView()
            settle()
            compare(camera.viewType, topView)
            near(camera.position, Qt.vector3d(0, 100, 0), 0.05)
            near(camera.upVector, Qt.vector3d(0, 0, 1), 0.001)

            camera.set3dView()
            settle()
            compare(camera.viewType, view3d)
            near(camera.position, Qt.vector3d(0, 50, -86.6), 0.1)
            near(camera.upVector, Qt.vector3d(0, 0.866, 0.5), 0.01)
        }

        function test_the3dViewReturnsToTheTiltBeforeTheFrontView() {
            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0.866, 0.5))

            camera.set2dFrontView()
            settle()
            compare(camera.viewType, frontView)
            near(camera.position, Qt.vector3d(0, 0, -100), 0.05)
            near(camera.upVector, Qt.vector3d(0, 1, 0), 0.001)

            camera.set3dView()
            settle()
            near(camera.position, Qt.vector3d(0, 50, -86.6), 0.1)
        }

        function test_theFirst3dViewTilts45Degrees() {
            camera.set3dView()
            settle()

            near(camera.position, Qt.vector3d(0, 175, -175), 0.05)
            near(camera.upVector, Qt.vector3d(0, 0.7071, 0.7071), 0.001)
        }

        function test_topToFrontTurnsAboutTheTiltAxis() {
            camera.set2dFrontView()
            settle()

            near(camera.position, Qt.vector3d(0, 0, -247.487), 0.05)
            near(camera.upVector, Qt.vector3d(0, 1, 0))
        }

        function test_theFrontViewLooksAtAGivenObject() {
            camera.animation2dFrontTargetObjectPosition = Qt.vector3d(5, 2, 7)
            camera.animation2dFrontTargetDirection = Qt.vector3d(0, 0, 100)
            camera.set2dFrontView()
            settle()

            near(camera.position, Qt.vector3d(5, 2, -93))
            near(camera.viewCenter, Qt.vector3d(5, 2, 7))
            near(camera.animation2dFrontTargetDirection, Qt.vector3d(0, 0, 0))
        }
    }
}
