// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Every playlist by name; choosing one adds the tracks to it.
ContextMenu {
    id: root

    required property list<string> paths

    title: Strings.addToPlaylist

    Instantiator {
        model: Library.playlists
        delegate: MenuEntry {
            required property var playlistId
            required property string name
            text: name
            symbol: "text.badge.plus"
            onTriggered: Library.playlists.addTrackPaths(root.paths, playlistId)
        }
        onObjectAdded: (index, object) => root.insertItem(index, object as MenuEntry)
        onObjectRemoved: (index, object) => root.removeItem(object as MenuEntry)
    }
}
