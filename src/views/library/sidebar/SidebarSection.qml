// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One place of the library.
SidebarRow {
    id: root

    required property int item

    symbol: ["music.note.house", "square.grid.2x2", "person.2", "music.note.list", "heart"][root.item]
    text: [Strings.library, Strings.albums, Strings.artists, Strings.tracks, Strings.loved][root.item]
    isSelected: Library.browsing.selectedPlaylistName.length === 0 && Library.browsing.selectedSidebar === root.item
    onClicked: Library.browsing.selectSidebarItem(root.item)
}
