// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Where the columns of the track table begin in a row of a width. Where the title would have too
// little room left, first the quality and then the album give way.
QtObject {
    id: root

    required property real width

    readonly property real albumWidth: 200
    readonly property real qualityWidth: 150
    readonly property real timeWidth: 58
    readonly property real leastTitleWidth: 160

    readonly property real title: 40
    readonly property real album: root.showsAlbum ? root.quality - root.albumWidth : root.quality
    readonly property real quality: root.showsQuality ? root.time - root.qualityWidth : root.time
    readonly property real time: root.width - Theme.rowInset - root.timeWidth
    readonly property bool showsAlbum: root.quality - root.albumWidth - root.title >= root.leastTitleWidth
    readonly property bool showsQuality: root.time - root.qualityWidth - root.albumWidth - root.title >= root.leastTitleWidth
}
