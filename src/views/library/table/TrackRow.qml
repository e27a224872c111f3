// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One track, beneath a heading where it is the first of a part of the list. The list's own headings
// are not used: it takes one that has left for the one that comes, and leaves the text as it was.
Operable {
    id: root

    required property int index
    required property var trackId
    required property string title
    required property string artist
    required property string album
    required property string quality
    required property string duration
    required property string path
    required property bool isLoved
    required property int rating
    required property int availability
    required property bool isPlaying
    required property int trackNumber
    required property string leadArtist
    required property string genre
    required property string year
    required property string plays
    required property string added
    required property TrackColumns columns
    required property string heading
    property bool hasKeyboard
    property bool showsRing
    property bool hasMenu // open
    property bool isSelected // with others
    readonly property bool isAvailable: root.availability === Availability.Available
    readonly property color textColor: !root.isAvailable ? Theme.withAlpha(Theme.tertiaryText, 0.66)
                                     : root.isPlaying ? Theme.accent : Theme.primaryText
    readonly property color sideColor: root.isAvailable ? Theme.secondaryText : root.textColor
    readonly property bool showsNumber: root.columns.showsNumber && root.trackNumber > 0 && root.isAvailable
                                        && !root.isPlaying && !hover.hovered
    // Whom the rows need not name.
    readonly property string impliedArtist: root.columns.isAlbum ? root.leadArtist : root.columns.artist
    readonly property string hint: root.isAvailable ? Strings.playThisTrack
                                 : root.availability === Availability.InCloud ? Strings.cloudFileHint
                                 : Strings.unavailableFile

    signal pressed
    signal clicked // and played
    signal selectAsked(int modifiers) // by Shift or Ctrl
    signal menuAsked(real x, real y)
    signal carried(TrackDrag drag)

    function textOf(column: int): string {
        switch (column) {
        case SortBy.Artist: return root.artist
        case SortBy.Album: return root.album
        case SortBy.Genre: return root.genre
        case SortBy.Year: return root.year
        case SortBy.Plays: return root.plays
        case SortBy.Added: return root.added
        case SortBy.Path: return root.path
        default: return root.quality
        }
    }
    function play(): void {
        Library.collections.playInTable(root.trackId)
    }

    implicitHeight: row.y + row.height
    Accessible.role: Accessible.ListItem
    Accessible.name: Spoken.titled(root.title, root.artist)
    Accessible.description: root.hint
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    Accessible.selectable: true
    Accessible.selected: root.isSelected || root.hasKeyboard
    onPressAsked: root.play()
    onMenuAskedFor: root.menuAsked(root.columns.title, root.height)
    onFocusAsked: root.pressed()

    TrackSectionRow {
        id: section
        width: root.width
        indent: root.columns.title
        text: root.heading
    }
    Item {
        id: row
        y: section.height
        width: root.width
        height: Theme.trackRowHeight

        Rectangle {
            anchors.fill: parent
            radius: Theme.radiusSmall
            color: root.isSelected ? Theme.selectionFill : root.isPlaying ? Theme.playingFill : hover.hovered || root.hasMenu ? Theme.hoverWash : "transparent"
            border.width: root.hasMenu ? 1.5 : 0
            border.color: Theme.accent
        }
        SymbolLabel {
            x: Theme.rowInset
            width: 20
            height: parent.height
            visible: !root.showsNumber
            size: 19
            symbol: root.availability === Availability.InCloud ? "icloud.and.arrow.down"
                  : root.availability === Availability.Missing ? "exclamationmark.circle"
                  : root.isPlaying && Library.transport.isPlaying ? "pause.circle.fill" : "play.circle"
            color: root.availability === Availability.InCloud ? Theme.cloudBlue
                 : root.isPlaying && root.isAvailable ? Theme.accent : Theme.tertiaryText

            HoverHandler { id: statusHover }
            Tip {
                shown: statusHover.hovered
                text: root.hint
            }
        }
        TabularText {
            x: Theme.rowInset + 20 - width
            anchors.verticalCenter: parent.verticalCenter
            visible: root.showsNumber
            text: root.showsNumber ? root.trackNumber : ""
            font: Theme.row
            color: Theme.tertiaryText
            Accessible.ignored: true
        }
        PlainText {
            id: titleText
            x: root.columns.title
            width: root.columns.titleWidth
            height: parent.height
            text: root.title
            color: root.textColor
            Accessible.ignored: true
        }
        PlainText {
            id: artistText
            x: titleText.x + Math.min(titleText.contentWidth, titleText.width) + Theme.gap
            width: root.columns.title + root.columns.titleWidth - x
            height: parent.height
            visible: !root.columns.showsArtist && root.artist !== root.impliedArtist && width > 40
            text: visible ? root.artist : ""
            font: Theme.label
            color: root.isAvailable ? Theme.tertiaryText : root.textColor
            Accessible.ignored: true
        }
        Text {
            visible: root.columns.showsStars && root.rating > 0 && !hover.hovered
            x: root.columns.stars + 0.5 // as in a button that is wider by a pixel
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            text: visible ? Symbol.glyph("star.fill").repeat(root.rating) : ""
            font.family: Symbol.family
            font.pixelSize: root.columns.starSize
            font.letterSpacing: root.columns.starWidth - root.columns.starSize
            color: Theme.gold
            Accessible.ignored: true
        }
        SymbolLabel {
            x: root.columns.heart
            width: root.columns.heartWidth
            height: parent.height
            visible: root.isLoved && !hover.hovered
            symbol: "heart.fill"
            size: 16
            color: Theme.accent
        }
        // qmllint disable unqualified
        Repeater {
            model: root.columns.fit.texts
            PlainText {
                required property var modelData
                readonly property bool isName: modelData.column === SortBy.Album || modelData.column === SortBy.Artist

                x: root.columns.end - modelData.fromEnd
                width: modelData.width - Theme.rowInset
                height: parent.height
                text: root.textOf(modelData.column)
                elide: modelData.column === SortBy.Path ? Text.ElideMiddle : Text.ElideRight
                font: isName ? Theme.row : Theme.label
                color: !root.isAvailable ? root.textColor : isName ? Theme.primaryText : Theme.tertiaryText
                Accessible.ignored: true
            }
        }
        Repeater {
            model: root.columns.fit.figures
            TabularText {
                required property var modelData

                x: root.columns.end - modelData.fromEnd + modelData.width - Theme.gapLarge - width
                anchors.verticalCenter: parent.verticalCenter
                text: root.textOf(modelData.column)
                font: Theme.label
                color: root.sideColor
                Accessible.ignored: true
            }
        }
        // qmllint enable unqualified
        TabularText {
            anchors.right: parent.right
            anchors.rightMargin: Theme.rowInset
            anchors.verticalCenter: parent.verticalCenter
            visible: root.columns.showsTime
            text: root.duration
            font: Theme.row
            color: root.sideColor
            Accessible.ignored: true
        }
        // qmllint disable unqualified
        Loader {
            width: parent.width
            height: parent.height
            active: hover.hovered
            sourceComponent: TrackMarks {
                columns: root.columns
                path: root.path
                isLoved: root.isLoved
                rating: root.rating
            }
        }
        // qmllint enable unqualified
        FocusRing {
            shown: root.showsRing
            around: -1
        }

        HoverHandler { id: hover }
        TapHandler {
            id: left
            acceptedButtons: Qt.LeftButton
            acceptedModifiers: Qt.NoModifier
            onPressedChanged: {
                if (pressed)
                    root.pressed()
            }
            // The second of two clicks would pause what the first has begun.
            onTapped: {
                if (left.tapCount > 1)
                    return
                root.clicked()
                root.play()
            }
        }
        TapHandler {
            acceptedButtons: Qt.LeftButton
            acceptedModifiers: Qt.ControlModifier
            onTapped: root.selectAsked(Qt.ControlModifier)
        }
        TapHandler {
            acceptedButtons: Qt.LeftButton
            acceptedModifiers: Qt.ShiftModifier
            onTapped: root.selectAsked(Qt.ShiftModifier)
        }
        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: point => root.menuAsked(point.position.x, row.y + point.position.y)
        }
        TrackDrag {
            id: drag
            onBegun: root.carried(drag)
        }
    }
}
