// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// The preferences. Each applies at once.
FocusScope {
    id: root

    readonly property var tints: [Strings.tintAmbient, Strings.tintMint, Strings.tintGold, Strings.tintSunset, Strings.tintCustom]

    implicitWidth: 380
    implicitHeight: form.height + 20
    focus: true

    AmbientBackdrop { anchors.fill: parent }
    Column {
        id: form
        width: parent.width
        spacing: 18

        SecondaryTopRow {
            width: parent.width
            height: 40
            title: Strings.settingsLabel
        }
        SettingsGroup {
            title: Strings.language
            SegmentedPicker {
                name: Strings.language
                choices: [Strings.sentences.languageName(0), Strings.sentences.languageName(1), Strings.sentences.languageName(2)]
                chosen: Library.languageSetting
                onChose: index => Library.languageSetting = index
            }
            SettingsHint { text: Strings.languageSettingHint }
        }
        SettingsGroup {
            title: Strings.spectrumColor
            SettingsLine {
                label: Strings.spectrumColor
                Picker {
                    name: Strings.spectrumColor
                    choices: root.tints
                    chosen: Library.spectrumTintMode
                    onChose: index => Library.spectrumTintMode = index
                }
            }
            SettingsLine {
                visible: Library.spectrumTintMode === Tint.Custom
                label: Strings.tintCustom
                ColorWell {
                    name: Strings.spectrumColor + ": " + Strings.tintCustom
                    color: Library.customSpectrumColor
                    onChose: color => Library.customSpectrumColor = color
                }
            }
            SpectrumStrip {
                width: parent.width
                height: 40
                isPlaying: Library.isPlaying
                tint: Library.spectrumTint
            }
        }
        SettingsGroup {
            title: Strings.soundCheck
            SettingsLine {
                label: Strings.soundCheck
                ToggleSwitch {
                    name: Strings.soundCheck
                    checked: Library.soundCheckEnabled
                    onToggled: Library.soundCheckEnabled = checked
                }
            }
            SettingsHint { text: Strings.soundCheckHint }
        }
        SettingsGroup {
            title: Strings.themeSection
            SettingsLine {
                label: Strings.accentColor
                Picker {
                    name: Strings.accentColor
                    choices: root.tints
                    chosen: Library.themeAccentMode
                    onChose: index => Library.themeAccentMode = index
                }
            }
            SettingsLine {
                visible: Library.themeAccentMode === Tint.Custom
                label: Strings.tintCustom
                ColorWell {
                    name: Strings.accentColor + ": " + Strings.tintCustom
                    color: Library.customThemeAccent
                    onChose: color => Library.customThemeAccent = color
                }
            }
            SettingsLine {
                label: Strings.cornerStyle
                SegmentedPicker {
                    name: Strings.cornerStyle
                    choices: [Strings.cornerSharp, Strings.cornerStandard, Strings.cornerRound]
                    chosen: Library.themeCornerStyle
                    onChose: index => Library.themeCornerStyle = index
                }
            }
            SettingsLine {
                label: Strings.backgroundStyle
                Picker {
                    name: Strings.backgroundStyle
                    choices: [Strings.bgDark, Strings.bgOLED, Strings.bgAmbient]
                    chosen: Library.themeBackgroundStyle
                    onChose: index => Library.themeBackgroundStyle = index
                }
            }
        }
    }
}
