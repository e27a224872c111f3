// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A raised surface.
Rectangle {
    color: Theme.panel
    radius: Theme.radiusLarge
    border.color: Theme.hairline
}
