// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Halvane

// The live spectrum as one smooth shape, dimmed while nothing plays.
Item {
    id: root

    required property bool isPlaying
    required property color tint

    readonly property bool isWatched: visible && Window.window !== null && Window.window.visible
                                      && Window.window.visibility !== Window.Minimized

    implicitHeight: 36
    onIsWatchedChanged: isWatched ? Library.spectrum.beginWatching() : Library.spectrum.endWatching()
    Component.onDestruction: {
        if (isWatched)
            Library.spectrum.endWatching()
    }
    Accessible.ignored: true

    SpectrumCurveItem {
        anchors.fill: parent
        bands: Library.spectrum.bands
        tint: root.tint
        opacity: root.isPlaying ? 1 : 0.35
        Behavior on opacity {
            NumberAnimation { duration: Theme.quick }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.withAlpha(root.tint, root.isPlaying ? 0.8 : 0.25)
    }
}
