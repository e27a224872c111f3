// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A line that fills while an import runs. Its place stays free, so that nothing moves when it comes.
Rectangle {
    id: root

    readonly property real progress: Library.importing.importProgress

    visible: root.progress >= 0
    implicitHeight: 3
    radius: height / 2
    color: Theme.groove
    Accessible.role: Accessible.ProgressBar
    Accessible.name: Strings.importMusicFolder
    Accessible.description: Math.round(root.progress * 100) + " %"

    Rectangle {
        width: parent.width * Math.max(0, Math.min(1, root.progress))
        height: parent.height
        radius: parent.radius
        color: Theme.accent
    }
}
