// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// The tracks. Return or a click plays one; the Menu key or a right click opens its menu; a track can
// be dragged onto a playlist and into the queue. Shift, Ctrl and "Select All" choose several, and the
// menu and a drag then are of all of them. The heads stay while the rows scroll.
FocusScope {
    id: root

    // Beneath a grid, showing one album's or artist's tracks only.
    property bool isNarrowed
    // What is drawn over the beginning of the rows, and scrolls away with them.
    property real headroom
    property Item wheelArea: root // where the wheel scrolls
    property alias list: list
    readonly property real collapsing: root.isNarrowed ? paneHeading.height : root.headroom
    readonly property real way: root.isPlaced ? Math.max(0, Math.min(root.collapsing, list.contentY - list.originY)) : 0
    property bool isPlaced // the rows, after what stands above them has got its height
    // The rows have it, and not a button above them.
    readonly property bool hasKeyboard: Window.activeFocusItem === list
    readonly property real available: width - 2 * Theme.margin
    readonly property bool isAlbum: root.isNarrowed && Library.browsing.hasFocusedAlbum
    readonly property int discCount: root.isAlbum ? Library.browsing.focusedAlbum.discCount : 0
    readonly property bool isArtist: root.isNarrowed && Library.browsing.mode === BrowseMode.Artists
    readonly property TrackColumns columns: TrackColumns {
        width: root.available
        isAlbum: root.isAlbum
        isNumbered: root.discCount > 0
        artist: root.isArtist ? Library.browsing.focusedArtist : ""
    }

    // Above the tracks of a disc, or of an album on which the artist is a guest.
    function headingOf(section: string): string {
        if (root.discCount > 1)
            return Strings.sentences.discHeading(parseInt(section))
        return section === Library.browsing.focusedArtist ? "" : Strings.appearsOn + ": " + section
    }
    function toBeginning(): void {
        scroller.stop()
        if (list.count > 0)
            list.positionViewAtBeginning()
        else // which only knows rows
            scroller.scrollTo(list.originY - list.topMargin)
    }
    // An album's heading may be higher than what was there. Rows that were gone to stay where they are.
    function place(): void {
        if (list.contentY <= Math.max(0, list.originY))
            root.toBeginning()
        root.isPlaced = true
    }
    function reveal(): void {
        scroller.stop()
        const row = cursor.rowWith("path", Library.player.currentTrack.path)
        if (row < 0)
            return
        cursor.index = row
        list.positionViewAtIndex(row, ListView.Center)
    }

    // What a menu or a drag that begins at a row is of.
    function pathsAt(row: TrackRow): list<string> {
        if (row.isSelected)
            return selection.texts("path")
        selection.clear()
        return [row.path]
    }
    function openMenu(row: TrackRow, x: real, y: real): void {
        menu.trackId = row.trackId
        menu.paths = root.pathsAt(row)
        menu.isPlaying = menu.isOfOne && row.isPlaying && Library.transport.isPlaying
        menu.isLoved = row.isLoved
        menu.rating = row.rating
        menu.popup(row, x, y)
    }
    function select(row: int, modifiers: int): void {
        const from = cursor.index
        tabStop.take(Qt.MouseFocusReason)
        cursor.index = row
        if (modifiers === Qt.ControlModifier)
            selection.toggle(row)
        else
            selection.extend(from < 0 ? row : from, row)
    }
    function handleKey(event: KeyEvent): void {
        if (event.key === Qt.Key_A && event.modifiers === Qt.ControlModifier) {
            selection.chooseAll()
            event.accepted = true
            return
        }
        if (event.key === Qt.Key_Space && event.modifiers === Qt.ControlModifier) {
            selection.toggle(cursor.index)
            event.accepted = true
            return
        }
        const from = cursor.index
        keys.handle(event)
        if (cursor.index === from)
            return
        if (event.modifiers & Qt.ShiftModifier && event.text.length === 0)
            selection.extend(from < 0 ? cursor.index : from, cursor.index)
        else
            selection.clear()
    }

    clip: true
    Keys.onEscapePressed: event => {
        event.accepted = root.isNarrowed || selection.count > 0
        if (selection.count > 0)
            return selection.clear()
        if (!root.isNarrowed)
            return
        Browsing.showsAlbumTracks = false
        if (Library.browsing.mode === BrowseMode.Artists)
            Library.browsing.focusedArtist = ""
    }

    Loader {
        id: paneHeading
        x: Theme.margin
        y: -root.way
        width: root.available
        active: root.isNarrowed
        visible: root.way < height
        sourceComponent: root.isAlbum ? albumHeading : heading
    }
    FocusWatch {
        area: paneHeading
        onEntered: {
            if (root.way > 0)
                root.toBeginning()
        }
    }
    Column {
        id: staying
        x: Theme.margin
        y: root.collapsing - root.way
        width: root.available
        Loader {
            width: parent.width
            active: !root.isNarrowed
            visible: active
            sourceComponent: heading
        }
        TrackHeaderRow {
            width: parent.width
            columns: root.columns
            visible: list.count > 0
        }
    }
    ListView {
        id: list
        focus: true
        y: staying.height
        width: root.width
        height: root.height - y
        model: Library.browsing.visibleTracks
        reuseItems: true
        cacheBuffer: 0
        interactive: false
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        Accessible.focusable: true
        currentIndex: -1
        highlightFollowsCurrentItem: false
        Accessible.role: Accessible.Table
        Accessible.name: Strings.tracks
        Keys.onPressed: event => {
            if (root.hasKeyboard)
                root.handleKey(event)
        }
        Keys.onTabPressed: tabStop.leave(true)
        Keys.onBacktabPressed: tabStop.leave(false)
        T.ScrollBar.vertical: ScrollLine {}

        // qmllint disable unqualified
        header: Column {
            width: root.available
            onHeightChanged: Qt.callLater(root.place)
            Item {
                width: 1
                height: root.collapsing
            }
            NothingHere {
                x: Theme.margin
                width: parent.width
                visible: list.count === 0
            }
        }
        footer: Item { height: Theme.gapLarge }
        section.property: root.discCount > 1 ? "discNumber" : root.isArtist ? "leadArtist" : ""
        delegate: TrackRow {
            // Later versions of Qt put rows at x 0 when they lay them out.
            transform: Translate { x: Theme.margin }
            width: root.available
            columns: root.columns
            heading: ListView.section !== ListView.previousSection ? root.headingOf(ListView.section) : ""
            hasKeyboard: root.hasKeyboard && index === cursor.index
            showsRing: hasKeyboard && keys.isByKeyboard
            hasMenu: menu.visible && menu.path === path
            isSelected: selection.revision > 0 && selection.contains(trackId)
            onSelectAsked: modifiers => root.select(index, modifiers)
            onCarried: drag => {
                drag.paths = root.pathsAt(this)
                drag.title = drag.paths.length > 1 ? Strings.sentences.selectedCount(drag.paths.length) : title
            }
            onClicked: selection.clear()
            onPressed: {
                tabStop.take(Qt.MouseFocusReason)
                cursor.index = index
            }
            onMenuAsked: (x, y) => {
                cursor.index = index
                root.openMenu(this, x, y)
            }
        }
        // qmllint enable unqualified
    }
    // qmllint disable unqualified
    Component {
        id: albumHeading
        AlbumPaneHeader {
            rowCount: list.count
            selectedCount: selection.count
        }
    }
    Component {
        id: heading
        TrackTableHeading {
            isNarrowed: root.isNarrowed
            rowCount: list.count
            selectedCount: selection.count
        }
    }
    // qmllint enable unqualified
    Rectangle {
        visible: root.isNarrowed
        width: root.width
        height: 1
        color: Theme.hairline
    }
    Connections {
        target: Library.browsing
        function onJumped() { root.reveal() }
        function onTurnedTo() { root.toBeginning() }
    }
    Connections {
        target: Library.browsing
        enabled: root.isNarrowed
        function onFocusedAlbumChanged() { root.toBeginning() }
        function onFocusedArtistChanged() { root.toBeginning() }
    }
    ListCursor {
        id: cursor
        model: Library.browsing.visibleTracks
        idRole: "trackId"
        textRole: "title"
    }
    ListSelection {
        id: selection
        model: Library.browsing.visibleTracks
        idRole: "trackId"
    }
    ListKeys {
        id: keys
        view: list
        cursor: cursor
        count: list.count
        onMoved: row => list.positionViewAtIndex(row, ListView.Contain)
        rowHeight: Theme.trackRowHeight
        onActivated: row => Library.collections.playInTable(cursor.value(row, "trackId"))
        onMenuAsked: row => {
            const item = list.itemAtIndex(row) as TrackRow
            if (item)
                root.openMenu(item, root.columns.title, item.height)
        }
    }
    TrackMenu {
        id: menu
        onClosed: {
            if (!Browsing.isNaming)
                tabStop.take(Qt.PopupFocusReason)
        }
    }
    ListTabStop {
        id: tabStop
        view: list
        keys: keys
    }
    WheelScroller {
        id: scroller
        parent: root.wheelArea
        view: list
    }
}
