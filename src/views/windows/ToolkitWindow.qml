// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A window with room for what the toolkit draws itself, its file panel, in the program's colours.
Window {
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
}
