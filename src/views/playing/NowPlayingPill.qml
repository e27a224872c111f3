// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The way back to the entry that plays, over the queue while that is scrolled out of view.
PressableBase {
    id: root

    required property bool isAbove
    required property bool isOffered

    implicitWidth: words.implicitWidth + 2 * Theme.tabInset
    implicitHeight: 32
    opacity: root.isOffered ? 1 : 0
    visible: opacity > 0
    enabled: root.isOffered
    text: Strings.nowPlaying
    Behavior on opacity {
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutQuad }
    }

    contentItem: Item {
        Row {
            id: words
            anchors.centerIn: parent
            spacing: Theme.gapSmall
            SymbolLabel {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "speaker.wave.2.fill"
                size: 16
                color: Theme.accent
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                font: Theme.labelStrong
                color: Theme.accent
                Accessible.ignored: true
            }
            SymbolLabel {
                anchors.verticalCenter: parent.verticalCenter
                symbol: root.isAbove ? "arrow.up" : "arrow.down"
                size: 16
                color: Theme.accent
            }
        }
    }
    background: Rectangle {
        radius: height / 2
        color: root.hovered ? Qt.tint(Theme.panelRaised, Theme.hoverWash) : Theme.panelRaised
        border.color: Theme.line
        FocusRing {
            shown: root.visualFocus
            corner: parent.radius
        }
    }
}
