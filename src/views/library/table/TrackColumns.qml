// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Where the columns of the track table begin in a row of a width. Where the title would have too
// little room left, first the stars, then the quality and then the album give way. Numbered tracks of
// one album do not repeat its name. The stars and the heart have their place before the time, whether
// a track has any or not: none of them moves another, and none is in the middle of a row, where a
// hand clicks to play.
QtObject {
    id: root

    required property real width
    property bool isAlbum
    property bool isNumbered
    property string artist // whose tracks these are; empty: several artists'

    readonly property real albumWidth: root.isNumbered ? 0 : 200
    readonly property real qualityWidth: 150
    readonly property real timeWidth: 58
    readonly property real leastTitleWidth: 128

    readonly property real starSize: 15
    readonly property real starWidth: 16
    readonly property real heartWidth: 24
    readonly property real starsWidth: 5 * root.starWidth + Theme.gapSmall
    readonly property real leastTitleWidthWithStars: 260

    readonly property real title: 40
    readonly property real titleWidth: root.album - Theme.gap - root.title
    readonly property real album: root.showsAlbum ? root.quality - root.albumWidth : root.quality
    readonly property real quality: root.showsQuality ? root.stars - Theme.gapSmall - root.qualityWidth : root.stars
    readonly property real stars: root.heart - (root.showsStars ? root.starsWidth : 0)
    readonly property real heart: root.time - root.heartWidth
    readonly property real time: root.width - Theme.rowInset - root.timeWidth
    // What the title, the album and the quality share.
    readonly property real room: root.heart - Theme.gapSmall - root.title
    readonly property bool showsQuality: root.room - root.qualityWidth - root.albumWidth >= root.leastTitleWidth
    readonly property real besideTitle: (root.showsQuality ? root.qualityWidth : 0) + (root.showsAlbum ? root.albumWidth : 0)
    readonly property bool showsAlbum: !root.isNumbered && root.room - (root.showsQuality ? root.qualityWidth : 0) - root.albumWidth >= root.leastTitleWidth
    readonly property bool showsStars: root.room - root.besideTitle - root.starsWidth >= root.leastTitleWidthWithStars
}
