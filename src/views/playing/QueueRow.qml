// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One entry of the queue.
Operable {
    id: root

    required property int index
    required property var entryId
    required property string title
    required property string artist
    required property string duration
    required property string path
    required property string coverKey
    required property bool isCurrent
    required property bool isLoved
    required property int availability
    property bool hasKeyboard
    property bool showsRing
    property bool isDragged
    property bool isPast
    readonly property bool isAvailable: root.availability === Availability.Available
    readonly property real inset: Theme.gapSmall
    readonly property real textLeft: cover.x + cover.width + Theme.rowInset
    readonly property real sideWidth: Math.max(root.removalSize, root.showsMark ? mark.width : time.width)
    readonly property real textWidth: width - textLeft - Theme.gap - sideWidth - inset
    readonly property real removalSize: 28
    readonly property bool showsMark: root.isCurrent || !root.isAvailable
    readonly property bool offersRemoval: hover.hovered && !root.isDragged

    signal pressed
    signal menuAsked(real x, real y)
    signal dragStarted(real y)
    signal dragMoved(real y)
    signal dragEnded

    function play(): void {
        Library.transport.playItem(root.entryId, true)
    }

    implicitHeight: Theme.queueRowHeight
    z: root.isDragged ? 2 : 1
    Accessible.role: Accessible.ListItem
    Accessible.name: Spoken.titled(root.title, root.artist)
    Accessible.description: root.isAvailable ? Strings.playThisTrack
                          : root.availability === Availability.InCloud ? Strings.cloudFileHint : Strings.unavailableFile
    Accessible.focusable: true
    Accessible.focused: root.hasKeyboard
    Accessible.selectable: true
    Accessible.selected: root.isCurrent
    onPressAsked: root.play()
    onMenuAskedFor: root.menuAsked(root.textLeft, root.height)
    onFocusAsked: root.pressed()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusSmall
        color: root.isDragged ? Theme.panelRaised : root.isCurrent ? Theme.selectionFill : hover.hovered ? Theme.hoverWash : "transparent"
        border.width: root.isDragged ? 1 : 0
        border.color: Theme.accent
    }
    CoverArt {
        id: cover
        x: root.inset
        anchors.verticalCenter: parent.verticalCenter
        width: 32
        height: width
        coverKey: root.coverKey
        radius: Math.min(5, Theme.radiusSmall)
        opacity: root.isAvailable && !root.isPast ? 1 : 0.4
    }
    PlainText {
        x: root.textLeft
        y: 6
        width: root.textWidth
        text: root.title
        font: Theme.name
        color: !root.isAvailable ? Theme.withAlpha(Theme.tertiaryText, 0.8)
             : root.isCurrent ? Theme.accent : root.isPast ? Theme.tertiaryText : Theme.primaryText
        Accessible.ignored: true
    }
    PlainText {
        x: root.textLeft
        y: 24
        width: root.textWidth
        text: root.artist
        font: Theme.caption
        color: root.isAvailable ? Theme.tertiaryText : Theme.withAlpha(Theme.tertiaryText, 0.6)
        Accessible.ignored: true
    }
    SymbolLabel {
        id: mark
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        width: size
        height: parent.height
        visible: root.showsMark && !root.offersRemoval
        symbol: root.availability === Availability.InCloud ? "icloud.and.arrow.down"
              : root.availability === Availability.Missing ? "exclamationmark.circle" : "speaker.wave.2.fill"
        size: 16
        color: root.availability === Availability.InCloud ? Theme.cloudBlue : root.isAvailable ? Theme.accent : Theme.tertiaryText
    }
    TabularText {
        id: time
        anchors.right: parent.right
        anchors.rightMargin: root.inset
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.showsMark && !root.offersRemoval
        text: root.duration
        color: Theme.tertiaryText
        Accessible.ignored: true
    }
    SymbolButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.gapTiny
        anchors.verticalCenter: parent.verticalCenter
        visible: root.offersRemoval
        symbol: "xmark"
        tip: Strings.removeFromQueue
        size: root.removalSize
        symbolSize: 16
        fill: Theme.badgeFillStrong
        // The row itself offers this to keys and assistive technology.
        activeFocusOnTab: false
        Accessible.ignored: true
        onClicked: root.removeAsked()
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
    DragHandler {
        target: null
        acceptedButtons: Qt.LeftButton
        onActiveChanged: {
            if (active)
                root.dragStarted(centroid.position.y)
            else
                root.dragEnded()
        }
        onCentroidChanged: {
            if (active)
                root.dragMoved(centroid.position.y)
        }
    }
}
