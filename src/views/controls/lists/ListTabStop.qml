// SPDX-License-Identifier: MIT
import QtQuick

// Where the Tab key comes to a list: after what stands above its rows, as the eye does. A list in the
// chain itself would come before its own header.
Item {
    id: root

    required property Item view
    property bool isTaking

    // Gives the list itself the focus. A list is a focus scope, in which what last had the focus
    // would get it again.
    function take(reason: int): void {
        if (root.isTaking)
            return
        root.isTaking = true
        root.focus = true
        root.focus = false
        root.isTaking = false
        root.view.forceActiveFocus(reason)
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
