// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The albums. A click chooses one and shows its tracks, a double click plays it.
GridView {
    id: root

    // A track table stands beneath, so there is no room for what is playing.
    property bool isShared

    readonly property real spacing: 16
    readonly property real available: width - 2 * Theme.margin
    readonly property int columns: Math.max(1, Math.floor((available + spacing) / (158 + spacing)))
    readonly property real tileWidth: Math.min(190, Math.floor((available + spacing) / columns - spacing))

    function choose(row: int): void {
        cursor.index = row
        Library.browsing.selectedAlbumID = cursor.value(row, "albumId")
        Browsing.showsAlbumTracks = true
    }

    model: Library.browsing.visibleAlbums
    leftMargin: Theme.margin
    rightMargin: Theme.margin - spacing
    cellWidth: tileWidth + spacing
    cellHeight: tileWidth + 56 + 18
    reuseItems: true
    cacheBuffer: 200
    interactive: false
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    Accessible.focusable: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.List
    Accessible.name: Strings.albums
    Keys.onPressed: event => keys.handle(event)
    Keys.onTabPressed: tabStop.leave(true)
    Keys.onBacktabPressed: tabStop.leave(false)
    Keys.onEscapePressed: event => {
        event.accepted = Browsing.showsAlbumTracks
        Browsing.showsAlbumTracks = false
    }
    T.ScrollBar.vertical: ScrollLine { x: root.width - width }

    // qmllint disable unqualified
    header: Column {
        width: root.available
        bottomPadding: 10
        LibraryHeader {
            width: root.available
            showsHero: !root.isShared
        }
        Item {
            width: parent.width
            height: 30
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: Strings.albums
                font: Theme.name
                color: Theme.secondaryText
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            PillButton {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: Library.browsing.selectedAlbumID.length > 0
                symbol: "play.fill"
                text: Strings.playAlbum
                onClicked: Library.collections.playAlbum(Library.browsing.selectedAlbumID)
            }
        }
        NoResults {
            width: parent.width
            visible: root.count === 0
        }
    }
    delegate: AlbumTile {
        width: root.tileWidth
        isSelected: albumId === Library.browsing.selectedAlbumID
        hasKeyboard: root.activeFocus && index === cursor.index
        onChosen: {
            tabStop.take(Qt.MouseFocusReason)
            root.choose(index)
        }
        onPlayed: Library.collections.playAlbum(albumId)
    }
    // qmllint enable unqualified

    ListCursor {
        id: cursor
        model: Library.browsing.visibleAlbums
        idRole: "albumId"
        textRole: "title"
    }
    ListKeys {
        id: keys
        view: root
        cursor: cursor
        count: root.count
        onMoved: row => root.positionViewAtIndex(row, GridView.Contain)
        columns: root.columns
        rowHeight: root.cellHeight
        onActivated: row => Library.collections.playAlbum(cursor.value(row, "albumId"))
        onMenuAsked: row => root.choose(row)
    }
    ListTabStop {
        id: tabStop
        parent: root
        view: root
    }
    WheelScroller {
        parent: root
        view: root
    }
}
