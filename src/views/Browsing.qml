// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick

// What the user asked the library content to show beside the controller's state.
QtObject {
    // The chosen album's tracks beneath the album grid: asked for, not merely chosen by playback.
    property bool showsAlbumTracks

    // A new playlist is wanted, and these tracks in it.
    signal playlistAsked(paths: var)

    // Its name is being asked for, and needs the keyboard when the menu has closed.
    property bool isNaming
}
