// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// A time or a number whose digits all have the same width, so that it does not dance while it runs.
Row {
    id: root

    required property string text
    property color color: Theme.secondaryText
    property font font: Theme.caption

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    TextMetrics {
        id: digit
        font: root.font
        text: "0"
    }
    Repeater {
        model: root.text.length
        Text {
            required property int index
            readonly property string character: root.text.charAt(index)

            width: character >= "0" && character <= "9" ? digit.advanceWidth : implicitWidth
            horizontalAlignment: Text.AlignHCenter
            text: character
            font: root.font
            color: root.color
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
