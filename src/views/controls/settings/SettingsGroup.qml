// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Settings that belong together, under a heading.
Column {
    id: root

    required property string title
    default property alias lines: body.data

    x: 18
    width: parent ? parent.width - 2 * x : 0
    spacing: Theme.gapSmall

    Text {
        text: root.title
        font: Theme.captionStrong
        color: Theme.tertiaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Column {
        id: body
        width: parent.width
        spacing: Theme.gapSmall
    }
}
