// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// In place of the rows or the tiles where there are none: why, and what to do about it.
Loader {
    id: root

    readonly property bool isSearch: Library.browsing.searchText.length > 0

    active: root.visible
    sourceComponent: !root.isSearch && Library.browsing.selectedPlaylistName.length > 0 ? playlist
                   : !root.isSearch && Library.browsing.selectedSidebar === SidebarPlace.Loved ? loved : search

    component BrowseButton: PillButton {
        implicitHeight: 36
        isPrimary: true
        symbol: "music.note.list"
        text: Strings.browseTracks
        onClicked: Library.browsing.selectSidebarItem(SidebarPlace.Tracks)
    }

    Component {
        id: search
        EmptyPlace {
            symbol: "magnifyingglass"
            title: Strings.noResults
            message: Strings.noResultsHint
            PillButton {
                implicitHeight: 36
                isPrimary: true
                symbol: "xmark"
                text: Strings.clearSearch
                onClicked: Library.browsing.searchText = ""
            }
        }
    }
    Component {
        id: playlist
        EmptyPlace {
            symbol: "text.badge.plus"
            title: Strings.emptyPlaylist
            message: Strings.emptyPlaylistHint
            BrowseButton {}
        }
    }
    Component {
        id: loved
        EmptyPlace {
            symbol: "heart"
            title: Strings.emptyLoved
            message: Strings.emptyLovedHint
            PillButton {
                implicitHeight: 36
                width: Math.min(implicitWidth, 300)
                visible: Library.player.hasCurrentTrack && !Library.player.isCurrentTrackLoved
                isPrimary: true
                symbol: "heart.fill"
                text: Strings.sentences.loveTrack(Library.player.currentTrack.title)
                onClicked: Library.userData.toggleLoved(Library.player.currentTrack.path)
            }
            BrowseButton {
                visible: !Library.player.hasCurrentTrack
            }
        }
    }
}
