// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// One of the window's own buttons.
SymbolButton {
    size: Theme.topRowHeight - 2 // so that the row shows above and below it
    symbolSize: 15
    corner: Theme.radiusSmall
    anchors.verticalCenter: parent ? parent.verticalCenter : undefined
}
