// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What stands above every list of the library. What plays, large, scrolls away with the list; the
// tabs stay, and have what plays beside them from then on.
Item {
    id: root

    required property real scrolled // by how much the list has been
    readonly property real collapsing: hero.height + 14
    readonly property real staying: tabs.height + 12
    readonly property bool isCollapsed: root.scrolled >= root.collapsing
    readonly property real way: Math.max(0, Math.min(root.collapsing, root.scrolled))

    // The keyboard has come to what is about to be out of sight.
    signal sightAsked

    implicitHeight: root.staying + root.collapsing - root.way
    clip: true

    HeroPlaybackView {
        id: hero
        x: Theme.margin
        y: -root.way
        width: root.width - 2 * x
        visible: !root.isCollapsed
    }
    FocusWatch {
        area: hero
        onEntered: {
            if (root.way > 0)
                root.sightAsked()
        }
    }
    BrowseModeTabs {
        id: tabs
        x: Theme.margin
        y: root.collapsing - root.way
    }
    CurrentTrackStrip {
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: tabs.verticalCenter
        greatestWidth: root.width - tabs.width - 2 * Theme.margin - Theme.gapLarge
        shown: root.isCollapsed && Library.player.hasCurrentTrack
    }
    Rectangle {
        x: Theme.margin
        anchors.bottom: parent.bottom
        width: root.width - 2 * x
        height: 1
        visible: root.scrolled > 0
        color: Theme.hairline
    }
}
