// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick

// What the user asked the library content to show beside the controller's state.
QtObject {
    // The chosen album's tracks beneath the album grid: asked for, not merely chosen by playback.
    property bool showsAlbumTracks

    // Brings the current track into view in the track table.
    signal revealAsked
}
