import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12

import "."

/** The project's nodes, sections and inspections, in which a tap on a line goes to the object, and the observations of
 *  an inspection. */
Rectangle {
    id: objectLists

    readonly property var models: [viewer.nodesModel, viewer.sectionsModel, viewer.inspectionsModel]
    readonly property var names: [qsTr("Nodes"), qsTr("Pipes"), qsTr("Inspections"), qsTr("Observations"), qsTr("Project"), qsTr("Details")]
    readonly property int observationsTab: 3
    readonly property int treeTab: 4
    readonly property int detailsTab: 5

    color: Style.panel

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Style.gap
        spacing: Style.gap

        Text {
            Layout.fillWidth: true
            Layout.topMargin: Style.gap
            text: viewer.projectName !== "" ? viewer.projectName : qsTr("No project")
            color: Style.ink
            font.pixelSize: 20
            font.weight: Font.DemiBold
            elide: Text.ElideMiddle
        }

        TextField {
            id: search

            objectName: "search"
            visible: list.visible
            Layout.fillWidth: true
            implicitHeight: Style.touch
            placeholderText: qsTr("Search by name")
            selectByMouse: true
            color: Style.ink
            font.pixelSize: Style.textSize
            onTextChanged: viewer.setFilter(text)
            background: Rectangle {
                radius: Style.radius
                color: Style.paper
                border.width: search.activeFocus ? 2 : 1
                border.color: search.activeFocus ? Style.accent : Style.line
            }
        }

        GridLayout {
            Layout.fillWidth: true
            columns: 2
            columnSpacing: 4
            rowSpacing: 4

            Repeater {
                model: objectLists.names

                ToolButton {
                    objectName: "tab" + index
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    text: modelData
                    on: list.kind === index
                    onClicked: list.kind = index
                }
            }
        }

        ListView {
            id: list

            property int kind: 0

            objectName: "objects"
            visible: kind < objectLists.observationsTab
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: visible ? objectLists.models[kind] : null
            boundsBehavior: Flickable.StopAtBounds
            currentIndex: -1
            ScrollBar.vertical: ScrollBar {}

            /** Brings the first marked line into sight. */
            function showMarked() {
                for (const id of model ? viewer.currentIds : []) {
                    const line = model.rowOf(id)
                    if (line >= 0) {
                        positionViewAtIndex(line, ListView.Contain)
                        return
                    }
                }
            }

            onKindChanged: showMarked()

            Connections {
                target: viewer

                function onCurrentIdsChanged() {
                    list.showMarked()
                }
            }

            delegate: Rectangle {
                id: row

                width: list.width
                height: Math.max(Style.touch, texts.implicitHeight + Style.gap)
                radius: Style.radius
                readonly property bool marked: viewer.currentIds.indexOf(model.objectId) >= 0

                color: marked || tap.pressed ? Style.pressed : "transparent"

                Rectangle {
                    width: 4
                    height: parent.height
                    radius: 2
                    color: Style.accent
                    visible: row.marked
                }

                Column {
                    id: texts

                    anchors {
                        left: parent.left; right: parent.right
                        margins: 12; verticalCenter: parent.verticalCenter
                    }

                    Text {
                        width: parent.width
                        text: model.key
                        color: Style.ink
                        font.pixelSize: Style.textSize
                        elide: Text.ElideRight
                    }
                    Text {
                        width: parent.width
                        visible: text !== ""
                        text: model.detail
                        color: Style.quietInk
                        font.pixelSize: Style.smallTextSize
                        elide: Text.ElideRight
                    }
                }

                MouseArea {
                    id: tap

                    anchors.fill: parent
                    onClicked: viewer.goTo(model.objectId)
                }
            }

            Text {
                anchors.centerIn: parent
                visible: list.count === 0 && !viewer.busy
                text: search.text !== "" ? qsTr("Nothing found") : qsTr("Nothing here")
                color: Style.quietInk
                font.pixelSize: Style.textSize
            }
        }

        ObservationsPage {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: list.kind === objectLists.observationsTab
        }

        TreePage {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: list.kind === objectLists.treeTab
        }

        DetailsPage {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: list.kind === objectLists.detailsTab
        }
    }
}
