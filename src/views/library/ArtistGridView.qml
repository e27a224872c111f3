// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The artists. A click shows an artist's tracks, a double click plays them.
GridView {
    id: root

    // A track table stands beneath, so there is no room for what is playing.
    property bool isShared

    readonly property real spacing: 12
    readonly property real available: width - 2 * Theme.margin
    readonly property int columns: Math.max(1, Math.floor((available + spacing) / (230 + spacing)))

    model: Library.browsing.visibleArtists
    leftMargin: Theme.margin
    rightMargin: Theme.margin - spacing
    cellWidth: Math.floor((available + spacing) / columns)
    cellHeight: 74 + spacing
    reuseItems: true
    cacheBuffer: 40
    interactive: false
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    Accessible.focusable: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.List
    Accessible.name: Strings.artists
    Keys.onPressed: event => keys.handle(event)
    Keys.onTabPressed: tabStop.leave(true)
    Keys.onBacktabPressed: tabStop.leave(false)
    Keys.onEscapePressed: event => {
        event.accepted = Library.browsing.focusedArtist.length > 0
        Library.browsing.focusedArtist = ""
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
                text: Strings.artists
                font: Theme.name
                color: Theme.secondaryText
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            PillButton {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: Library.browsing.focusedArtist.length > 0
                symbol: "play.fill"
                text: Strings.playAll
                onClicked: Library.collections.playArtist(Library.browsing.focusedArtist)
            }
        }
        NoResults {
            width: parent.width
            visible: root.count === 0
        }
    }
    delegate: ArtistTile {
        width: root.cellWidth - root.spacing
        height: 74
        isSelected: name === Library.browsing.focusedArtist
        hasKeyboard: root.activeFocus && index === cursor.index
        onChosen: {
            tabStop.take(Qt.MouseFocusReason)
            cursor.index = index
            Library.browsing.focusedArtist = name
        }
        onPlayed: Library.collections.playArtist(name)
    }
    // qmllint enable unqualified

    ListCursor {
        id: cursor
        model: Library.browsing.visibleArtists
        idRole: "name"
        textRole: "name"
    }
    ListKeys {
        id: keys
        view: root
        cursor: cursor
        count: root.count
        onMoved: row => root.positionViewAtIndex(row, GridView.Contain)
        columns: root.columns
        rowHeight: root.cellHeight
        onActivated: row => Library.collections.playArtist(cursor.value(row, "name"))
        onMenuAsked: row => Library.browsing.focusedArtist = cursor.value(row, "name")
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
