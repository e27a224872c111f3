// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The artists. A click shows an artist's tracks, a double click plays them.
LibraryGrid {
    id: root

    readonly property string playingArtist: Library.player.hasCurrentTrack ? Library.player.currentTrack.artist : ""
    readonly property string playingLead: Library.player.hasCurrentTrack && Library.player.hasCurrentArtworkAlbum
                                          ? Library.player.currentArtworkAlbum.artist : ""

    model: Library.browsing.visibleArtists
    title: Strings.artists
    idRole: "name"
    textRole: "name"
    spacing: Theme.gap
    leastTileWidth: 230
    tileHeight: Theme.artistTileHeight
    cacheBuffer: 40
    chosenId: Library.browsing.focusedArtist
    onActivated: row => Library.collections.playArtist(cursor.value(row, "name"))
    Keys.onEscapePressed: event => {
        event.accepted = Library.browsing.focusedArtist.length > 0
        Library.browsing.focusedArtist = ""
    }

    // qmllint disable unqualified
    menu: CollectionMenu {
        onAboutToShow: paths = Library.collections.pathsOfArtist(collection)
        onPlayAsked: Library.collections.playArtist(collection)
        onShuffleAsked: Library.collections.shuffleArtist(collection)
    }
    delegate: ArtistTile {
        width: root.tileWidth
        isSelected: name.length > 0 && name === Library.browsing.focusedArtist
        isPlaying: name.length > 0 && (name === root.playingArtist || name === root.playingLead)
        hasMenu: index === root.menuRow
        hasKeyboard: root.hasKeyboard && index === root.cursor.index
        showsRing: hasKeyboard && root.isByKeyboard
        onChosen: {
            root.take(index)
            Library.browsing.focusedArtist = name
        }
        onFocusTaken: root.take(index)
        onPlayed: Library.collections.playArtist(name)
        onMenuAsked: (x, y) => root.openMenu(this, index, x, y)
        onCarried: drag => {
            drag.title = shownName
            drag.paths = Library.collections.pathsOfArtist(name)
        }
    }
    // qmllint enable unqualified
}
