// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The play queue. Rows are reordered by dragging, or with Alt and the arrow keys.
ListView {
    id: root

    property var draggedItemID: undefined
    property real dragY: 0 // in the view
    readonly property bool isDragging: draggedItemID !== undefined
    readonly property real rowLeft: Theme.gapLarge
    readonly property real rowWidth: width - 2 * rowLeft

    // Moves the dragged entry to the place under the pointer. The rows themselves may still be on
    // their way.
    function dragOver(): void {
        const y = Math.max(0, Math.min(root.height - 1, root.dragY)) + root.contentY - root.originY
        const row = Math.min(Math.floor(y / Theme.queueRowHeight), root.count - 1)
        const target = cursor.value(row, "entryId")
        if (target !== root.draggedItemID)
            Library.queue.move(root.draggedItemID, target)
    }
    // Shows the current entry below two that have been heard, unless a hand is in the list.
    function follow(duration: int): void {
        const row = Library.queue.rowOfCurrent()
        if (row >= 0 && !root.isDragging && !hand.running)
            scroller.glideTo(root.originY + (row - 2) * Theme.queueRowHeight, duration)
    }
    function drop(): void {
        root.draggedItemID = undefined
        Library.transport.replanSuccessor()
    }
    // Moves a row, which the cursor then is on, by one place.
    function moveRow(row: int, step: int): void {
        const target = row + step
        if (row < 0 || target < 0 || target >= root.count)
            return
        cursor.index = row
        Library.queue.move(cursor.value(row, "entryId"), cursor.value(target, "entryId"))
        Library.transport.replanSuccessor()
        root.positionViewAtIndex(cursor.index, ListView.Contain)
    }

    function openMenu(row: QueueRow, x: real, y: real): void {
        const opened = menu.made() as QueueMenu
        opened.openFor(row, x, y)
    }

    model: Library.queue
    reuseItems: true
    cacheBuffer: 0
    interactive: false
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    Accessible.focusable: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.List
    Accessible.name: Strings.playlist
    Keys.onPressed: event => {
        if (event.modifiers === Qt.AltModifier && (event.key === Qt.Key_Up || event.key === Qt.Key_Down)) {
            root.moveRow(cursor.index, event.key === Qt.Key_Up ? -1 : 1)
            event.accepted = true
        } else
            keys.handle(event)
    }
    Keys.onTabPressed: tabStop.leave(true)
    Keys.onBacktabPressed: tabStop.leave(false)
    T.ScrollBar.vertical: ScrollLine {
        onPressedChanged: hand.restart()
    }

    move: Transition {
        NumberAnimation { properties: "y"; duration: Theme.quick; easing.type: Easing.OutQuad }
    }
    displaced: Transition {
        NumberAnimation { properties: "y"; duration: Theme.quick; easing.type: Easing.OutQuad }
    }
    // qmllint disable unqualified
    footer: DropHintRow {
        x: root.rowLeft
        width: root.rowWidth
    }
    delegate: QueueRow {
        // Later versions of Qt put rows at x 0 when they lay them out.
        transform: Translate { x: root.rowLeft }
        width: root.rowWidth
        hasKeyboard: root.Window.activeFocusItem === root && index === cursor.index
        showsRing: hasKeyboard && keys.isByKeyboard
        isDragged: root.draggedItemID === entryId
        onPressed: {
            hand.restart()
            tabStop.take(Qt.MouseFocusReason)
            cursor.index = index
        }
        onMenuAsked: (x, y) => {
            cursor.index = index
            root.openMenu(this, x, y)
        }
        onMoveUpAsked: root.moveRow(index, -1)
        onMoveDownAsked: root.moveRow(index, 1)
        onDragStarted: y => {
            root.dragY = mapToItem(root, 0, y).y
            root.draggedItemID = entryId
        }
        onDragMoved: y => {
            root.dragY = mapToItem(root, 0, y).y
            root.dragOver()
        }
        onDragEnded: root.drop()
    }
    // qmllint enable unqualified

    // Where the hand has just been, the list stays.
    Timer {
        id: hand
        interval: 8000
        onTriggered: root.follow(Theme.panelSlide)
    }
    Connections {
        target: Library.queue
        function onCurrentChanged() { root.follow(Theme.panelSlide) }
    }
    Component.onCompleted: root.follow(0)

    // Scrolls while the pointer is held at an edge.
    RedrawClock {
        readonly property real edge: 36
        readonly property real speed: root.dragY < edge ? root.dragY - edge
                                    : root.dragY > root.height - edge ? root.dragY - (root.height - edge) : 0
        running: root.isDragging && speed !== 0
        onTicked: seconds => {
            scroller.scrollTo(root.contentY + Math.max(-edge, Math.min(edge, speed)) * 12 * seconds)
            root.dragOver()
        }
    }
    ListCursor {
        id: cursor
        model: Library.queue
        idRole: "entryId"
        textRole: "title"
    }
    ListKeys {
        id: keys
        view: root
        cursor: cursor
        count: root.count
        onMoved: row => {
            hand.restart()
            root.positionViewAtIndex(row, ListView.Contain)
        }
        rowHeight: Theme.queueRowHeight
        onActivated: row => Library.transport.playItem(cursor.value(row, "entryId"), true)
        onMenuAsked: row => {
            const item = root.itemAtIndex(row) as QueueRow
            if (item)
                root.openMenu(item, 40, item.height)
        }
    }
    Deferred {
        id: menu
        QueueMenu {
            // qmllint disable unqualified
            onClosed: {
                if (!Browsing.isNaming)
                    tabStop.take(Qt.PopupFocusReason)
            }
            // qmllint enable unqualified
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
        parent: root
        view: root
        onTurned: hand.restart()
    }
}
