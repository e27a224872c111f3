// SPDX-License-Identifier: MIT
import QtQuick

// Tells when the keyboard's focus comes to something in an area, or moves in it.
QtObject {
    id: root

    required property Item area
    readonly property Item focused: root.area.Window.activeFocusItem

    signal entered

    onFocusedChanged: {
        let above = root.focused
        while (above && above !== root.area)
            above = above.parent
        if (above)
            root.entered()
    }
}
