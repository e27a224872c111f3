// SPDX-License-Identifier: MIT
pragma Singleton

import QtQuick
import Halvane

// The colours, the shared lengths and the text styles of the windows.
QtObject {
    id: theme

    // Surfaces
    readonly property color sidebarBackground: AppPalette.sidebarBackground
    readonly property color panel: AppPalette.panel
    readonly property color panelRaised: AppPalette.panelRaised
    readonly property color controlBackground: AppPalette.controlBackground
    readonly property color windowBackground: Library.appearance.windowBackground
    readonly property color sidebarVeil: withAlpha(sidebarBackground, 0.72)
    readonly property color playerBarVeil: Qt.rgba(0.055, 0.058, 0.063, 0.9)
    readonly property color scrim: Qt.rgba(0, 0, 0, 0.55)

    // Lines and washes
    readonly property color line: AppPalette.line
    readonly property color hairline: Qt.rgba(1, 1, 1, 0.08)
    readonly property color hoverWash: Qt.rgba(1, 1, 1, 0.06)
    readonly property color pressWash: Qt.rgba(1, 1, 1, 0.1)
    readonly property color badgeFill: Qt.rgba(1, 1, 1, 0.06)
    readonly property color badgeFillStrong: Qt.rgba(1, 1, 1, 0.08)
    readonly property color groove: Qt.rgba(1, 1, 1, 0.16)
    readonly property color selectionFill: withAlpha(accent, 0.14)
    readonly property color playingFill: withAlpha(accent, 0.09)

    // Text
    readonly property color primaryText: AppPalette.primaryText
    readonly property color secondaryText: AppPalette.secondaryText
    readonly property color tertiaryText: AppPalette.tertiaryText
    readonly property color onAccent: Qt.rgba(0.03, 0.05, 0.05, 1)

    // Accents
    readonly property color accent: Library.appearance.accent
    readonly property color warmAccent: AppPalette.warmAccent
    readonly property color gold: AppPalette.gold
    readonly property color cloudBlue: Qt.rgba(0.4, 0.64, 1, 1)
    readonly property color disc: primaryText

    // Corners
    readonly property real radiusLarge: Library.appearance.radiusLarge
    readonly property real radiusMedium: Library.appearance.radiusMedium
    readonly property real radiusSmall: Library.appearance.radiusSmall

    // Distances
    readonly property real gapTiny: 4
    readonly property real gapSmall: 8
    readonly property real gap: 12
    readonly property real gapLarge: 16
    readonly property real margin: 24
    readonly property real rowInset: 10 // from a row's ends to what stands in it
    readonly property real tabInset: 14 // from a tab's ends to its word

    // Sizes
    readonly property real topRowHeight: 34
    readonly property real sidebarWidth: 230
    readonly property real panelWidth: 330
    readonly property real playerBarHeight: 88
    readonly property real sidebarRowHeight: 32
    readonly property real trackRowHeight: 38
    readonly property real queueRowHeight: 44
    readonly property real tidyingRowHeight: 22
    readonly property real controlHeight: 28
    readonly property real buttonSize: 34
    readonly property real menuLineHeight: 9
    readonly property real albumTileWords: 56 // beneath the cover
    readonly property real artistTileHeight: 74
    readonly property real helpIndent: 44 // of the words beside their symbols

    // Durations, ms
    readonly property bool isMotionReduced: App.isMotionReduced
    readonly property int quick: theme.isMotionReduced ? 0 : 140
    readonly property int paneSlide: theme.isMotionReduced ? 0 : 180
    readonly property int panelSlide: theme.isMotionReduced ? 0 : 280
    readonly property int ambientChange: theme.isMotionReduced ? 0 : 1600
    readonly property int tipDelay: 600

    // Text styles
    readonly property font pageTitle: AppPalette.font(22, 700, -0.5)
    readonly property font heroTitle: AppPalette.font(21, 700, -0.4)
    readonly property font displayTitle: AppPalette.font(32, 700, -0.8)
    readonly property font overlayTitle: AppPalette.font(24, 700, -0.5)
    readonly property font cardTitle: AppPalette.font(15, 700)
    readonly property font emptyTitle: AppPalette.font(17, 700, -0.2)
    readonly property font emphasis: AppPalette.font(15, 600)
    readonly property font name: AppPalette.font(13, 600)
    readonly property font body: AppPalette.font(13, 500)
    readonly property font row: AppPalette.font(13, 500)
    readonly property font label: AppPalette.font(12, 500)
    readonly property font labelStrong: AppPalette.font(12, 600)
    readonly property font caption: AppPalette.font(11, 500)
    readonly property font captionStrong: AppPalette.font(11, 600, 0.2)
    readonly property font badge: AppPalette.font(10, 600)
    readonly property font keys: AppPalette.fixedWidthFont(12, 600)

    // A card with a little of a colour in it.
    function tinted(color: color, amount: real): color {
        return Qt.tint(panel, withAlpha(color, amount))
    }
    // A colour at another opacity.
    function withAlpha(color: color, alpha: real): color {
        return Qt.rgba(color.r, color.g, color.b, alpha)
    }
}
