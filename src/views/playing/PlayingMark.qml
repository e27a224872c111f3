// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Window
import Halvane

// Four bars on what plays. They move with the sound, when the spectrum's picture does and never
// apart from it, and stand still while it pauses, where nobody sees them and where the desktop asks
// for little motion.
Rectangle {
    id: root

    readonly property var standing: [0.45, 0.9, 0.6, 0.75]
    readonly property bool isMoving: visible && Library.transport.isPlaying && !Theme.isMotionReduced
                                     && Window.window !== null && Window.window.visible
                                     && Window.window.visibility !== Window.Minimized
    readonly property list<real> bands: root.isMoving ? Library.spectrum.bands : []
    readonly property real bandsPerBar: 12
    readonly property real highest: 16

    // The loudest of the bands that a bar stands for.
    function level(bar: int): real {
        if (root.bands.length === 0)
            return root.standing[bar]
        let loudest = 0.15
        for (let band = bar * root.bandsPerBar; band < (bar + 1) * root.bandsPerBar; ++band)
            loudest = Math.max(loudest, root.bands[band])
        return Math.min(1, loudest)
    }

    width: 38
    height: 28
    radius: height / 2
    color: Qt.rgba(0, 0, 0, 0.72)
    onIsMovingChanged: isMoving ? Library.spectrum.beginWatching() : Library.spectrum.endWatching()
    Component.onDestruction: {
        if (root.isMoving)
            Library.spectrum.endWatching()
    }
    Accessible.ignored: true

    Row {
        x: 10
        height: parent.height
        spacing: 2
        Repeater {
            model: 4
            Rectangle {
                required property int index

                y: 22 - height
                width: 3
                height: Math.round(root.highest * root.level(index))
                radius: 1
                color: Theme.accent
            }
        }
    }
}
