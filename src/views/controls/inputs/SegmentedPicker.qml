// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// A few choices side by side. The arrow keys choose.
FocusScope {
    id: root

    required property string name
    required property var choices // list of texts
    required property int chosen
    readonly property real rim: 2 // around the segments

    signal chose(int index)

    implicitWidth: segments.implicitWidth + 2 * root.rim
    implicitHeight: Theme.controlHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTabList
    Accessible.name: root.name
    Keys.onLeftPressed: root.chose(Math.max(0, root.chosen - 1))
    Keys.onRightPressed: root.chose(Math.min(root.choices.length - 1, root.chosen + 1))

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusSmall
        color: Theme.controlBackground
        border.color: Theme.hairline
        FocusRing { shown: root.activeFocus }
    }
    Row {
        id: segments
        x: root.rim
        y: root.rim
        Repeater {
            model: root.choices
            PressableBase {
                id: segment
                required property string modelData
                required property int index

                height: root.height - 2 * root.rim
                implicitWidth: word.implicitWidth + 2 * Theme.tabInset
                text: modelData
                activeFocusOnTab: false
                Accessible.role: Accessible.RadioButton
                Accessible.checkable: true
                Accessible.checked: index === root.chosen
                onClicked: root.chose(index)
                onFocusAsked: root.forceActiveFocus(Qt.OtherFocusReason)

                contentItem: Text {
                    id: word
                    text: segment.text
                    font: Theme.labelStrong
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    color: segment.index === root.chosen || segment.hovered ? Theme.primaryText : Theme.tertiaryText
                    Accessible.ignored: true
                }
                background: Rectangle {
                    radius: Theme.radiusSmall - root.rim
                    color: segment.index === root.chosen ? Theme.panelRaised : "transparent"
                }
            }
        }
    }
}
