// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One symbol of the symbol font, centred.
Text {
    id: root

    required property string symbol
    property real size: 20

    text: Symbol.glyph(root.symbol)
    font.family: Symbol.family
    font.pixelSize: root.size
    font.weight: Font.Normal
    color: Theme.secondaryText
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    renderType: Text.QtRendering
    Accessible.ignored: true
}
