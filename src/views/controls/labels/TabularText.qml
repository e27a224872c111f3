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
    // A place for each character. Those of a longer text are kept for the next one: in a list that
    // scrolls, texts of four and five characters follow each other.
    property int places
    readonly property real digitWidth: digit.advanceWidth

    onTextChanged: {
        if (root.text.length > root.places)
            root.places = root.text.length
    }
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    TextMetrics {
        id: digit
        font: root.font
        text: "0"
    }
    Repeater {
        model: root.places
        Text {
            required property int index

            width: text >= "0" && text <= "9" ? root.digitWidth : implicitWidth
            visible: text.length > 0
            horizontalAlignment: Text.AlignHCenter
            text: root.text.charAt(index)
            font: root.font
            color: root.color
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
