// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One place of the library.
SidebarRow {
    id: root

    required property int item

    symbol: ["music.note.house", "square.grid.2x2", "person.2", "music.note.list", "heart",
             "clock", "clock.arrow.circlepath", "chart.bar.fill", "star"][root.item]
    text: Strings.sentences.placeName(root.item)
    isSelected: Library.browsing.selectedPlaylistName.length === 0 && Library.browsing.selectedSidebar === root.item
    onClicked: Library.browsing.selectSidebarItem(root.item)
}
