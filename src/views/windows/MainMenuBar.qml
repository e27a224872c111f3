// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Window
import Halvane

// The menus of the program's commands. A click, F10 or Alt with a title's first letter opens one;
// while one is open, the pointer or the arrow keys go on to the next.
Row {
    id: root

    property MenuBarTitle current: null // whose menu is open
    property bool showsLetters // while Alt is held; its release goes to whatever has come up
    readonly property bool isQuiet: root.current === null && root.Window.active
    property Item focusBefore: null

    function titleAt(index: int): MenuBarTitle {
        return titles.itemAt(index) as MenuBarTitle
    }
    function open(title: MenuBarTitle): void {
        const before = root.current
        if (before === title)
            return
        if (!before)
            root.focusBefore = root.Window.activeFocusItem
        root.current = title
        if (before)
            before.menu.close()
        title.menu.open()
    }
    // With the keyboard on the first entry that can be chosen.
    function openWithKeys(title: MenuBarTitle): void {
        root.open(title)
        title.menu.goTo(0, 1)
    }
    function openNeighbour(index: int): void {
        root.openWithKeys(root.titleAt((index + titles.count) % titles.count))
    }
    // Gives the keyboard back, unless a command has given it to something else.
    function leave(title: MenuBarTitle): void {
        if (root.current === title)
            root.current = null
        const now = root.Window.activeFocusItem
        if (!root.current && root.focusBefore && (!now || now.Window.contentItem === now))
            root.focusBefore.forceActiveFocus(Qt.PopupFocusReason)
    }

    onIsQuietChanged: root.showsLetters = false
    enabled: visible
    Accessible.role: Accessible.MenuBar

    Repeater {
        id: titles
        model: App.menus

        MenuBarTitle {
            id: title

            required property CommandMenu modelData
            required property int index

            commands: modelData
            showsLetter: root.showsLetters
            onClicked: title.isOpen ? title.menu.close() : root.open(title)
            onNeighbourAsked: step => root.openNeighbour(title.index + step)
            onHoveredChanged: {
                if (title.hovered && root.current)
                    root.open(title)
            }

            Shortcut {
                enabled: root.enabled
                sequence: "Alt+" + title.letter
                onActivated: root.openWithKeys(title)
            }
            Connections {
                target: title.menu
                function onAboutToHide() {
                    if (root.current === title)
                        root.current = null
                }
                function onClosed() { root.leave(title) }
            }
        }
    }
    Shortcut {
        enabled: root.enabled
        sequence: "F10"
        onActivated: root.openWithKeys(root.titleAt(0))
    }
}
