// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Halvane

// The places of the library and the playlists.
Rectangle {
    id: root

    readonly property real gap: 14 // between its parts
    property string typed // within the last second

    // Goes to the next row that begins with what was typed; the same letter again goes on.
    function find(from: Item, text: string): void {
        const goesOn = root.typed.length === 0 || root.typed === text
        root.typed = root.typed === text ? text : root.typed + text
        pause.restart()
        const words = root.typed.toLowerCase()
        let item = from
        for (let step = 0; step < 1000 && item; ++step) {
            const row = item as SidebarRow
            if (row && (step > 0 || !goesOn) && row.text.toLowerCase().startsWith(words)) {
                row.forceActiveFocus(Qt.TabFocusReason)
                return
            }
            item = item.nextItemInFocusChain(true)
            if (item === from)
                return
        }
    }

    color: Theme.sidebarVeil

    AppIdentityView {
        id: identity
        x: 18
        y: root.gap
        width: parent.width - x - Theme.gap
    }
    Flickable {
        id: scroll
        anchors.top: identity.bottom
        anchors.topMargin: root.gap
        anchors.bottom: parent.bottom
        width: parent.width
        contentHeight: sections.height + Theme.gapLarge
        boundsBehavior: Flickable.StopAtBounds
        interactive: false
        clip: true
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: sections
            x: Theme.gap
            width: parent.width - 2 * x
            spacing: root.gap
            Keys.onPressed: event => {
                const isPlain = !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
                event.accepted = isPlain && event.text > " " && event.key !== Qt.Key_Delete
                if (event.accepted)
                    root.find(Window.activeFocusItem, event.text)
            }

            Column {
                width: parent.width
                SidebarHeader {
                    width: parent.width
                    text: Strings.browse
                }
                Repeater {
                    model: Library.sidebar
                    SidebarSection { width: parent.width }
                }
                LiveListsSection { width: parent.width }
            }
            PlaylistsSection { width: parent.width }
        }
    }
    Timer {
        id: pause
        interval: 1000
        onTriggered: root.typed = ""
    }
    WheelScroller {
        parent: scroll
        view: scroll
    }
}
