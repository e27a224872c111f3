// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// Tiles beneath the library's header, and their keys. As many columns as fit; a tile gets its share
// of the width up to its greatest.
GridView {
    id: root

    required property string title
    required property string idRole // of the model
    required property string textRole
    required property real spacing
    required property real leastTileWidth
    required property real tileHeight
    required property string chosenId // of the chosen tile; empty: none
    // What is drawn over the beginning of the list, and scrolls away with it.
    required property real headroom
    required property Item wheelArea // where the wheel scrolls
    // What the pane of tracks beneath will still take of the height when it opens.
    required property real roomForPane
    required property bool paneIsOpening
    property real greatestTileWidth: Infinity
    required property Component menu // a CollectionMenu
    property int menuRow: -1 // whose menu is open

    readonly property ListCursor cursor: cursor
    readonly property bool isByKeyboard: keys.isByKeyboard
    // The rows have it, and not a button above them.
    readonly property bool hasKeyboard: Window.activeFocusItem === root
    readonly property real available: width - 2 * Theme.margin
    readonly property int columns: Math.max(1, Math.floor((available + spacing) / (leastTileWidth + spacing)))
    readonly property real tileWidth: Math.min(greatestTileWidth, Math.floor((available + spacing) / columns - spacing))

    // A second click may come to the tile that was clicked, and has to meet it: what would cover or
    // move the tile waits until it is too late for one.
    readonly property bool awaitsSecondClick: secondClick.running && root.hidden(cursor.index, root.roomForPane) > 0

    signal activated(int row)
    // The tiles are to be larger by so many steps, or smaller.
    signal resized(int steps)

    // The tile as an Item: Qt 6.8 forgets a QML type that only a function's parameter names.
    function openMenu(tile: Item, row: int, x: real, y: real): void {
        const entries = menus.made() as CollectionMenu
        cursor.index = row
        root.menuRow = row
        entries.collection = cursor.value(row, root.idRole)
        entries.popup(tile, x, y)
    }
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
        const isSizing = event.modifiers & Qt.ControlModifier
        if (isSizing && (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal))
            root.resized(1)
        else if (isSizing && event.key === Qt.Key_Minus)
            root.resized(-1)
        else if (root.hasKeyboard)
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
        Item {
            width: 1
            height: root.headroom
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
        }
        NothingHere {
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
        onMenuAsked: row => {
            const tile = root.itemAtIndex(row) as LibraryTile
            if (tile)
                tile.menuAsked(Theme.gapLarge, Theme.gapLarge)
        }
    }
    Deferred {
        id: menus
        parent: root
        component: root.menu
    }
    Connections {
        target: menus.item as CollectionMenu
        function onClosed() {
            root.menuRow = -1
            if (!Browsing.isNaming)
                tabStop.take(Qt.PopupFocusReason)
        }
    }
    ListTabStop {
        id: tabStop
        parent: root
        view: root
        keys: keys
    }
    WheelScroller {
        id: scroller
        parent: root.wheelArea
        view: root
        acceptedModifiers: Qt.NoModifier
    }
    WheelHandler {
        property real turned: 0 // since the last step

        parent: root
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        acceptedModifiers: Qt.ControlModifier
        onWheel: event => {
            turned += event.angleDelta.y
            const steps = Math.trunc(turned / 120)
            turned -= 120 * steps
            if (steps !== 0)
                root.resized(steps)
        }
    }
}
