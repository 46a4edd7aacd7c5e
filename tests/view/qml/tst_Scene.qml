import Qt3D.Render 2.12
import QtQuick 2.12
import QtQuick.Scene3D 2.12
import QtTest 1.12
import Torvik.Geo 1.0 as TorvikGeo
import com.torvik.view3d 1.0 as Torvik3d
import view3d 1.0 as View3d

CameraWindow {
    id: window3d

    Component {
        id: sceneComponent

        View3d.Scene {
            anchors.fill: parent
        }
    }

    TestCase {
        id: testCase

        property var scene
        property var camera

        name: "Scene"
        when: windowShown

        function init() {
            TorvikGeo.GeoProjector.initFromMap(51, 10, 0)
            scene = createTemporaryObject(sceneComponent, window3d)
            verify(scene)
            camera = scene.camera
        }

        function cleanup() {
            settle()
            window3d.gridVisible = true
            window3d.gridDisabled = false
            window3d.gridIsFarAwayFromCamera = false
            window3d.screenshotPending = false
            window3d.sceneTransparency = 1
            window3d.width = 600
            window3d.height = 400
            host.setPage("Screens::InspectionScreen")
        }

        function settle() {
            camera.animScheduler.completeAll()
        }

        function near(actual, expected, tolerance) {
            verify(actual.minus(expected).length() < (tolerance || 0.01), actual + " is not " + expected)
        }

        /** The part among a node's descendants that has this property. */
        function partWith(node, property) {
            // A node that C++ made for itself does not tell its children, and a list may hold null.
            const children = node && node.childNodes || []
            for (let i = 0; i < children.length; ++i) {
                if (children[i] && children[i][property] !== undefined) {
                    return children[i]
                }
                const found = partWith(children[i], property)
                if (found) {
                    return found
                }
            }
            return null
        }

        function test_theSceneStartsWithItsDefaults() {
            compare(scene.mode3d, true)
            compare(scene.cameraFollowEnabled, false)
            compare(scene.initialViewVectorLength, 350)
            near(scene.cameraPosDefault, Qt.vector3d(0, 247.487, 0))
            near(scene.cameraCenterDefault, Qt.vector3d(0, 0, 0))
            near(scene.cameraUpDefault, Qt.vector3d(0, 0, 1))
            near(scene.cameraPos, scene.cameraPosDefault)
            near(scene.cameraCenter, scene.cameraCenterDefault)
            compare(scene.targetWidthOf3d2dPhotoInPixels, 613)
            compare(scene.focus, true)
            compare(scene.aspects.length, 2)
            compare(scene.aspects[0], "input")
            compare(scene.aspects[1], "logic")
            compare(scene.cameraAspectRatioMode, Scene3D.AutomaticAspectRatio)
            compare(scene.cameraController, camera.cameraController)
            near(camera.viewPlusUpVector, Qt.vector3d(0, -247.487, 1))
        }

        function test_theFlowStartsWhenTheSceneIsTiedToTheEarth() {
            TorvikGeo.GeoProjector.deinit()
            const untied = createTemporaryObject(sceneComponent, window3d)
            compare(untied.camera.initialized, true)
            compare(untied.sceneRoot.qmlOnCompletedSignalSent, false)
            TorvikGeo.GeoProjector.initializedFromMap()
            compare(untied.sceneRoot.qmlOnCompletedSignalSent, false)

            TorvikGeo.GeoProjector.initFromMap(51, 10, 0)
            compare(untied.sceneRoot.qmlOnCompletedSignalSent, true)
        }

        function test_theFlowStartsAtOnceInATiedScene() {
            compare(TorvikGeo.GeoProjector.initialized, true)
            compare(scene.sceneRoot.qmlOnCompletedSignalSent, true)
        }

        function test_aNewTieMovesTheCameraBack() {
            camera.setPose(Qt.vector3d(0, 100, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            TorvikGeo.GeoProjector.sceneResetRequest()
            near(camera.position, Qt.vector3d(0, 2356.74, 0), 0.1)

            camera.setCameraOrientation(Qt.vector3d(0, 50, -86.6), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0.866, 0.5))
            TorvikGeo.GeoProjector.sceneResetRequest()
            verify(camera.animationsRunning)
            settle()
            near(camera.position, scene.cameraPosDefault)
        }

        function test_theScaleOfAPhotoFollowsDistanceAndHeight() {
            camera.setPose(Qt.vector3d(0, 2356.74, 0), Qt.vector3d(0, 0, 0), Qt.vector3d(0, 0, 1))
            compare(scene.getScaleProportion(), 1093)
            window3d.height = 200
            compare(scene.getScaleProportion(), 2186)
            scene.targetWidthOf3d2dPhotoInPixels = 306.5
            compare(scene.getScaleProportion(), 1093)
        }

        function test_viewsAreSwitchedTogetherWithTheFollowingCamera() {
            const follow = scene.cameraFollow
            scene.switchTo2dFront()
            settle()
            compare(camera.viewType, Torvik3d.CameraController.View2dFront)
            compare(follow.viewMode, Torvik3d.CameraController.View2dFront)
            scene.switchTo3d()
            settle()
            compare(camera.viewType, Torvik3d.CameraController.View3d)
            compare(follow.viewMode, Torvik3d.CameraController.View3d)
            scene.switchTo2dTop()
            settle()
            compare(camera.viewType, Torvik3d.CameraController.View2dTop)
            compare(follow.viewMode, Torvik3d.CameraController.View2dTop)

            scene.toggle2dTop()
            settle()
            compare(camera.viewType, Torvik3d.CameraController.View3d)
            scene.resetCameraPosition()
            verify(camera.animationsRunning)
        }

        function test_theDemonstrationIsSwitchedOnAndOff() {
            scene.switchDemo()
            verify(camera.demoTimer.running)
            scene.stopDemo()
            verify(!camera.demoTimer.running)
        }

        function test_theGridNeedsEveryCondition() {
            const root = scene.sceneRoot
            const flags = [[window3d, "gridVisible", false], [window3d, "gridDisabled", true],
                           [window3d, "gridIsFarAwayFromCamera", true], [window3d, "screenshotPending", true],
                           [scene, "mode3d", false]]
            compare(root.gridVisible, true)
            for (let i = 0; i < flags.length; ++i) {
                const [owner, name, value] = flags[i]
                owner[name] = value
                compare(root.gridVisible, false, name)
                owner[name] = !value
                compare(root.gridVisible, true, name)
            }
        }

        function test_theRootKnowsTheSizeOfTheScene() {
            const root = scene.sceneRoot
            compare(root.sceneWidth, 600)
            compare(root.sceneHeight, 400)
            window3d.width = 500
            window3d.height = 300
            compare(root.sceneWidth, 500)
            compare(root.sceneHeight, 300)
            compare(root.backgroundVisible, false)
            verify(root.layerGrid)
            compare(root.camera, camera)
        }

        function test_vertexLabelsTurnBlackOnTheWhiteGround() {
            const root = scene.sceneRoot
            compare(root.materialVertexLabel.ambient, "#ffffff")
            compare(root.materialVertexLabel.diffuse, "#ffffff")
            compare(root.materialVertexLabel.specular, "#000000")
            compare(root.materialVertexLabel.shininess, 0)
            window3d.screenshotPending = true
            compare(root.materialVertexLabel.ambient, "#000000")
            compare(root.materialVertexLabel.diffuse, "#000000")
            compare(root.materialVertexLabel.specular, "#000000")
            compare(root.materialVertexLabel.shininess, 0)
        }

        function test_materials_data() {
            const green = { cool: Qt.rgba(0, 0.3, 0, 1), warm: Qt.rgba(0.1, 0.95, 0, 1), diffuse: "#000000" }
            const manhole = design.misc.manholeMaterial
            const grey = Qt.rgba(0.1, 0.1, 0.1, 1)
            return [Object.assign({tag: "materialPipe", beta: 1}, green),
                    Object.assign({tag: "materialConnection", beta: 0.5}, green),
                    {tag: "materialNode", beta: 1, cool: manhole.coolColor, warm: manhole.warmColor,
                     diffuse: "#000000"},
                    {tag: "materialNodeSelected", beta: 1, cool: Qt.rgba(0.05, 0.05, 1, 1),
                     warm: Qt.rgba(0.25, 0.25, 1, 1), diffuse: "#000000"},
                    {tag: "materialCone", beta: 1, cool: Qt.rgba(0.2, 0.2, 0.45, 1), warm: Qt.rgba(0.2, 0.2, 0.55, 1),
                     diffuse: grey}]
        }

        function test_materials(data) {
            const material = scene.sceneRoot[data.tag]
            fuzzyCompare(material.alpha, 0.12, 1e-6)
            fuzzyCompare(material.beta, data.beta, 1e-6)
            fuzzyCompare(material.shininess, 0.1, 1e-6)
            verify(Qt.colorEqual(material.cool, data.cool), material.cool)
            verify(Qt.colorEqual(material.warm, data.warm), material.warm)
            verify(Qt.colorEqual(material.diffuse, data.diffuse), material.diffuse)
            verify(Qt.colorEqual(material.specular, "#000000"), material.specular)
        }

        function test_oneMaterialIsSpare() {
            const spare = Array.from(scene.entity.childNodes).filter(function(node) {
                return node && node.warm !== undefined && Qt.colorEqual(node.warm, "red")
            })
            compare(spare.length, 1)
            verify(Qt.colorEqual(spare[0].cool, "black"))
            verify(Qt.colorEqual(spare[0].diffuse, Qt.rgba(0.1, 0.1, 0.1, 1)))
            fuzzyCompare(spare[0].alpha, 0.12, 1e-6)
            fuzzyCompare(spare[0].shininess, 0.1, 1e-6)
        }

        function test_theGroundIsGreyAndAsTransparentAsTheWindowWants() {
            const settings = scene.entity.components[0]
            const frameGraph = settings.activeFrameGraph
            compare(frameGraph.camera, camera)
            compare(frameGraph.frustumCulling, true)
            verify(Qt.colorEqual(frameGraph.clearColor, Qt.rgba(0.76, 0.76, 0.76, 1)))
            window3d.sceneTransparency = 0.25
            verify(Qt.colorEqual(frameGraph.clearColor, Qt.rgba(0.76, 0.76, 0.76, 0.25)))
            window3d.screenshotPending = true
            verify(Qt.colorEqual(frameGraph.clearColor, Qt.rgba(1, 1, 1, 0.25)))

            compare(settings.renderPolicy, RenderSettings.OnDemand)
            compare(settings.pickingSettings.pickMethod, PickingSettings.TrianglePicking)
            compare(settings.pickingSettings.faceOrientationPickingMode, PickingSettings.FrontFace)
            compare(settings.pickingSettings.pickResultMode, PickingSettings.NearestPick)
        }

        function test_oneLampHangsAboveTheOrigin() {
            const light = partWith(scene.entity, "quadraticAttenuation")
            verify(Qt.colorEqual(light.color, "white"))
            compare(light.intensity, 1)
            compare(light.constantAttenuation, 1)
            compare(light.linearAttenuation, 0)
            fuzzyCompare(light.quadraticAttenuation, 0.0025, 1e-6)
            near(partWith(light.parent, "translation").translation, Qt.vector3d(0, 50, 0))
        }

        function test_thePlaneLiesWhereTheCameraLooks() {
            const mesh = partWith(scene.entity, "meshResolution")
            compare(mesh.width, 1000)
            compare(mesh.height, 1000)
            const place = partWith(mesh.parent, "translation")
            near(place.translation, Qt.vector3d(0, 0, 0))
            camera.viewCenter = Qt.vector3d(3, 4, 5)
            near(place.translation, Qt.vector3d(3, 4, 5))
        }

        function test_theCrawlerNeedsAnActiveInspection() {
            verify(camera.isInspectionScreen())
            compare(scene.crawlerVisible, false)
            const crawler = scene.sceneRoot.crawler
            compare(crawler.type, "crawler")
            compare(crawler.active, false)
            scene.crawlerVisible = true
            compare(crawler.active, true)
            compare(scene.cameraFollow.objectFollowed, crawler)
        }

        function test_theCameraFollowsTheCrawlerWhenItIsToldTo_data() {
            return [
                { tag: "as asked", visible: true, enabled: true, split: false, follow: true, active: true },
                { tag: "beside a second view", visible: true, enabled: true, split: true, follow: false, active: true },
                { tag: "not asked", visible: true, enabled: true, split: false, follow: false, active: false },
                { tag: "switched off", visible: true, enabled: false, split: true, follow: true, active: false },
                { tag: "nothing to follow", visible: false, enabled: true, split: true, follow: true, active: false }
            ]
        }

        function test_theCameraFollowsTheCrawlerWhenItIsToldTo(row) {
            scene.crawlerVisible = row.visible
            window3d.splitViewMode = row.split
            GlobalNav.cameraFollow = row.follow
            scene.cameraFollowEnabled = row.enabled

            compare(scene.cameraFollow.active, row.active)
            camera.animScheduler.completeAll()
            GlobalNav.cameraFollow = false
        }

        function test_aCameraWithoutAnInspectionStaysWhereItIs() {
            scene.sceneRoot.positionCameraOnStartNodeOfInspection(undefined)
            scene.sceneRoot.positionCameraOnStartNodeOfInspection(belmora.appStateData.activeInspection)

            verify(!camera.animationsRunning)
            near(camera.viewCenter, Qt.vector3d(0, 0, 0))
        }

        function test_everyReadingOfTheDistanceCounterMovesTheFollowingCamera() {
            camera.set3dView()
            const waiting = camera.animScheduler.scheduledAnimations.length

            scene.sceneRoot.distanceValueChanged(1)

            compare(camera.animScheduler.scheduledAnimations.length, waiting + 1)
            camera.animScheduler.completeAll()
        }
    }
}
