// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The middle of the main window.
Item {
    id: root

    readonly property bool showsTable: Library.browsing.mode === BrowseMode.Songs || Library.browsing.selectedPlaylistName.length > 0

    Connections {
        target: Library.browsing
        function onJumped() { Browsing.showsAlbumTracks = true }
    }
    LibraryToolbar {
        id: toolbar
        x: Theme.margin
        y: Theme.gapSmall
        width: parent.width - 2 * Theme.margin
    }
    ImportStatusView {
        anchors.top: toolbar.bottom
        anchors.topMargin: Theme.gapTiny
        x: Theme.margin
        width: parent.width - 2 * Theme.margin
    }
    Item {
        id: area

        readonly property TrackTableView rows: browser.item as TrackTableView
        readonly property LibraryGrid tiles: browser.item as LibraryGrid
        readonly property Flickable view: rows?.list ?? tiles

        function toBeginning(): void {
            rows?.toBeginning()
            tiles?.toBeginning()
        }

        anchors.top: toolbar.bottom
        anchors.topMargin: 10
        anchors.bottom: details.top
        width: parent.width

        LibraryHeader {
            id: heading
            width: parent.width
            visible: area.view !== null
            scrolled: area.view ? area.view.contentY - area.view.originY : 0
            Keys.forwardTo: [browser.item]
            onSightAsked: area.toBeginning()
        }
        Loader {
            id: browser
            y: heading.visible ? heading.staying : 0
            width: parent.width
            height: parent.height - y
            focus: true
            sourceComponent: Library.trackCount === 0 ? invitation
                           : root.showsTable ? table
                           : Library.browsing.mode === BrowseMode.Artists ? artists : albums
        }
    }
    Item {
        id: details

        readonly property real full: Math.round(Math.max(240, Math.min(360, root.height * 0.42)))
        readonly property bool mayOpen: wanted && !(area.tiles?.awaitsSecondClick ?? false)
        property bool isOpen
        property real openness: isOpen ? 1 : 0
        readonly property bool isOpening: isOpen && openness < 1
        // A search that finds none of its tracks may well have found tiles.
        readonly property bool wanted: Library.browsing.hasVisibleTracks && !root.showsTable
                                       && (Library.browsing.mode === BrowseMode.Artists
                                           ? Library.browsing.focusedArtist.length > 0
                                           : Library.browsing.hasFocusedAlbum && Browsing.showsAlbumTracks)

        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.round(full * openness)
        clip: true
        onMayOpenChanged: {
            if (mayOpen)
                isOpen = true
        }
        onWantedChanged: {
            if (!wanted)
                isOpen = false
        }
        Behavior on openness {
            enabled: area.tiles !== null
            NumberAnimation { duration: Theme.paneSlide; easing.type: Easing.OutQuad }
        }

        Loader {
            width: parent.width
            height: details.full
            active: details.openness > 0
            sourceComponent: TrackTableView {
                isNarrowed: true
            }
        }
    }

    Component {
        id: invitation
        EmptyLibraryView {}
    }
    Component {
        id: albums
        // qmllint disable unqualified
        AlbumGridView {
            headroom: heading.collapsing
            wheelArea: area
            roomForPane: details.full - details.height
            paneIsOpening: details.isOpening
        }
        // qmllint enable unqualified
    }
    Component {
        id: artists
        // qmllint disable unqualified
        ArtistGridView {
            headroom: heading.collapsing
            wheelArea: area
            roomForPane: details.full - details.height
            paneIsOpening: details.isOpening
        }
        // qmllint enable unqualified
    }
    Component {
        id: table
        // qmllint disable unqualified
        TrackTableView {
            headroom: heading.collapsing
            wheelArea: area
        }
        // qmllint enable unqualified
    }
}
