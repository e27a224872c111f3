// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The albums. A click chooses one and shows its tracks, a double click plays it.
LibraryGrid {
    id: root

    function choose(row: int): void {
        cursor.index = row
        Library.browsing.selectedAlbumID = cursor.value(row, "albumId")
        Browsing.showsAlbumTracks = true
    }

    model: Library.browsing.visibleAlbums
    title: Strings.albums
    idRole: "albumId"
    textRole: "title"
    spacing: Theme.gapLarge
    leastTileWidth: 158
    greatestTileWidth: 190
    tileHeight: tileWidth + Theme.albumTileWords
    cellHeight: tileHeight + 18
    cacheBuffer: 200
    chosenId: Library.browsing.selectedAlbumID
    onActivated: row => Library.collections.playAlbum(cursor.value(row, "albumId"))
    onMenuAsked: row => root.choose(row)
    Keys.onEscapePressed: event => {
        event.accepted = Browsing.showsAlbumTracks
        Browsing.showsAlbumTracks = false
    }

    // qmllint disable unqualified
    delegate: AlbumTile {
        width: root.tileWidth
        isSelected: albumId === Library.browsing.selectedAlbumID
        hasKeyboard: root.hasKeyboard && index === root.cursor.index
        showsRing: hasKeyboard && root.isByKeyboard
        onChosen: {
            root.take(index)
            root.choose(index)
        }
        onFocusTaken: root.take(index)
        onPlayed: Library.collections.playAlbum(albumId)
    }
    // qmllint enable unqualified
}
