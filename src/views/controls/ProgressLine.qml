// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import QtQuick.Window
import Halvane

// Where playback is: elapsed time, a line to drag, and the length or what is left of it.
RowLayout {
    id: root

    property font timeFont: Theme.caption
    property color fill: Theme.accent
    readonly property real leastTimeWidth: 28
    // Where the line itself is; the times stand at its ends.
    readonly property real lineLeft: elapsedTime.width + root.spacing
    readonly property real besideLine: root.lineLeft + root.spacing + duration.width

    // The line stands still in a window that nobody sees, where it would cost for nothing.
    readonly property bool isWatched: Window.window !== null && Window.window.visible
                                      && Window.window.visibility !== Window.Minimized
    property string elapsed
    property string length

    spacing: 10
    onIsWatchedChanged: isWatched ? Library.progressClock.beginWatching()
                                  : Library.progressClock.endWatching()
    Component.onDestruction: {
        if (isWatched)
            Library.progressClock.endWatching()
    }

    Binding on elapsed {
        when: root.isWatched
        value: Library.progressClock.elapsedTime
        restoreMode: Binding.RestoreNone
    }
    Binding on length {
        when: root.isWatched
        value: Library.player.durationDisplay
        restoreMode: Binding.RestoreNone
    }

    TabularText {
        id: elapsedTime
        text: root.elapsed
        font: root.timeFont
        Layout.alignment: Qt.AlignVCenter
        Layout.minimumWidth: root.leastTimeWidth
        layoutDirection: Qt.LeftToRight
    }
    ValueSlider {
        id: slider
        Layout.fillWidth: true
        name: Strings.playbackMenu
        spokenValue: root.elapsed + " / " + root.length
        fill: root.fill
        thickness: slider.isPointedAt ? 6 : 4
        hasHandle: slider.isPointedAt || slider.visualFocus
        bubble: slider.isPointedAt ? Library.player.timeAt(slider.pointed) : ""
        bubbleAt: slider.pointed
        enabled: Library.transport.hasLoadedFile
        live: true
        stepSize: 2
        wheelEnabled: false
        shown: Library.progressClock.progress * 100
        follows: root.isWatched
        onAsked: percent => {
            if (slider.pressed)
                Library.transport.scrub(percent / 100)
            else
                Library.transport.seek(percent / 100)
        }
        onPressedChanged: {
            if (!slider.pressed)
                Library.transport.seek(slider.value / 100)
        }

        // The place that is pointed at.
        Rectangle {
            visible: slider.hovered && !slider.pressed && slider.enabled
            x: Math.round(slider.leftPadding + slider.handle.width / 2 + slider.pointed * (slider.availableWidth - slider.handle.width) - width / 2)
            anchors.verticalCenter: parent.verticalCenter
            width: 2
            height: 10
            radius: 1
            color: Theme.primaryText
        }
    }
    PressableBase {
        id: duration
        implicitWidth: Math.max(root.leastTimeWidth, digits.implicitWidth)
        implicitHeight: 20
        tip: Strings.toggleRemainingTime
        Accessible.name: root.length
        Accessible.description: Strings.toggleRemainingTime
        onClicked: Library.views.showRemainingTime = !Library.views.showRemainingTime

        contentItem: Item {
            TabularText {
                id: digits
                anchors.verticalCenter: parent.verticalCenter
                text: root.length
                font: root.timeFont
                color: duration.hovered ? Theme.primaryText : Theme.secondaryText
                Accessible.ignored: true
            }
        }
        background: Item {
            FocusRing { shown: duration.visualFocus; around: 1; corner: 3 }
        }
    }
}
