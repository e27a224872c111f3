// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The live spectrum around the record. Its bands are set by what turns the record, so that both
// move in one redraw.
SpectrumBarsItem {
    id: root

    required property real discSize

    tint: Library.appearance.spectrumTint
    innerRadius: root.discSize / 2 * 1.075
    reach: root.discSize / 2 * 0.225
    opacity: Library.transport.isPlaying ? 1 : 0.5
    Behavior on opacity {
        NumberAnimation { duration: Theme.quick }
    }
}
