// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    id: root

    color: Theme.windowBackground
    width: view.implicitWidth
    height: view.implicitHeight
    onVisibleChanged: {
        Library.views.isMiniPlayerOpen = root.visible
        // Closed by its own button: the library comes back, unless it is on its way already.
        if (!root.visible && !Library.views.showFullPlayer && !Library.views.isQuitting && !App.isWindowOpen("main"))
            App.openWindow("main")
    }

    MiniPlayerView {
        id: view
        anchors.fill: parent
    }
}
