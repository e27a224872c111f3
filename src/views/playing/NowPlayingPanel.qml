// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What is playing and what comes next.
Rectangle {
    id: root

    color: Theme.sidebarVeil

    Text {
        id: heading
        x: 18
        y: 10
        text: Strings.nowPlaying
        font: Theme.name
        color: Theme.primaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    NowPlayingCard {
        id: card
        anchors.top: heading.bottom
        anchors.topMargin: 9
        x: Theme.gapLarge
        width: parent.width - 2 * x
    }
    QueueHeading {
        id: nextHeading
        anchors.top: card.bottom
        anchors.topMargin: 18
        x: heading.x
        width: parent.width - x - card.x
        count: queue.count
    }
    QueueView {
        id: queue
        anchors.top: nextHeading.bottom
        anchors.topMargin: 6
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
