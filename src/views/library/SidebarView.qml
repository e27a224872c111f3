// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Halvane

// The places of the library and the playlists.
Rectangle {
    id: root

    color: Theme.sidebarVeil

    AppIdentityView {
        id: identity
        x: 18
        y: 14
        width: parent.width - 30
    }
    Flickable {
        id: scroll
        anchors.top: identity.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        width: parent.width
        contentHeight: sections.height + Theme.gapLarge
        boundsBehavior: Flickable.StopAtBounds
        interactive: false
        clip: true
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: sections
            x: 12
            width: parent.width - 24
            spacing: 14

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
