// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// Says that a search found nothing.
Text {
    height: 120
    text: Strings.noResults
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    font: Theme.body
    color: Theme.tertiaryText
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
}
