import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12

import "."

/** The observations of the inspection that is selected, to be added, changed and deleted. */
Item {
    id: page

    readonly property var observations: viewer.observations
    /** Of the marked line; empty for none. */
    property string markedId
    property bool editing: false
    /** Deleting takes a second tap. */
    property bool deleting: false
    property string failure

    function edit(id) {
        editor.open(id)
        deleting = false
        failure = ""
        editing = true
    }

    function mark(id) {
        markedId = id
        deleting = false
        failure = ""
    }

    function remove() {
        if (!deleting) {
            deleting = true
            return
        }
        deleting = false
        failure = observations.remove(markedId)
        if (failure === "") {
            mark("")
        }
    }

    Connections {
        target: page.observations

        function onInspectionChanged() {
            page.mark("")
            page.editing = false
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Style.gap
        visible: !page.editing

        Text {
            objectName: "observationsTitle"
            Layout.fillWidth: true
            text: page.observations.hasInspection
                  ? page.observations.pipeName || qsTr("Pipe without a name")
                  : qsTr("Select a pipe with an inspection, here or in the scene")
            textFormat: Text.PlainText
            color: page.observations.hasInspection ? Style.ink : Style.quietInk
            font.pixelSize: Style.textSize
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
        }

        ListView {
            id: list

            objectName: "observationList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: page.observations
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            delegate: Rectangle {
                id: row

                readonly property bool marked: model.objectId === page.markedId

                width: list.width
                height: Math.max(Style.touch, texts.implicitHeight + Style.gap)
                radius: Style.radius
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
                        text: qsTr("%1  %2").arg(model.place).arg(model.code)
                        textFormat: Text.PlainText
                        color: Style.ink
                        font.pixelSize: Style.textSize
                        elide: Text.ElideRight
                    }
                    Text {
                        width: parent.width
                        visible: text !== ""
                        text: model.detail
                        textFormat: Text.PlainText
                        color: Style.quietInk
                        font.pixelSize: Style.smallTextSize
                        elide: Text.ElideRight
                    }
                }

                MouseArea {
                    id: tap

                    anchors.fill: parent
                    onClicked: page.mark(model.objectId)
                }
            }

            Text {
                anchors.centerIn: parent
                visible: list.count === 0 && page.observations.hasInspection
                text: qsTr("No observations")
                color: Style.quietInk
                font.pixelSize: Style.textSize
            }
        }

        Text {
            objectName: "observationFailure"
            Layout.fillWidth: true
            visible: text !== ""
            text: page.failure
            textFormat: Text.PlainText
            color: Style.alarm
            font.pixelSize: Style.smallTextSize
            wrapMode: Text.Wrap
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Style.gap

            ToolButton {
                objectName: "addObservationButton"
                Layout.fillWidth: true
                enabled: page.observations.hasInspection
                text: qsTr("Add")
                onClicked: page.edit("")
            }
            ToolButton {
                objectName: "changeObservationButton"
                Layout.fillWidth: true
                enabled: page.markedId !== ""
                text: qsTr("Change")
                onClicked: page.edit(page.markedId)
            }
            ToolButton {
                objectName: "deleteObservationButton"
                Layout.fillWidth: true
                enabled: page.markedId !== ""
                on: page.deleting
                text: page.deleting ? qsTr("Really?") : qsTr("Delete")
                onClicked: page.remove()
            }
        }
    }

    ObservationEditor {
        id: editor

        objectName: "observationEditor"
        anchors.fill: parent
        visible: page.editing
        onFinished: page.editing = false
    }
}
