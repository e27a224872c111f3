// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Halvane

// A menu, also as a submenu.
T.Menu {
    id: root

    readonly property real clearance: 40 // of the window's height, which the longest menu leaves free

    // A KeyEvent before the menu itself sees it, which it does not when it was accepted.
    signal keyPressed(var event)

    // As wide as its widest entry, within reason.
    function widest(): real {
        let width = 160
        for (let i = 0; i < root.count; ++i) {
            const item = root.itemAt(i)
            if (item)
                width = Math.max(width, item.implicitWidth)
        }
        return Math.min(width, 320)
    }

    // Goes to the nearest entry that can be chosen, from this one on; false when there is none.
    function goTo(index: int, step: int): bool {
        for (let i = index; i >= 0 && i < root.count; i += step) {
            const entry = root.itemAt(i) as T.MenuItem
            if (entry && entry.enabled && entry.visible) {
                root.currentIndex = i
                return true
            }
        }
        return false
    }
    // The menu itself goes neither round nor to its ends.
    function goByKey(key: int): bool {
        const last = root.count - 1
        if (key === Qt.Key_Home)
            return root.goTo(0, 1)
        if (key === Qt.Key_End)
            return root.goTo(last, -1)
        if (key === Qt.Key_Down)
            return root.goTo(root.currentIndex + 1, 1) || root.goTo(0, 1)
        if (key === Qt.Key_Up)
            return root.goTo(root.currentIndex - 1, -1) || root.goTo(last, -1)
        return false
    }

    implicitWidth: root.widest() + leftPadding + rightPadding
    implicitHeight: list.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 6
    overlap: 2
    cascade: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    delegate: MenuEntry {}
    contentItem: ListView {
        id: list
        implicitHeight: Math.min(contentHeight, root.parent && root.parent.Window.window
                                 ? root.parent.Window.window.height - root.clearance : contentHeight)
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        keyNavigationEnabled: true
        Keys.onPressed: event => {
            root.keyPressed(event)
            if (!event.accepted)
                event.accepted = root.goByKey(event.key)
        }
        T.ScrollBar.vertical: ScrollLine {}
    }
    background: Rectangle {
        radius: Theme.radiusMedium
        color: Theme.panel
        border.color: Theme.line
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick }
    }
}
