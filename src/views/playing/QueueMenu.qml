// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What can be done with one entry of the queue.
ContextMenu {
    id: root

    property var entryId
    property string path
    property string artist
    property bool isCurrent
    property bool isLoved

    MenuEntry {
        text: Strings.playThisTrack
        symbol: "play.fill"
        onTriggered: Library.transport.playItem(root.entryId, true)
    }
    MenuEntry {
        enabled: !root.isCurrent
        text: Strings.playNextCommand
        symbol: "text.insert"
        onTriggered: Library.queueEditing.moveNext(root.entryId)
    }
    MenuEntry {
        text: Strings.removeFromQueue
        symbol: "text.badge.minus"
        onTriggered: Library.queueEditing.removeEntry(root.entryId)
    }
    MenuLine {}
    MenuEntry {
        text: Strings.loved
        symbol: root.isLoved ? "heart.slash" : "heart"
        onTriggered: Library.userData.toggleLoved(root.path)
    }
    AddToPlaylistMenu { paths: [root.path] }
    MenuLine {}
    MenuEntry {
        text: Strings.viewArtist
        symbol: "person.2"
        onTriggered: Library.browsing.jumpToArtist(root.artist)
    }
    MenuEntry {
        text: Strings.viewAlbum
        symbol: "square.grid.2x2"
        onTriggered: Library.browsing.jumpToAlbum(Library.queue.itemOf(root.entryId))
    }
    MenuLine {}
    MenuEntry {
        text: Strings.showInFileManager
        symbol: "folder"
        onTriggered: App.showInFileManager(root.path)
    }
    MenuEntry {
        text: Strings.removeFromLibrary
        symbol: "trash"
        isDestructive: true
        onTriggered: Library.tidying.removeTracks([root.path])
    }
}
