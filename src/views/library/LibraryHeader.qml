// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What stands above every list of the library and scrolls away with it.
Column {
    id: root

    spacing: 14
    bottomPadding: 12

    HeroPlaybackView {
        width: root.width
    }
    BrowseModeTabs {}
}
