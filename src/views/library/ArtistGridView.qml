// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The artists. A click shows an artist's tracks, a double click plays them.
LibraryGrid {
    id: root

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
    onMenuAsked: row => Library.browsing.focusedArtist = cursor.value(row, "name")
    Keys.onEscapePressed: event => {
        event.accepted = Library.browsing.focusedArtist.length > 0
        Library.browsing.focusedArtist = ""
    }

    // qmllint disable unqualified
    delegate: ArtistTile {
        width: root.tileWidth
        isSelected: name === Library.browsing.focusedArtist
        hasKeyboard: root.hasKeyboard && index === root.cursor.index
        showsRing: hasKeyboard && root.isByKeyboard
        onChosen: {
            root.take(index)
            Library.browsing.focusedArtist = name
        }
        onFocusTaken: root.take(index)
        onPlayed: Library.collections.playArtist(name)
    }
    // qmllint enable unqualified
}
