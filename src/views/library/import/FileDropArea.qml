// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Takes files and folders dragged from elsewhere into the library. Drags of the window's own tracks
// pass it by.
DropArea {
    id: root

    readonly property bool isTargeted: root.containsDrag && root.holdsFiles
    property bool holdsFiles

    onEntered: drag => {
        root.holdsFiles = drag.hasUrls
        drag.accepted = drag.hasUrls
    }
    onDropped: drop => {
        if (!drop.hasUrls)
            return
        Library.importing.importDroppedURLs(drop.urls)
        drop.accept(Qt.CopyAction)
    }
}
