// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The keys of a list or a grid: arrows, Home, End and the Page keys move the cursor, typed letters
// find, Return acts, the Menu key opens the menu.
QtObject {
    id: root

    required property Flickable view
    required property int count // rows in the view
    required property ListCursor cursor
    property int columns: 1
    property real rowHeight: 1
    property bool isByKeyboard // which put the cursor where it is, and whose ring shows

    signal moved(int row)
    signal activated(int row)
    signal menuAsked(int row)

    function move(row: int): void {
        const last = root.count - 1
        root.cursor.index = Math.max(0, Math.min(last, row))
        root.moved(root.cursor.index)
    }
    // The first row in sight.
    function firstSeen(): int {
        const list = root.view as ListView
        const grid = root.view as GridView
        for (let y = 0; y < root.view.height; y += root.rowHeight / 2) {
            const x = root.view.contentX + root.view.leftMargin + 1
            const row = list ? list.indexAt(x, root.view.contentY + y) : grid.indexAt(x, root.view.contentY + y)
            if (row >= 0)
                return row
        }
        return 0
    }
    // The list has got the keyboard. The Tab key finds a cursor that can be seen; a menu that has
    // closed leaves all as it was.
    function enter(reason: int): void {
        if (reason === Qt.PopupFocusReason)
            return
        root.isByKeyboard = reason !== Qt.MouseFocusReason
        if (root.isByKeyboard && root.count > 0)
            root.move(root.cursor.index < 0 ? root.firstSeen() : root.cursor.index)
    }
    function handle(event: KeyEvent): void {
        const here = root.cursor.index
        const page = Math.max(1, Math.floor(root.view.height / root.rowHeight) - 1) * root.columns
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            return
        event.accepted = true
        root.isByKeyboard = true
        if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier))
            root.menuAsked(here)
        else if (event.key === Qt.Key_Down)
            root.move(here + root.columns)
        else if (event.key === Qt.Key_Up)
            root.move(here < 0 ? 0 : here - root.columns)
        else if (event.key === Qt.Key_Right && root.columns > 1)
            root.move(here + 1)
        else if (event.key === Qt.Key_Left && root.columns > 1)
            root.move(here - 1)
        else if (event.key === Qt.Key_PageDown)
            root.move(here + page)
        else if (event.key === Qt.Key_PageUp)
            root.move(here - page)
        else if (event.key === Qt.Key_Home)
            root.move(0)
        else if (event.key === Qt.Key_End)
            root.move(root.count - 1)
        else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            if (here >= 0)
                root.activated(here)
        } else if (event.text.length > 0 && event.text > " ") {
            root.cursor.type(event.text)
            root.moved(root.cursor.index)
        } else
            event.accepted = false
    }
}
