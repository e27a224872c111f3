// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick

// What assistive technology calls the things that several lists show.
QtObject {
    // A track or an album, and whose it is.
    function titled(title: string, artist: string): string {
        return artist.length > 0 ? title + ", " + artist : title
    }
}
