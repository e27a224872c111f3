// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A line that fills while an import runs, and wanders while it still searches. Its place stays free,
// so that nothing moves when it comes.
Rectangle {
    id: root

    readonly property real progress: Library.importing.importProgress
    readonly property bool isSearching: Library.importing.isImporting && root.progress < 0

    visible: Library.importing.isImporting
    implicitHeight: 3
    radius: height / 2
    color: Theme.groove
    Accessible.role: Accessible.ProgressBar
    Accessible.name: Strings.importMusicFolder
    Accessible.description: root.isSearching ? Strings.importSearching : Math.round(root.progress * 100) + " %"

    Rectangle {
        id: part
        x: root.isSearching ? part.wandered * (root.width - part.width) : 0
        width: root.width * (root.isSearching ? 0.2 : Math.max(0, Math.min(1, root.progress)))
        height: parent.height
        radius: parent.radius
        color: Theme.accent

        property real wandered

        SequentialAnimation on wandered {
            running: root.isSearching && root.visible
            loops: Animation.Infinite
            NumberAnimation { from: 0; to: 1; duration: 900; easing.type: Easing.InOutQuad }
            NumberAnimation { from: 1; to: 0; duration: 900; easing.type: Easing.InOutQuad }
        }
    }
}
