// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The middle of the main window.
Item {
    id: root

    readonly property bool showsTable: Library.browsing.mode === BrowseMode.Songs || Library.browsing.selectedPlaylistName.length > 0

    LibraryToolbar {
        id: toolbar
        x: Theme.margin
        y: Theme.gapSmall
        width: parent.width - 2 * Theme.margin
    }
    ImportStatusView {
        id: status
        anchors.top: toolbar.bottom
        x: Theme.margin
        width: parent.width - 2 * Theme.margin
    }
    Loader {
        id: browser
        anchors.top: status.bottom
        anchors.topMargin: 10
        anchors.bottom: details.top
        width: parent.width
        focus: true
        sourceComponent: Library.trackCount === 0 ? invitation
                       : root.showsTable ? table
                       : Library.browsing.mode === BrowseMode.Artists ? artists : albums
    }
    Loader {
        id: details

        readonly property bool wanted: Library.trackCount > 0 && !root.showsTable
                                       && (Library.browsing.mode === BrowseMode.Artists
                                           ? Library.browsing.focusedArtist.length > 0
                                           : Library.browsing.hasFocusedAlbum && Browsing.showsAlbumTracks)

        anchors.bottom: parent.bottom
        width: parent.width
        height: wanted ? Math.round(Math.min(320, parent.height * 0.46)) : 0
        active: wanted
        visible: active
        sourceComponent: TrackTableView {
            isNarrowed: true
        }
    }

    Component {
        id: invitation
        EmptyLibraryView {}
    }
    Component {
        id: albums
        AlbumGridView { isShared: details.wanted } // qmllint disable unqualified
    }
    Component {
        id: artists
        ArtistGridView { isShared: details.wanted } // qmllint disable unqualified
    }
    Component {
        id: table
        TrackTableView {}
    }
}
