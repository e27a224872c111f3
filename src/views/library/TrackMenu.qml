// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// What can be done with one track.
ContextMenu {
    id: root

    property string path
    property bool isLoved
    property int rating

    function openFor(row: TrackRow, x: real, y: real): void {
        root.path = row.path
        root.isLoved = row.isLoved
        root.rating = row.rating
        root.popup(row, x, y)
    }

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
