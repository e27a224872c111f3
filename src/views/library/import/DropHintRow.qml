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
        // The line lies in the middle of its pixels.
        readonly property real near: 0.5
        readonly property real farX: width - near
        readonly property real farY: height - near

        y: 10
        width: root.width
        height: root.implicitHeight - y - 1
        ShapePath {
            strokeWidth: 1
            strokeColor: Theme.line
            fillColor: "transparent"
            strokeStyle: ShapePath.DashLine
            dashPattern: [3, 3]
            startX: outline.r
            startY: outline.near
            PathLine { x: outline.width - outline.r; y: outline.near }
            PathArc { x: outline.farX; y: outline.r; radiusX: outline.r; radiusY: outline.r }
            PathLine { x: outline.farX; y: outline.height - outline.r }
            PathArc { x: outline.width - outline.r; y: outline.farY; radiusX: outline.r; radiusY: outline.r }
            PathLine { x: outline.r; y: outline.farY }
            PathArc { x: outline.near; y: outline.height - outline.r; radiusX: outline.r; radiusY: outline.r }
            PathLine { x: outline.near; y: outline.r }
            PathArc { x: outline.r; y: outline.near; radiusX: outline.r; radiusY: outline.r }
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
