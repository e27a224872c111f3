// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Halvane

// The equalizer: switch, presets, ten bands and the preamp.
Popover {
    id: root

    name: Strings.equalizer
    width: 470

    contentItem: ColumnLayout {
        spacing: 14

        RowLayout {
            spacing: 10
            ToggleSwitch {
                name: Strings.equalizer
                checked: Library.equalizer.eqEnabled
                onToggled: Library.equalizer.eqEnabled = checked
            }
            Text {
                Layout.fillWidth: true
                text: Strings.equalizer
                font: Theme.name
                color: Theme.primaryText
                Accessible.ignored: true
            }
            EQPresetMenu {}
        }
        Row {
            Layout.alignment: Qt.AlignHCenter
            spacing: 6
            Repeater {
                model: ["31", "63", "125", "250", "500", "1K", "2K", "4K", "8K", "16K"]
                VerticalFader {
                    required property int index
                    required property string modelData
                    label: modelData
                    value: Library.equalizer.eqGains[index]
                    onMovedTo: dB => Library.equalizer.setEqGain(index, dB)
                }
            }
            Item {
                width: 52
                height: preamp.height
                VerticalFader {
                    id: preamp
                    width: parent.width
                    label: Strings.preampLabel
                    value: Library.equalizer.eqPreamp
                    onMovedTo: dB => Library.equalizer.eqPreamp = dB
                }
                ClipLight { anchors.right: parent.right }
            }
        }
    }
}
