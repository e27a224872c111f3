// SPDX-License-Identifier: MIT
import QtQuick

// The window in which the toolkit shows its file panel where the desktop has none.
ToolkitWindow {
    id: root

    // From Qt 6.8 on the panel is a window of its own, and this one may have the keys.
    Item {
        focus: true
        Keys.onEscapePressed: root.close()
    }
}
