// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Shapes
import Halvane

// At the end of the queue: files can be dropped here.
Item {
    id: root

    implicitHeight: 68

    Shape {
        id: outline

        readonly property real r: Theme.radiusMedium

        y: 10
        width: root.width
        height: 57
        ShapePath {
            strokeWidth: 1
            strokeColor: Theme.line
            fillColor: "transparent"
            strokeStyle: ShapePath.DashLine
            dashPattern: [3, 3]
            startX: outline.r
            startY: 0.5
            PathLine { x: root.width - outline.r; y: 0.5 }
            PathArc { x: root.width - 0.5; y: outline.r; radiusX: outline.r; radiusY: outline.r }
            PathLine { x: root.width - 0.5; y: outline.height - outline.r }
            PathArc { x: root.width - outline.r; y: outline.height - 0.5; radiusX: outline.r; radiusY: outline.r }
            PathLine { x: outline.r; y: outline.height - 0.5 }
            PathArc { x: 0.5; y: outline.height - outline.r; radiusX: outline.r; radiusY: outline.r }
            PathLine { x: 0.5; y: outline.r }
            PathArc { x: outline.r; y: 0.5; radiusX: outline.r; radiusY: outline.r }
        }
    }
    Column {
        y: 20
        width: parent.width
        spacing: 3
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Strings.dragAudio
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.labelStrong
            color: Theme.secondaryText
        }
        Text {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Strings.dragAudioSubtitle
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.caption
            color: Theme.tertiaryText
        }
    }
}
