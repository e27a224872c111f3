// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// In place of the rows or the tiles where there are none: why, and what to do about it.
Loader {
    id: root

    readonly property bool isSearch: Library.browsing.searchText.length > 0
    readonly property int place: Library.browsing.selectedSidebar

    active: root.visible
    sourceComponent: root.isSearch ? search
                   : Library.browsing.selectedPlaylistName.length > 0 ? playlist
                   : root.place === SidebarPlace.Loved ? loved
                   : root.place === SidebarPlace.LiveList ? ownLiveList
                   : root.place >= SidebarPlace.RecentlyAdded ? liveList : search

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
        id: liveList
        EmptyPlace {
            id: empty

            readonly property int place: Library.browsing.selectedSidebar

            symbol: empty.place === SidebarPlace.RecentlyAdded ? "clock"
                  : empty.place === SidebarPlace.TopRated ? "star" : "clock.arrow.circlepath"
            title: empty.place === SidebarPlace.RecentlyAdded ? Strings.emptyRecentlyAdded
                 : empty.place === SidebarPlace.TopRated ? Strings.emptyTopRated : Strings.emptyPlayed
            message: empty.place === SidebarPlace.RecentlyAdded ? Strings.emptyRecentlyAddedHint
                   : empty.place === SidebarPlace.TopRated ? Strings.emptyTopRatedHint : Strings.emptyPlayedHint
            BrowseButton {}
        }
    }
    Component {
        id: ownLiveList
        EmptyPlace {
            symbol: "text.magnifyingglass"
            title: Strings.emptyLiveList
            message: Strings.emptyLiveListHint
            PillButton {
                implicitHeight: 36
                isPrimary: true
                symbol: "pencil"
                text: Strings.editLiveList
                onClicked: Library.views.editLiveList(Library.liveLists.list(Library.browsing.selectedLiveListID))
            }
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
