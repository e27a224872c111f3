// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Where the columns of the track table begin in a row of a width. The chosen ones share the room
// between the title and the heart as far as they fit. Numbered tracks of one album do not repeat its
// name. Stars that are no column have a place, too, where there is much room. It is before the time
// like the heart's, whether a track has any or not: none of them moves another, and none is in the
// middle of a row, where a hand clicks to play.
QtObject {
    id: root

    required property real width
    property bool isAlbum
    property bool isNumbered
    property string artist // whose tracks these are; empty: several artists'

    readonly property real starSize: 15
    readonly property real starWidth: 16
    readonly property real heartWidth: 24
    readonly property real leastTitleWidth: 128
    readonly property real leastTitleWidthWithStars: 260
    readonly property real starsWidth: fit.width(SortBy.Rating)
    readonly property real timeWidth: root.showsTime ? fit.width(SortBy.Time) : 0

    readonly property bool showsNumber: fit.hasNumber && (root.isNumbered || !root.isAlbum)
    readonly property bool showsTime: fit.hasTime
    readonly property bool showsArtist: fit.hasArtist
    readonly property bool showsStars: fit.hasStars || fit.room - fit.taken - root.starsWidth >= root.leastTitleWidthWithStars
    readonly property bool hasStarsColumn: fit.hasStars

    readonly property real title: 40
    readonly property real titleWidth: (fit.taken > 0 ? root.end - fit.taken : root.stars) - Theme.gap - root.title
    readonly property real end: root.stars - Theme.gapSmall // of the chosen columns
    readonly property real stars: root.heart - (root.showsStars ? root.starsWidth : 0)
    readonly property real heart: root.time - root.heartWidth
    readonly property real time: root.width - Theme.rowInset - root.timeWidth
    readonly property ColumnFit fit: ColumnFit {
        chosen: Library.tableColumns.shown
        isOfOneAlbum: root.isNumbered
        room: root.heart - Theme.gapSmall - root.title
        leastTitleWidth: root.leastTitleWidth
    }
}
