// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A line of text that is elided where it does not fit, with the whole of it in a tooltip.
Text {
    id: root

    property bool showTip: true

    elide: Text.ElideRight
    maximumLineCount: 1
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    horizontalAlignment: Text.AlignLeft
    font: Theme.row
    color: Theme.primaryText
    Accessible.role: Accessible.StaticText
    Accessible.name: Accessible.ignored ? "" : root.text

    HoverHandler {
        id: hover
        enabled: root.truncated && root.showTip
    }
    Tip {
        shown: hover.hovered
        text: root.text
    }
}
