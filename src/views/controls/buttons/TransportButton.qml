// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A control of what is playing; active ones are in the accent colour.
SymbolButton {
    id: root

    property bool isActive

    symbolColor: root.isActive ? Theme.accent : Theme.secondaryText
}
