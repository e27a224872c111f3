// SPDX-License-Identifier: MIT
import QtQuick

// The place of a list in the order of the Tab key: after what stands above its rows. The list
// itself would come before its own header.
Item {
    id: root

    required property Item view
    required property ListKeys keys
    property bool isTaking

    // Gives the list itself the focus. A list is a focus scope and would give it to what had it
    // last.
    function take(reason: int): void {
        if (root.isTaking)
            return
        root.isTaking = true
        root.focus = true
        root.focus = false
        root.isTaking = false
        root.view.forceActiveFocus(reason)
        root.keys.enter(reason)
    }
    function leave(forward: bool): void {
        const next = nextItemInFocusChain(forward)
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason)
    }

    activeFocusOnTab: true
    Accessible.ignored: true
    onActiveFocusChanged: {
        if (root.activeFocus)
            root.take(Qt.TabFocusReason)
    }
}
