// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A track with a problem.
Item {
    id: root

    required property string title
    required property string artist
    required property string path
    property bool canRemove
    property bool hasKeyboard
    readonly property real symbolSize: 15
    readonly property real textLeft: 22
    readonly property real buttonRoom: 28

    signal removed

    implicitHeight: Theme.tidyingRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: Spoken.titled(root.title, root.artist)

    SymbolLabel {
        width: 14
        height: parent.height
        symbol: "music.note"
        size: root.symbolSize
    }
    PlainText {
        id: name
        x: root.textLeft
        width: Math.min(implicitWidth, (parent.width - x - root.buttonRoom) * 0.62)
        height: parent.height
        text: root.title
        font: Theme.label
        Accessible.ignored: true
    }
    PlainText {
        anchors.left: name.right
        anchors.leftMargin: Theme.gapSmall
        anchors.right: parent.right
        anchors.rightMargin: root.buttonRoom
        height: parent.height
        text: root.artist
        font: Theme.label
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
    SymbolButton {
        anchors.right: parent.right
        visible: root.canRemove
        symbol: "xmark.circle.fill"
        tip: Strings.removeFromLibrary
        size: root.height
        symbolSize: root.symbolSize
        onClicked: root.removed()
    }
    FocusRing {
        shown: root.hasKeyboard
        around: -1
    }
}
