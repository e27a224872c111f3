// SPDX-License-Identifier: MIT
import QtQuick

ToolkitWindow {
    MainShellView { anchors.fill: parent }
}
