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

    signal removed

    implicitHeight: 22
    Accessible.role: Accessible.ListItem
    Accessible.name: root.title + ", " + root.artist

    SymbolLabel {
        width: 14
        height: parent.height
        symbol: "music.note"
        size: 15
    }
    PlainText {
        id: name
        x: 22
        width: Math.min(implicitWidth, (parent.width - 22 - 28) * 0.62)
        height: parent.height
        text: root.title
        font: Theme.label
        Accessible.ignored: true
    }
    PlainText {
        anchors.left: name.right
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.rightMargin: 28
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
        size: 22
        symbolSize: 15
        onClicked: root.removed()
    }
    FocusRing {
        shown: root.hasKeyboard
        around: -1
    }
}
