// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// A new playlist, and every one that there is by name; choosing one adds the tracks to it.
ContextMenu {
    id: root

    required property list<string> paths

    title: Strings.addToPlaylist

    MenuEntry {
        text: Strings.newPlaylist
        symbol: "plus"
        onTriggered: Browsing.playlistAsked(root.paths)
    }
    Instantiator {
        model: Library.playlists
        delegate: MenuEntry {
            required property var playlistId
            required property string name
            text: name
            symbol: "text.badge.plus"
            onTriggered: Library.playlists.addTrackPaths(root.paths, playlistId)
        }
        onObjectAdded: (index, object) => root.insertItem(1 + index, object as MenuEntry)
        onObjectRemoved: (index, object) => root.removeItem(object as MenuEntry)
    }
}
