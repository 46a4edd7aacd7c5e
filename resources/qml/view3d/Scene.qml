import QtQuick 2.12
import QtQuick.Scene3D 2.12
import QtQuick.Window 2.12
import Qt3D.Core 2.12
import Qt3D.Extras 2.12
import Qt3D.Input 2.12
import Qt3D.Logic 2.12
import Qt3D.Render 2.12
import com.torvik.view3d 1.0 as Torvik3d
import Torvik.Geo 1.0 as TorvikGeo

/** The item that shows the network in 3D: camera, light, materials, and the scene's root, whose data begin to flow once
 *  the camera and the geo projector are ready. Expects an item window3d around it. */
Scene3D {
    id: scene3d

    property alias cameraController: mainCamera.cameraController
    property alias camera: mainCamera
    property alias cameraFollow: cameraFollowAnimation
    /** The SceneRoot. */
    property alias sceneRoot: myScene
    property bool mode3d: true
    property bool crawlerVisible: camera.isInspectionScreen() && belmora.appStateData.activeInspection.valid
    property bool cameraFollowEnabled: false
    property double initialViewVectorLength: GlobalNav.minStartOSMTileDist
    /** The default camera looks down the y axis, with +z (north) at the top of the screen. */
    property vector3d cameraPosDefault: Qt.vector3d(0, initialViewVectorLength / Math.sqrt(2), 0)
    property vector3d cameraCenterDefault: Qt.vector3d(0, 0, 0)
    property vector3d cameraUpDefault: Qt.vector3d(0, 0, 1)
    property vector3d cameraPos: cameraPosDefault
    property vector3d cameraCenter: cameraCenterDefault
    property var activeInspection: belmora.appStateData.activeInspection
    property var activeProject: belmora.appStateData.activeProject
    property real targetWidthOf3d2dPhotoInPixels: 613.0

    /** Width of the photo in the printed report, in millimetres. */
    readonly property real photoWidthMm: 173.0375

    focus: true
    aspects: ["input", "logic"]
    cameraAspectRatioMode: Scene3D.AutomaticAspectRatio
    // Four samples a pixel cost more than twice the time on hardware without a fast fill rate.
    multisample: false

    onActiveInspectionChanged: myScene.positionCameraOnStartNodeOfInspection(activeInspection)
    onActiveProjectChanged: {
        if (!activeProject.valid) {
            mainCamera.resetCameraProperties()
        }
        repaint()
    }
    onVisibleChanged: repaint()

    /** Has the next frames drawn even though nothing has changed. Content that is there before the first frame would
     *  otherwise stay out of the picture until something moves. */
    function repaint() {
        repaintAction.framesLeft = 6
    }

    /** The scale 1 : n that the view has as a photo in the printed report. */
    function getScaleProportion() {
        const visibleHeightMm = 2 * Math.tan(window3d.cameraFOV / 2 * Math.PI / 180) * camera.viewVectorLength * 1000
        return Math.round(visibleHeightMm * targetWidthOf3d2dPhotoInPixels / scene3d.height / photoWidthMm)
    }

    function resetCameraPosition() {
        mainCamera.resetPosition()
    }

    function switchDemo() {
        mainCamera.startDemoTimer()
    }

    function stopDemo() {
        mainCamera.stopDemoTimer()
    }

    function toggle2dTop() {
        mainCamera.toggle2dTopView()
    }

    function switchTo2dTop() {
        mainCamera.set2dTopView()
        cameraFollowAnimation.viewMode = Torvik3d.CameraController.View2dTop
    }

    function switchTo2dFront() {
        mainCamera.set2dFrontView()
        cameraFollowAnimation.viewMode = Torvik3d.CameraController.View2dFront
    }

    function switchTo3d() {
        mainCamera.set3dView()
        cameraFollowAnimation.viewMode = Torvik3d.CameraController.View3d
    }

    Entity {
        id: sceneRoot

        components: [renderSettings, inputSettings, repaintAction]

        Connections {
            target: scene3d.Window.window
            ignoreUnknownSignals: true

            function onSceneGraphInitialized() {
                scene3d.repaint()
            }
        }

        Scene3DCamera {
            id: mainCamera

            property vector3d viewPlusUpVector: viewVector.plus(upVector)
        }

        Entity {
            components: [
                PointLight {
                    color: "white"
                    intensity: 1.0
                    constantAttenuation: 1.0
                    linearAttenuation: 0.0
                    quadraticAttenuation: 0.0025
                },
                Transform {
                    translation: Qt.vector3d(0, 50, 0)
                }
            ]
        }

        Entity {
            id: plane

            components: [
                PlaneMesh {
                    width: 1000
                    height: 1000
                },
                Transform {
                    translation: mainCamera.viewCenter
                }
            ]
        }

        Entity {
            id: pointClickedOnPlane

            property alias transform: pointTransform

            components: [
                GoochMaterial {},
                Transform {
                    id: pointTransform

                    translation: Qt.vector3d(0, 0, 0)
                }
            ]
        }

        RenderSettings {
            id: renderSettings

            activeFrameGraph: ForwardRenderer {
                camera: mainCamera
                frustumCulling: true
                clearColor: window3d.screenshotPending ? Qt.rgba(1, 1, 1, window3d.sceneTransparency)
                                                       : Qt.rgba(0.76, 0.76, 0.76, window3d.sceneTransparency)
                // No shader reads it; changing it is what makes the renderer draw.
                parameters: [
                    Parameter {
                        id: repaintParameter

                        name: "kxRepaint"
                        value: 0
                    }
                ]
            }
            renderPolicy: RenderSettings.OnDemand
            pickingSettings.pickMethod: PickingSettings.TrianglePicking
            pickingSettings.faceOrientationPickingMode: PickingSettings.FrontFace
            pickingSettings.pickResultMode: PickingSettings.NearestPick
        }

        InputSettings {
            id: inputSettings
        }

        FrameAction {
            id: repaintAction

            property int framesLeft: 6
            property int framesDrawn: 0

            onTriggered: {
                if (framesLeft > 0) {
                    framesLeft--
                    framesDrawn++
                    repaintParameter.value = framesDrawn
                }
            }
        }

        GoochMaterial {
            id: pipeMaterial

            alpha: 0.12
            beta: 1.0
            shininess: 0.1
            cool: Qt.rgba(0, 0.30, 0, 1)
            warm: Qt.rgba(0.1, 0.95, 0, 1)
            diffuse: "black"
            specular: "black"
        }
        GoochMaterial {
            id: connectionMaterial

            alpha: 0.12
            beta: 0.50
            shininess: 0.1
            cool: Qt.rgba(0, 0.30, 0, 1)
            warm: Qt.rgba(0.1, 0.95, 0, 1)
            diffuse: "black"
            specular: "black"
        }
        GoochMaterial {
            id: nodeMaterial

            alpha: 0.12
            beta: 1.0
            shininess: 0.1
            cool: design.misc.manholeMaterial.coolColor
            warm: design.misc.manholeMaterial.warmColor
            diffuse: "black"
            specular: "black"
        }
        GoochMaterial {
            id: selectedNodeMaterial

            alpha: 0.12
            beta: 1.0
            shininess: 0.1
            cool: Qt.rgba(0.05, 0.05, 1.0, 1)
            warm: Qt.rgba(0.25, 0.25, 1.0, 1)
            diffuse: "black"
            specular: "black"
        }
        GoochMaterial {
            id: coneMaterial

            alpha: 0.12
            beta: 1.0
            shininess: 0.1
            cool: Qt.rgba(0.2, 0.2, 0.45, 1)
            warm: Qt.rgba(0.2, 0.2, 0.55, 1)
            diffuse: Qt.rgba(0.1, 0.1, 0.1, 1)
            specular: "black"
        }
        GoochMaterial {
            id: material

            alpha: 0.12
            beta: 1.0
            shininess: 0.1
            cool: "black"
            warm: Qt.rgba(1, 0, 0, 1)
            diffuse: Qt.rgba(0.1, 0.1, 0.1, 1)
            specular: "black"
        }
        PhongMaterial {
            id: whiteMaterial

            ambient: "white"
            diffuse: "white"
            specular: "black"
            shininess: 0
        }
        PhongMaterial {
            id: blackMaterial

            ambient: "black"
            diffuse: "black"
            specular: "black"
            shininess: 0
        }

        Torvik3d.SceneRoot {
            id: myScene

            property bool qmlOnCompletedSignalSent: false

            materialPipe: pipeMaterial
            materialNode: nodeMaterial
            materialNodeSelected: selectedNodeMaterial
            materialCone: coneMaterial
            materialConnection: connectionMaterial
            materialVertexLabel: window3d.screenshotPending ? blackMaterial : whiteMaterial
            camera: mainCamera
            backgroundVisible: false
            sceneHeight: scene3d.height
            sceneWidth: scene3d.width
            gridVisible: scene3d.mode3d && window3d.gridVisible && !window3d.gridDisabled
                         && !window3d.gridIsFarAwayFromCamera && !window3d.screenshotPending
            layerGrid: Layer {}
            crawler: Torvik3d.Crawler {
                id: crawler

                active: scene3d.crawlerVisible
            }

            Component.onCompleted: trySignalQmlOnCompleted()

            function trySignalQmlOnCompleted() {
                if (!qmlOnCompletedSignalSent && mainCamera.initialized && TorvikGeo.GeoProjector.initialized) {
                    myScene.qmlOnCompleted()
                    qmlOnCompletedSignalSent = true
                }
            }

            function positionCameraOnStartNodeOfInspection(inspectedSecOrLat) {
                if (inspectedSecOrLat === undefined || !inspectedSecOrLat.valid) {
                    return
                }
                const startNode = inspectedSecOrLat.getStartNode()
                if (startNode.valid) {
                    mainCamera.positionCameraOnRenderable(myScene.getRenderableByDomainGuid(startNode.id()))
                }
            }

            CameraFollowAnimation {
                id: cameraFollowAnimation

                targetCamera: mainCamera
                objectFollowed: myScene.crawler
                active: scene3d.crawlerVisible && scene3d.cameraFollowEnabled
                        && (window3d.splitViewMode || GlobalNav.cameraFollow)
            }

            Connections {
                target: myScene

                function onDistanceValueChanged(distance) {
                    cameraFollowAnimation.schedule()
                }
            }
        }

        Connections {
            target: mainCamera
            enabled: !myScene.qmlOnCompletedSignalSent

            function onInitializedChanged() {
                if (mainCamera.initialized) {
                    myScene.trySignalQmlOnCompleted()
                }
            }
        }

        Connections {
            target: TorvikGeo.GeoProjector
            enabled: !myScene.qmlOnCompletedSignalSent

            function onInitializedFromMap() {
                if (TorvikGeo.GeoProjector.initialized) {
                    myScene.trySignalQmlOnCompleted()
                }
            }
        }

        Connections {
            target: TorvikGeo.GeoProjector

            function onSceneResetRequest() {
                scene3d.resetCameraPosition()
            }
        }
    }
}
