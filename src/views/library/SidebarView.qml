// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Halvane

// The places of the library and the playlists.
Rectangle {
    id: root

    readonly property real gap: 14 // between its parts

    color: Theme.sidebarVeil

    AppIdentityView {
        id: identity
        x: 18
        y: root.gap
        width: parent.width - x - Theme.gap
    }
    Flickable {
        id: scroll
        anchors.top: identity.bottom
        anchors.topMargin: root.gap
        anchors.bottom: parent.bottom
        width: parent.width
        contentHeight: sections.height + Theme.gapLarge
        boundsBehavior: Flickable.StopAtBounds
        interactive: false
        clip: true
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: sections
            x: Theme.gap
            width: parent.width - 2 * x
            spacing: root.gap

            Column {
                width: parent.width
                SidebarHeader {
                    width: parent.width
                    text: Strings.browse
                }
                Repeater {
                    model: Library.sidebar
                    SidebarSection { width: parent.width }
                }
            }
            PlaylistsSection { width: parent.width }
        }
    }
    WheelScroller {
        parent: scroll
        view: scroll
    }
}
