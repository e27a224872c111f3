// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Window
import Halvane

// Lights while what is heard passes full scale, where the device cuts it off.
Item {
    id: root

    readonly property bool isLit: Library.spectrum.clips && Library.transport.isPlaying
    readonly property bool isWatched: visible && Window.window !== null && Window.window.visible
                                      && Window.window.visibility !== Window.Minimized

    implicitWidth: 16
    implicitHeight: 13 // a line of the faders' values
    onIsWatchedChanged: isWatched ? Library.spectrum.beginWatching() : Library.spectrum.endWatching()
    Component.onDestruction: {
        if (isWatched)
            Library.spectrum.endWatching()
    }
    Accessible.role: Accessible.StaticText
    Accessible.name: root.isLit ? Strings.clipping : Strings.notClipping
    Accessible.description: Strings.clippingHint

    Rectangle {
        anchors.centerIn: parent
        width: 8
        height: width
        radius: width / 2
        color: root.isLit ? Theme.warmAccent : Theme.groove
        border.width: root.isLit ? 0 : 1
        border.color: Theme.line
    }
    HoverHandler { id: hover }
    Tip {
        shown: hover.hovered
        text: Strings.clippingHint
    }
}
