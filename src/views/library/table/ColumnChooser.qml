// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// The columns that the place which is shown can have, each with a check mark. It stays open while
// they are chosen.
Popover {
    id: root

    name: Strings.columns
    padding: Theme.gapSmall

    contentItem: Item {
        id: content

        focus: true // for the arrow keys, which go to the first and from one to the next
        implicitWidth: 258
        implicitHeight: entries.y + entries.height
        ColumnNames { id: names }
        Keys.onDownPressed: content.Window.activeFocusItem.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onUpPressed: content.Window.activeFocusItem.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

        Text {
            x: Theme.gapSmall
            height: Theme.controlHeight
            verticalAlignment: Text.AlignVCenter
            text: Strings.columns
            font: Theme.captionStrong
            color: Theme.secondaryText
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
        PillButton {
            anchors.right: parent.right
            visible: !Library.tableColumns.isStandard
            isQuiet: true
            quietColor: Theme.accent
            text: Strings.standardColumns
            onClicked: Library.tableColumns.reset()
        }
        Grid {
            id: entries

            y: Theme.controlHeight + Theme.gapTiny
            columns: 2
            flow: Grid.TopToBottom
            rows: 6

            ColumnEntry {
                width: content.width / 2
                enabled: false // the title is always there
                text: Strings.title
                isShown: true
            }
            Repeater {
                model: Library.tableColumns.offered
                ColumnEntry {
                    required property int modelData

                    width: content.width / 2
                    text: names.of(modelData)
                    isShown: Library.tableColumns.revision >= 0 && Library.tableColumns.shows(modelData)
                    onClicked: Library.tableColumns.toggle(modelData)
                }
            }
        }
    }
}
