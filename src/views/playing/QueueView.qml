// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The play queue. Rows are reordered by dragging, or with Alt and the arrow keys, and removed by
// Delete. Tracks are dropped between them.
ListView {
    id: root

    property var draggedItemID: undefined
    property real dragY: 0 // in the view
    property int currentRow: Library.queue.rowOfCurrent()
    readonly property real currentTop: root.originY + root.currentRow * Theme.queueRowHeight - root.contentY
    readonly property bool isCurrentAbove: root.currentRow >= 0 && root.currentTop + Theme.queueRowHeight <= 0
    readonly property bool isCurrentBelow: root.currentRow >= 0 && root.currentTop >= root.height
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
    function takeUp(id: var): void {
        root.draggedItemID = id
        Library.queueEditing.beginMove(id)
    }
    function drop(): void {
        root.draggedItemID = undefined
        Library.queueEditing.endMove()
    }
    // Moves a row, which the cursor then is on, by one place.
    function moveRow(row: int, step: int): void {
        const target = row + step
        if (row < 0 || target < 0 || target >= root.count)
            return
        cursor.index = row
        Library.queueEditing.beginMove(cursor.value(row, "entryId"))
        Library.queue.move(cursor.value(row, "entryId"), cursor.value(target, "entryId"))
        Library.queueEditing.endMove()
        root.positionViewAtIndex(cursor.index, ListView.Contain)
    }
    // The cursor goes from a row that it is on to the one that takes its place.
    function removeRow(row: int): void {
        const isHere = row === cursor.index
        hand.restart()
        Library.queueEditing.removeEntry(cursor.value(row, "entryId"))
        if (isHere)
            cursor.index = row
    }
    // Before which row something that is held at this height comes.
    function gapAt(y: real): int {
        const gap = Math.round((y + root.contentY - root.originY) / Theme.queueRowHeight)
        return Math.max(0, Math.min(gap, root.count))
    }
    function insertAt(gap: int, paths: list<string>): void {
        hand.restart()
        if (gap < root.count)
            Library.queueEditing.insertBefore(paths, cursor.value(gap, "entryId"))
        else
            Library.queueEditing.addToQueue(paths)
    }

    function openMenu(row: QueueRow, x: real, y: real): void {
        const opened = menu.made() as QueueMenu
        opened.entryId = row.entryId
        opened.path = row.path
        opened.artist = row.artist
        opened.isCurrent = row.isCurrent
        opened.isLoved = row.isLoved
        opened.popup(row, x, y)
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
        } else if (event.key === Qt.Key_Delete && event.modifiers === Qt.NoModifier) {
            root.removeRow(cursor.index)
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
    // What an empty list says stands behind its rows: a heading that goes would leave its room there.
    footer: Column {
        width: root.width
        Loader {
            width: root.width
            active: root.count === 0
            visible: active
            sourceComponent: EmptyPlace {
                symbol: "music.note.list"
                title: Strings.emptyQueue
                message: Strings.emptyQueueHint
                air: Theme.margin
                PillButton {
                    implicitHeight: 36
                    visible: Library.trackCount > 0
                    text: Strings.browseTracks
                    onClicked: Library.browsing.selectSidebarItem(SidebarPlace.Tracks)
                }
            }
        }
        DropHintRow {
            x: root.rowLeft
            width: root.rowWidth
        }
    }
    delegate: QueueRow {
        // Later versions of Qt put rows at x 0 when they lay them out.
        transform: Translate { x: root.rowLeft }
        width: root.rowWidth
        hasKeyboard: root.Window.activeFocusItem === root && index === cursor.index
        showsRing: hasKeyboard && keys.isByKeyboard
        isDragged: root.draggedItemID === entryId
        isPast: index < root.currentRow && !Library.transport.isShuffleEnabled
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
        onRemoveAsked: root.removeRow(index)
        onDragStarted: y => {
            root.dragY = mapToItem(root, 0, y).y
            root.takeUp(entryId)
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
        function onCurrentChanged() {
            root.currentRow = Library.queue.rowOfCurrent()
            root.follow(Theme.panelSlide)
        }
        function onEntriesChanged() { root.currentRow = Library.queue.rowOfCurrent() }
    }
    Component.onCompleted: root.follow(0)

    // Scrolls while the pointer is held at an edge.
    RedrawClock {
        readonly property real edge: 36
        readonly property real speed: root.dragY < edge ? root.dragY - edge
                                    : root.dragY > root.height - edge ? root.dragY - (root.height - edge) : 0
        running: (root.isDragging || taker.containsDrag) && speed !== 0
        onTicked: seconds => {
            scroller.scrollTo(root.contentY + Math.max(-edge, Math.min(edge, speed)) * 12 * seconds)
            if (root.isDragging)
                root.dragOver()
        }
    }
    DropArea {
        id: taker

        readonly property int gap: root.gapAt(taker.drag.y)

        parent: root
        anchors.fill: parent
        keys: ["halvane/tracks"]
        onPositionChanged: drag => root.dragY = drag.y
        onDropped: drop => {
            const drag = drop.source as TrackDrag
            root.insertAt(taker.gap, drag.paths)
            drop.accept()
        }
        Rectangle {
            visible: taker.containsDrag
            x: root.rowLeft
            y: Math.max(0, Math.min(taker.gap * Theme.queueRowHeight + root.originY - root.contentY, root.height) - 1)
            width: root.rowWidth
            height: 2
            radius: 1
            color: Theme.accent
        }
    }
    NowPlayingPill {
        parent: root
        anchors.horizontalCenter: parent.horizontalCenter
        y: root.isCurrentAbove ? Theme.gapSmall : root.height - height - Theme.gapSmall
        isAbove: root.isCurrentAbove
        isOffered: hand.running && !root.isDragging && (root.isCurrentAbove || root.isCurrentBelow)
        onClicked: {
            hand.stop()
            root.follow(Theme.panelSlide)
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
