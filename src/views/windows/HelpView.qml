// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// How to use the player, and its keys.
FocusScope {
    id: root

    readonly property real keyStep: 40 // by which an arrow key scrolls

    implicitWidth: 480
    implicitHeight: 560
    focus: true

    AmbientBackdrop { anchors.fill: parent }
    SecondaryTopRow {
        id: heading
        width: parent.width
        title: Strings.helpTitle
        detail: "v1.0.0 (22)"
    }
    Flickable {
        id: scroll
        anchors.top: heading.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        contentHeight: sections.height + Theme.margin
        boundsBehavior: Flickable.StopAtBounds
        interactive: false
        clip: true
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Document
        Accessible.name: Strings.helpTitle
        Keys.onUpPressed: wheel.scrollTo(contentY - root.keyStep)
        Keys.onDownPressed: wheel.scrollTo(contentY + root.keyStep)
        Keys.onPressed: event => {
            event.accepted = true
            if (event.key === Qt.Key_PageDown)
                wheel.scrollTo(contentY + height * 0.9)
            else if (event.key === Qt.Key_PageUp)
                wheel.scrollTo(contentY - height * 0.9)
            else if (event.key === Qt.Key_Home)
                wheel.scrollTo(0)
            else if (event.key === Qt.Key_End)
                wheel.scrollTo(contentHeight)
            else
                event.accepted = false
        }
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: sections
            x: 20
            width: parent.width - 2 * x
            spacing: 18

            HelpSection {
                symbol: "folder.badge.plus"
                title: Strings.helpImportTitle
                body: Strings.helpImportBody
            }
            HelpSection {
                symbol: "play.circle"
                title: Strings.helpPlaybackTitle
                body: Strings.helpPlaybackBody
            }
            HelpSection {
                symbol: "macwindow"
                title: Strings.helpModesTitle
                body: Strings.helpModesBody
            }
            HelpSection {
                symbol: "magnifyingglass"
                title: Strings.helpSearchTitle
                body: Strings.helpSearchBody
            }
            HelpSection {
                symbol: "icloud.and.arrow.down"
                title: Strings.helpCloudTitle
                body: Strings.helpCloudBody
            }
            HelpSection {
                symbol: "wand.and.sparkles"
                title: Strings.helpMaintenanceTitle
                body: Strings.helpMaintenanceBody
            }
            ShortcutTable { width: parent.width }
        }
    }
    WheelScroller {
        id: wheel
        parent: scroll
        view: scroll
    }
}
