// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One track.
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
    required property TrackColumns columns
    property bool hasKeyboard
    property bool showsRing
    readonly property bool isAvailable: root.availability === Availability.Available
    readonly property color textColor: !root.isAvailable ? Theme.withAlpha(Theme.tertiaryText, 0.66)
                                     : root.isPlaying ? Theme.accent : Theme.primaryText
    readonly property color sideColor: root.isAvailable ? Theme.secondaryText : root.textColor
    readonly property string hint: root.isAvailable ? Strings.playThisTrack
                                 : root.availability === Availability.InCloud ? Strings.cloudFileHint
                                 : Strings.unavailableFile

    signal pressed
    signal menuAsked(real x, real y)

    function play(): void {
        Library.collections.playTrack(root.trackId)
    }

    implicitHeight: Theme.trackRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: Spoken.titled(root.title, root.artist)
    Accessible.description: root.hint
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    Accessible.selectable: true
    Accessible.selected: root.hasKeyboard
    onPressAsked: root.play()
    onMenuAskedFor: root.menuAsked(root.columns.title, root.height)
    onFocusAsked: root.pressed()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusSmall
        color: root.isPlaying ? Theme.playingFill : hover.hovered ? Theme.hoverWash : "transparent"
    }
    SymbolLabel {
        x: Theme.rowInset
        width: 20
        height: parent.height
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
    PlainText {
        id: titleText
        x: root.columns.title
        width: root.columns.album - x - Theme.gap - (root.isLoved ? Theme.gapSmall + heart.size : 0)
        height: parent.height
        text: root.title
        color: root.textColor
        Accessible.ignored: true
    }
    SymbolLabel {
        id: heart
        x: root.isLoved ? titleText.x + Math.min(titleText.contentWidth, titleText.width) + Theme.gapSmall : 0
        height: parent.height
        visible: root.isLoved
        symbol: "heart.fill"
        size: 14
        color: Theme.accent
    }
    PlainText {
        visible: root.columns.showsAlbum
        x: root.columns.album
        width: root.columns.albumWidth - Theme.rowInset
        height: parent.height
        text: root.album
        color: root.isAvailable ? Theme.primaryText : root.textColor
        Accessible.ignored: true
    }
    PlainText {
        visible: root.columns.showsQuality
        x: root.columns.quality
        width: root.columns.qualityWidth - Theme.gapSmall
        height: parent.height
        text: root.quality
        font: Theme.label
        color: root.isAvailable ? Theme.tertiaryText : root.textColor
        Accessible.ignored: true
    }
    TabularText {
        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        text: root.duration
        font: Theme.row
        color: root.sideColor
        Accessible.ignored: true
    }
    FocusRing {
        shown: root.showsRing
        around: -1
    }

    HoverHandler { id: hover }
    TapHandler {
        id: left
        acceptedButtons: Qt.LeftButton
        onPressedChanged: {
            if (pressed)
                root.pressed()
        }
        // The second of two clicks would pause what the first has begun.
        onTapped: {
            if (left.tapCount === 1)
                root.play()
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => root.menuAsked(point.position.x, point.position.y)
    }
    TrackDrag {
        id: drag
        onBegun: {
            drag.title = root.title
            drag.paths = [root.path]
        }
    }
}
