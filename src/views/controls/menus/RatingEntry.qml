// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A number of stars in a menu.
MenuEntry {
    id: root

    required property int stars

    implicitWidth: 140
    text: ""
    Accessible.name: root.stars

    Text {
        x: root.textLeft
        height: root.height
        verticalAlignment: Text.AlignVCenter
        text: Symbol.glyph("star.fill").repeat(root.stars)
        font.family: Symbol.family
        font.pixelSize: 15
        color: Theme.gold
        Accessible.ignored: true
    }
}
