// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The heading of a secondary window.
Item {
    id: root

    required property string title
    property string detail

    implicitHeight: 56

    Row {
        x: 20
        y: 18
        spacing: 10
        Text {
            id: words
            text: root.title
            font: Theme.cardTitle
            color: Theme.primaryText
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        Text {
            anchors.baseline: words.baseline
            visible: root.detail.length > 0
            text: root.detail
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            font: Theme.badge
            color: Theme.tertiaryText
        }
    }
}
