// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A cover with rounded corners, decoded at the size it is shown; until it is there, or where there
// is none, the album's colours and a symbol.
Item {
    id: root

    required property string coverKey
    property var colors: []
    property real radius: Theme.radiusSmall
    property string symbol: "music.note"
    // Another one when the picture behind the key is another.
    readonly property int revision: Library.coverFiles.changes > 0 ? Library.coverFiles.revisionOf(root.coverKey) : 0
    readonly property bool hasColors: root.colors !== undefined && root.colors.length > 2

    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        visible: picture.status !== Image.Ready
        radius: root.radius
        border.width: root.hasColors ? 0 : 1
        border.color: Theme.hairline
        gradient: Gradient {
            GradientStop { position: 0; color: root.hasColors ? root.colors[0] : Theme.panelRaised }
            GradientStop { position: 0.55; color: root.hasColors ? root.colors[1] : Theme.panel }
            GradientStop { position: 1; color: root.hasColors ? root.colors[2] : Theme.panel }
        }
        SymbolLabel {
            anchors.centerIn: parent
            symbol: root.symbol
            size: Math.max(14, Math.min(parent.width, parent.height) * 0.36)
            color: Theme.withAlpha(Theme.primaryText, root.hasColors ? 0.55 : 0.28)
        }
    }
    Image {
        id: picture
        anchors.fill: parent
        asynchronous: true
        antialiasing: root.rotation !== 0 || (root.parent ? root.parent.rotation !== 0 : false)
        source: root.coverKey.length > 0 && root.width > 0
                ? "image://cover/" + encodeURIComponent(root.coverKey) + "?" + (root.radius / root.width).toFixed(4)
                  + "&" + root.revision
                : ""
        sourceSize.width: Math.round(root.width)
        sourceSize.height: Math.round(root.height)
        Accessible.ignored: true
    }
}
