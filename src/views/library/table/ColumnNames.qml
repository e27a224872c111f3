// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What the columns of the track table are called.
QtObject {
    function of(column: int): string {
        switch (column) {
        case SortBy.Number: return Strings.number
        case SortBy.Artist: return Strings.artist
        case SortBy.Album: return Strings.album
        case SortBy.Genre: return Strings.genre
        case SortBy.Year: return Strings.year
        case SortBy.Plays: return Strings.plays
        case SortBy.Rating: return Strings.rating
        case SortBy.Added: return Strings.dateAdded
        case SortBy.Path: return Strings.path
        case SortBy.Quality: return Strings.quality
        default: return Strings.time
        }
    }
}
