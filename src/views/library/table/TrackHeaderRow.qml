// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The columns' heads, and at their end the button that chooses the columns. A right click on a head
// does the same.
Item {
    id: root

    required property TrackColumns columns

    function choose(): void {
        const chooser = choosing.made() as ColumnChooser
        if (chooser.visible)
            chooser.close()
        else
            chooser.open()
    }

    implicitHeight: 30

    ColumnNames { id: names }

    component Head: SortHead {
        required property var modelData

        text: names.of(modelData.column)
        column: modelData.column
        room: modelData.width - Theme.rowInset
        y: 2
    }

    SortHead {
        x: Theme.rowInset
        y: 2
        visible: root.columns.showsNumber
        text: "#"
        name: Strings.number
        isAtEnd: true
        width: 20
        column: SortBy.Number
    }
    SortHead {
        id: title
        x: root.columns.title
        y: 2
        text: Strings.title
        column: SortBy.Title
    }
    SortHead {
        visible: !root.columns.showsArtist && !root.columns.isAlbum && root.columns.artist.length === 0
        x: title.x + title.width + Theme.gapLarge
        y: 2
        text: Strings.artist
        column: SortBy.Artist
    }
    Repeater {
        model: root.columns.fit.texts
        Head { x: root.columns.end - modelData.fromEnd }
    }
    Repeater {
        model: root.columns.fit.figures
        Head {
            x: root.columns.end - modelData.fromEnd + modelData.width - Theme.gapLarge - width
            isAtEnd: true
        }
    }
    SortHead {
        x: root.columns.stars
        y: 2
        visible: root.columns.hasStarsColumn
        text: Strings.rating
        column: SortBy.Rating
    }
    SortHead {
        x: root.width - Theme.rowInset - width
        y: 2
        visible: root.columns.showsTime
        isAtEnd: true
        text: Strings.time
        column: SortBy.Time
    }
    // In the margin, where no row is.
    SymbolButton {
        id: button
        x: root.width - Theme.gapSmall
        anchors.verticalCenter: parent.verticalCenter
        size: 24
        symbolSize: 16
        corner: Theme.radiusSmall
        symbol: "rectangle.split.3x1"
        tip: Strings.chooseColumns
        opens: true
        isOpen: (choosing.item as ColumnChooser)?.visible ?? false
        fill: isOpen ? Theme.badgeFillStrong : "transparent"
        onClicked: root.choose()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: root.choose()
    }
    Deferred {
        id: choosing
        parent: button
        anchors.fill: parent
        ColumnChooser {
            x: (parent?.width ?? 0) - width // it may go after its parent
            y: (parent?.height ?? 0) + Theme.gapTiny
        }
    }
}
