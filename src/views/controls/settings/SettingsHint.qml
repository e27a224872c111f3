// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// What a setting means.
Text {
    width: parent ? parent.width : 0
    font: Theme.caption
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    lineHeight: 1.25
    color: Theme.tertiaryText
    wrapMode: Text.Wrap
    textFormat: Text.PlainText
}
