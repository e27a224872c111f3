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
    required property string chosenId // of the chosen tile; empty: none
    // What the pane of tracks beneath will still take of the height when it opens.
    required property real roomForPane
    required property bool paneIsOpening
    property real greatestTileWidth: Infinity

    readonly property ListCursor cursor: cursor
    readonly property bool isByKeyboard: keys.isByKeyboard
    // The rows have it, and not a button that scrolls with them.
    readonly property bool hasKeyboard: Window.activeFocusItem === root
    readonly property real available: width - 2 * Theme.margin
    readonly property int columns: Math.max(1, Math.floor((available + spacing) / (leastTileWidth + spacing)))
    readonly property real tileWidth: Math.min(greatestTileWidth, Math.floor((available + spacing) / columns - spacing))

    // A second click may come to the tile that was clicked, and has to meet it: what would cover or
    // move the tile waits until it is too late for one.
    readonly property bool awaitsSecondClick: secondClick.running && root.hidden(cursor.index, root.roomForPane) > 0

    signal activated(int row)
    signal menuAsked(int row)

    // Puts the cursor on a row that was pressed.
    function take(row: int): void {
        tabStop.take(Qt.MouseFocusReason)
        cursor.index = row
        secondClick.restart()
    }
    // How much of a tile would lie below the view, if that were shorter.
    function hidden(row: int, shorter: real): real {
        const tile = root.itemAtIndex(row)
        return tile ? tile.y + tile.height + Theme.gapSmall - (root.contentY + root.height - shorter) : 0
    }
    // How far to scroll so that a tile is whole; its top has precedence.
    function wayTo(row: int): real {
        const tile = root.itemAtIndex(row)
        return tile ? Math.min(root.hidden(row, 0), tile.y - Theme.gapSmall - root.contentY) : 0
    }
    function toBeginning(): void {
        scroller.stop()
        if (root.count > 0)
            root.positionViewAtBeginning()
        else // which only knows rows
            scroller.scrollTo(root.originY - root.topMargin)
    }
    function reveal(): void {
        scroller.stop()
        const row = cursor.rowWith(root.idRole, root.chosenId)
        if (row < 0)
            return
        cursor.index = row
        root.positionViewAtIndex(row, GridView.Contain)
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
    // The pane pushes the chosen tile up before it as it opens.
    onHeightChanged: {
        const covered = root.paneIsOpening ? root.wayTo(cursor.index) : 0
        if (covered > 0)
            scroller.scrollTo(root.contentY + covered)
    }

    // qmllint disable unqualified
    header: Column {
        width: root.available
        bottomPadding: 10
        LibraryHeader { width: root.available }
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
        }
        NoResults {
            width: parent.width
            visible: root.count === 0
        }
    }
    // qmllint enable unqualified

    Timer {
        id: secondClick
        interval: Application.styleHints.mouseDoubleClickInterval
        onTriggered: {
            const covered = root.wayTo(cursor.index)
            if (covered > 0)
                scroller.glideTo(root.contentY + covered, Theme.paneSlide)
        }
    }
    Connections {
        target: Library.browsing
        function onJumped() { root.reveal() }
        function onTurnedTo() { root.toBeginning() }
    }
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
        id: scroller
        parent: root
        view: root
    }
}
