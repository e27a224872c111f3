// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// What can be done with one track.
ContextMenu {
    id: root

    property var trackId
    property string path
    property bool isPlaying
    property bool isLoved
    property int rating

    function openFor(row: TrackRow, x: real, y: real): void {
        root.trackId = row.trackId
        root.path = row.path
        root.isPlaying = row.isPlaying && Library.transport.isPlaying
        root.isLoved = row.isLoved
        root.rating = row.rating
        root.popup(row, x, y)
    }

    MenuEntry {
        text: root.isPlaying ? Strings.pause : Strings.play
        symbol: root.isPlaying ? "pause.fill" : "play.fill"
        onTriggered: Library.collections.playInTable(root.trackId)
    }
    MenuEntry {
        text: Strings.playNextCommand
        symbol: "text.insert"
        onTriggered: Library.queueEditing.playNext([root.path])
    }
    MenuEntry {
        text: Strings.addToQueue
        symbol: "music.note.list"
        onTriggered: Library.queueEditing.addToQueue([root.path])
    }
    MenuLine {}
    MenuEntry {
        text: Strings.loved
        symbol: root.isLoved ? "heart.slash" : "heart"
        onTriggered: Library.userData.toggleLoved(root.path)
    }
    ContextMenu {
        id: ratingMenu
        title: Strings.rating
        MenuEntry {
            text: Strings.ratingNone
            checked: root.rating === 0
            onTriggered: Library.userData.setRating(0, root.path)
        }
        Repeater {
            model: 5
            RatingEntry {
                required property int index
                stars: index + 1
                checked: root.rating === stars
                onTriggered: Library.userData.setRating(stars, root.path)
            }
        }
    }
    AddToPlaylistMenu { paths: [root.path] }
    MenuEntry {
        visible: Library.browsing.selectedPlaylistName.length > 0
        height: visible ? implicitHeight : 0
        text: Strings.removeFromPlaylist
        symbol: "text.badge.minus"
        onTriggered: Library.playlists.removeTrackPath(root.path, Library.browsing.selectedPlaylistID)
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
