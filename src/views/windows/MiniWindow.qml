// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    id: root

    color: Theme.windowBackground
    width: view.implicitWidth
    height: view.implicitHeight
    onVisibleChanged: {
        Library.isMiniPlayerOpen = root.visible
        // Closed by its own button: the library comes back, unless it is on its way already.
        if (!root.visible && !Library.showFullPlayer && !Library.isQuitting && !App.isWindowOpen("main"))
            App.openWindow("main")
    }

    MiniPlayerView {
        id: view
        anchors.fill: parent
    }
}
