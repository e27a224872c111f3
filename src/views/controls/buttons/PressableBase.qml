// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What all buttons share: Return presses, Space presses while the keyboard is on the button (it is
// play and pause elsewhere), a name for those who cannot see it, and a tooltip. Made from an item
// because a ready-made button calls itself a button to assistive technology, also where it is a tab,
// a link or a row.
Operable {
    id: root

    property string text
    property string tip
    property string keys // which do the same, as the menus name them
    property font font: Theme.body
    property Item contentItem: null
    property Item background: null
    readonly property bool hovered: hover.hovered && root.enabled
    readonly property bool pressed: touch.pressed
    readonly property bool visualFocus: root.activeFocus // a click gives no focus

    signal clicked

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: root.tip.length > 0 ? root.tip : root.text
    onPressAsked: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    Keys.onSpacePressed: root.clicked()
    Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Space
    onContentItemChanged: {
        root.contentItem.parent = content
        root.contentItem.anchors.fill = content
    }
    onBackgroundChanged: {
        root.background.parent = backdrop
        root.background.anchors.fill = backdrop
    }

    Item {
        id: backdrop
        anchors.fill: parent
    }
    Item {
        id: content
        anchors.fill: parent
    }
    MouseArea {
        id: touch

        property bool isAnswered // no tip may cover what a click opens

        anchors.fill: parent
        onClicked: {
            touch.isAnswered = true
            root.clicked()
        }
    }
    HoverHandler {
        id: hover
        onHoveredChanged: touch.isAnswered = false
    }
    Tip {
        shown: root.hovered && !root.pressed && !touch.isAnswered
        text: root.keys.length > 0 ? root.tip + " (" + root.keys + ")" : root.tip
    }
}
