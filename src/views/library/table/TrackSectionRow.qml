// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Above the tracks of one disc, or of an album on which an artist is a guest. Takes no room without
// a text.
Item {
    id: root

    required property real indent
    required property string text

    height: root.text.length > 0 ? 26 : 0
    visible: root.text.length > 0

    PlainText {
        id: label
        x: root.indent
        width: Math.min(implicitWidth, root.width - x)
        height: root.height
        text: root.text
        font: Theme.captionStrong
        color: Theme.tertiaryText
    }
    Rectangle {
        x: label.x + label.width + Theme.gap
        y: root.height / 2
        width: Math.max(0, root.width - x - Theme.rowInset)
        height: 1
        color: Theme.hairline
    }
}
