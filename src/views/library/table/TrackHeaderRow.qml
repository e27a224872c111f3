// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The columns' labels. Where the rows have an order of their own, nothing is sorted by them.
Item {
    id: root

    required property TrackColumns columns
    required property bool isSortable

    implicitHeight: 30

    component Head: Item {
        id: head

        required property string text
        required property int column // of SortBy

        y: 2
        width: root.isSortable ? sorter.width : label.implicitWidth
        height: 24

        Text {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            visible: !root.isSortable
            text: head.text
            font: Theme.captionStrong
            color: Theme.tertiaryText
            Accessible.role: Accessible.ColumnHeader
            Accessible.name: text
        }
        SortHead {
            id: sorter
            visible: root.isSortable
            text: head.text
            column: head.column
        }
    }

    Head {
        id: title
        x: root.columns.title
        text: Strings.title
        column: SortBy.Title
    }
    Head {
        visible: root.isSortable
        x: title.x + title.width + Theme.gapLarge
        text: Strings.artist
        column: SortBy.Artist
    }
    Head {
        visible: root.columns.showsAlbum
        x: root.columns.album
        text: Strings.album
        column: SortBy.Album
    }
    Head {
        visible: root.columns.showsQuality
        x: root.columns.quality
        text: Strings.quality
        column: SortBy.Quality
    }
    Head {
        x: root.width - Theme.rowInset - width
        text: Strings.time
        column: SortBy.Time
    }
}
