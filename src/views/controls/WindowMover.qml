// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window

// A background that moves its window. The move begins once the pointer has passed the drag
// threshold, so that a double click still arrives.
Item {
    id: root

    signal doubleTapped

    DragHandler {
        target: null
        acceptedButtons: Qt.LeftButton
        onActiveChanged: {
            if (active)
                root.Window.window.startSystemMove()
        }
    }
    TapHandler {
        acceptedButtons: Qt.LeftButton
        onDoubleTapped: root.doubleTapped()
    }
}
