// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// Tiles beneath the library's header, which scrolls away with them, and their keys. As many columns
// as fit; a tile gets its share of the width up to its greatest.
GridView {
    id: root

    required property string title
    required property string idRole // of the model
    required property string textRole
    required property real spacing
    required property real leastTileWidth
    required property real tileHeight
    required property string playText
    required property bool canPlay // something is chosen
    property real greatestTileWidth: Infinity
    // A track table stands beneath, so there is no room for what is playing.
    property bool isShared

    readonly property ListCursor cursor: cursor
    readonly property bool isByKeyboard: keys.isByKeyboard
    // The rows have it, and not a button that scrolls with them.
    readonly property bool hasKeyboard: Window.activeFocusItem === root
    readonly property real available: width - 2 * Theme.margin
    readonly property int columns: Math.max(1, Math.floor((available + spacing) / (leastTileWidth + spacing)))
    readonly property real tileWidth: Math.min(greatestTileWidth, Math.floor((available + spacing) / columns - spacing))

    signal playAsked
    signal activated(int row)
    signal menuAsked(int row)

    // Puts the cursor on a row that was pressed.
    function take(row: int): void {
        tabStop.take(Qt.MouseFocusReason)
        cursor.index = row
    }

    leftMargin: Theme.margin
    rightMargin: Theme.margin - spacing
    cellWidth: tileWidth + spacing
    cellHeight: tileHeight + spacing
    reuseItems: true
    interactive: false
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    Accessible.focusable: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.List
    Accessible.name: root.title
    Keys.onPressed: event => {
        if (root.hasKeyboard)
            keys.handle(event)
    }
    Keys.onTabPressed: tabStop.leave(true)
    Keys.onBacktabPressed: tabStop.leave(false)
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
                text: root.title
                font: Theme.name
                color: Theme.secondaryText
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            PillButton {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: root.canPlay
                symbol: "play.fill"
                text: root.playText
                onClicked: root.playAsked()
            }
        }
        NoResults {
            width: parent.width
            visible: root.count === 0
        }
    }
    // qmllint enable unqualified

    ListCursor {
        id: cursor
        model: root.model
        idRole: root.idRole
        textRole: root.textRole
    }
    ListKeys {
        id: keys
        view: root
        cursor: cursor
        count: root.count
        columns: root.columns
        rowHeight: root.cellHeight
        onMoved: row => root.positionViewAtIndex(row, GridView.Contain)
        onActivated: row => root.activated(row)
        onMenuAsked: row => root.menuAsked(row)
    }
    ListTabStop {
        id: tabStop
        parent: root
        view: root
        keys: keys
    }
    WheelScroller {
        parent: root
        view: root
    }
}
