// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

Window {
    color: Theme.windowBackground

    MainShellView { anchors.fill: parent }
}
