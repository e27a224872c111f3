// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The columns' labels.
Item {
    id: root

    implicitHeight: 30

    component Label: Text {
        y: 6
        font: Theme.captionStrong
        color: Theme.tertiaryText
        Accessible.role: Accessible.ColumnHeader
        Accessible.name: text
    }

    Label {
        x: 40
        text: Strings.title
    }
    Label {
        x: root.width - 10 - 58 - 150 - 200
        text: Strings.album
    }
    Label {
        x: root.width - 10 - 58 - 150
        text: Strings.quality
    }
    Label {
        x: root.width - 10 - width
        text: Strings.time
    }
}
