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
