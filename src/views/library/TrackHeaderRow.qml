// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The columns' labels.
Item {
    id: root

    required property TrackColumns columns

    implicitHeight: 30

    component Label: Text {
        y: 6
        font: Theme.captionStrong
        color: Theme.tertiaryText
        Accessible.role: Accessible.ColumnHeader
        Accessible.name: text
    }

    Label {
        x: root.columns.title
        text: Strings.title
    }
    Label {
        visible: root.columns.showsAlbum
        x: root.columns.album
        text: Strings.album
    }
    Label {
        visible: root.columns.showsQuality
        x: root.columns.quality
        text: Strings.quality
    }
    Label {
        x: root.width - Theme.rowInset - width
        text: Strings.time
    }
}
