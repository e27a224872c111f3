// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A window with room for what the toolkit draws itself, its file panel, in the program's colours.
Window {
    id: root

    color: Theme.windowBackground
    palette {
        window: Theme.panel
        windowText: Theme.primaryText
        base: Theme.controlBackground
        text: Theme.primaryText
        button: Theme.panelRaised
        buttonText: Theme.primaryText
        brightText: Theme.primaryText
        light: Theme.panelRaised
        midlight: Theme.panelRaised
        mid: Theme.panelRaised
        dark: Theme.line
        shadow: "black"
        highlight: Theme.accent
        highlightedText: Theme.primaryText // on a little of the accent
        placeholderText: Theme.tertiaryText
    }

    // From Qt 6.8 on the panel is a window of its own, and this one may have the keys.
    Item {
        focus: true
        Keys.onEscapePressed: root.close()
    }
}
