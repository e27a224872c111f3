// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// Where the sound goes, and in which form; pressing it offers the other devices. Where there is no
// room for a name, its symbol stands for it.
PressableBase {
    id: root

    readonly property real arrowRoom: 20
    readonly property real lineTop: 3 // of the first line
    readonly property bool hasRoom: width >= 72

    implicitWidth: Math.max(deviceName.x + deviceName.implicitWidth + Theme.gapTiny + root.arrowRoom, path.implicitWidth)
    implicitHeight: 40
    text: Library.output.outputDeviceName
    tip: Library.output.outputDeviceName
    opens: true
    isOpen: (menu.item as ContextMenu)?.visible ?? false
    Accessible.name: Strings.output + ": " + Library.output.outputDeviceName
    Accessible.description: Library.signalPath.signalPathDescription
    onClicked: {
        const devices = menu.made() as ContextMenu
        devices.popup(root, 0, -devices.implicitHeight - Theme.gapSmall)
    }

    contentItem: Item {
        SymbolLabel {
            id: speaker
            y: root.lineTop
            symbol: "hifispeaker.fill"
            size: 16
        }
        Text {
            id: deviceName
            x: 20
            y: root.lineTop
            visible: root.hasRoom
            width: root.hasRoom ? Math.min(implicitWidth, parent.width - x - root.arrowRoom) : 0
            height: 17
            verticalAlignment: Text.AlignVCenter
            text: Library.output.outputDeviceName
            font: Theme.labelStrong
            color: Theme.primaryText
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        SymbolLabel {
            anchors.left: deviceName.right
            anchors.leftMargin: Theme.gapTiny
            y: root.lineTop + 1
            symbol: "chevron.down"
            size: 15
        }
        Text {
            id: path
            visible: root.hasRoom
            y: 21
            width: parent.width
            text: Library.signalPath.signalPathDescription
            font: Theme.caption
            color: Theme.tertiaryText
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.margins: -Theme.gapTiny
            radius: Theme.radiusSmall
            color: Theme.hoverWash
            visible: root.hovered
        }
        FocusRing { shown: root.visualFocus }
    }

    Deferred {
        id: menu
        ContextMenu {
            id: devices

            MenuEntry {
                text: Strings.systemDefaultDevice
                checkable: true
                checked: Library.output.selectedOutputDeviceName.length === 0
                onTriggered: Library.output.selectSystemDefaultOutput()
            }
            Instantiator {
                model: Library.outputDevices
                delegate: MenuEntry {
                    required property int deviceId
                    required property string name
                    required property bool selected
                    text: name
                    checkable: true
                    checked: selected
                    onTriggered: Library.output.selectOutputDevice(deviceId)
                }
                onObjectAdded: (index, object) => devices.insertItem(index + 1, object as MenuEntry)
                onObjectRemoved: (index, object) => devices.removeItem(object as MenuEntry)
            }
        }
    }
}
