// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The albums. A click chooses one and shows its tracks, a double click plays it.
LibraryGrid {
    id: root

    readonly property string playingId: Library.player.hasCurrentTrack && Library.player.hasCurrentArtworkAlbum
                                        ? Library.player.currentArtworkAlbum.id : ""

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
    leastTileWidth: [128, 158, 204, 256][Library.views.tileSize]
    greatestTileWidth: Math.round(leastTileWidth * 190 / 158)
    tileHeight: tileWidth + Theme.albumTileWords
    cellHeight: tileHeight + 18
    cacheBuffer: 200
    chosenId: Library.browsing.selectedAlbumID
    onActivated: row => Library.collections.playAlbum(cursor.value(row, "albumId"))
    onResized: steps => Library.views.tileSize += steps
    Keys.onEscapePressed: event => {
        event.accepted = Browsing.showsAlbumTracks
        Browsing.showsAlbumTracks = false
    }

    // qmllint disable unqualified
    menu: CollectionMenu {
        onAboutToShow: {
            paths = Library.collections.pathsOfAlbum(collection)
            const lead = root.cursor.value(root.cursor.index, "artist")
            artist = lead === Strings.unknownArtist ? "" : lead
        }
        onPlayAsked: Library.collections.playAlbum(collection)
        onShuffleAsked: Library.collections.shuffleAlbum(collection)
    }
    delegate: AlbumTile {
        width: root.tileWidth
        isSelected: albumId === Library.browsing.selectedAlbumID
        isPlaying: albumId === root.playingId
        hasMenu: index === root.menuRow
        hasKeyboard: root.hasKeyboard && index === root.cursor.index
        showsRing: hasKeyboard && root.isByKeyboard
        onChosen: {
            root.take(index)
            root.choose(index)
        }
        onFocusTaken: root.take(index)
        onPlayed: Library.collections.playAlbum(albumId)
        onMenuAsked: (x, y) => root.openMenu(this, index, x, y)
        onCarried: drag => {
            drag.title = title
            drag.paths = Library.collections.pathsOfAlbum(albumId)
        }
    }
    // qmllint enable unqualified
}
