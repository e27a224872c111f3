// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// What can be done with one track, or with several together.
ContextMenu {
    id: root

    property var trackId
    property list<string> paths
    readonly property string path: root.paths.length > 0 ? root.paths[0] : ""
    readonly property bool isOfOne: root.paths.length < 2
    property bool isPlaying
    property bool isLoved
    property int rating

    MenuEntry {
        text: root.isPlaying ? Strings.pause : Strings.play
        symbol: root.isPlaying ? "pause.fill" : "play.fill"
        onTriggered: {
            if (root.isOfOne)
                Library.collections.playInTable(root.trackId)
            else
                Library.collections.playTogether(root.paths)
        }
    }
    MenuEntry {
        text: Strings.playNextCommand
        symbol: "text.insert"
        onTriggered: Library.queueEditing.playNext(root.paths)
    }
    MenuEntry {
        text: Strings.addToQueue
        symbol: "music.note.list"
        onTriggered: Library.queueEditing.addToQueue(root.paths)
    }
    MenuLine {}
    MenuEntry {
        text: Strings.loved
        symbol: root.isLoved ? "heart.slash" : "heart"
        onTriggered: Library.userData.toggleLovedTogether(root.paths)
    }
    ContextMenu {
        id: ratingMenu
        title: Strings.rating
        MenuEntry {
            text: Strings.ratingNone
            checked: root.rating === 0
            onTriggered: Library.userData.rateTogether(0, root.paths)
        }
        Repeater {
            model: 5
            RatingEntry {
                required property int index
                stars: index + 1
                checked: root.rating === stars
                onTriggered: Library.userData.rateTogether(stars, root.paths)
            }
        }
    }
    AddToPlaylistMenu { paths: root.paths }
    MenuEntry {
        visible: Library.browsing.selectedPlaylistName.length > 0
        height: visible ? implicitHeight : 0
        text: Strings.removeFromPlaylist
        symbol: "text.badge.minus"
        onTriggered: Library.playlists.removeTrackPaths(root.paths, Library.browsing.selectedPlaylistID)
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
        onTriggered: Library.tidying.removeTracks(root.paths)
    }
}
