// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Halvane

// What can be tidied up in the library: one section for each kind of problem there is.
Popover {
    id: root

    readonly property bool isClean: cloud.count === 0 && missing.count === 0 && duplicates.count === 0

    readonly property real beside: 120 // the window's height that the lists leave free

    name: Strings.libraryMaintenance
    anchors.centerIn: parent
    width: 470
    padding: 20
    modal: true
    visible: Library.views.showMaintenance
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    T.Overlay.modal: Rectangle { color: Theme.scrim }
    onClosed: Library.views.showMaintenance = false

    contentItem: FocusScope {
        implicitHeight: body.implicitHeight
        focus: true

        Column {
            id: body
            width: parent.width
            spacing: 10

            Item {
                width: parent.width
                height: 26
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Strings.libraryMaintenance
                    font: Theme.cardTitle
                    color: Theme.primaryText
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                PillButton {
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    isQuiet: true
                    quietColor: Theme.accent
                    text: Strings.done
                    focus: true
                    onClicked: root.close()
                }
            }
            Column {
                visible: root.isClean
                width: parent.width
                topPadding: Theme.margin
                bottomPadding: 30
                spacing: Theme.gap
                SymbolLabel {
                    anchors.horizontalCenter: parent.horizontalCenter
                    symbol: "checkmark.seal.fill"
                    size: 44
                    color: Theme.accent
                }
                Text {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: Strings.libraryClean
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                    font: Theme.body
                    color: Theme.secondaryText
                    wrapMode: Text.Wrap
                }
            }
            Flickable {
                id: scroll
                visible: !root.isClean
                width: parent.width
                height: Math.min(380, sections.height, root.parent ? root.parent.height - root.beside : Infinity)
                contentHeight: sections.height
                boundsBehavior: Flickable.StopAtBounds
                interactive: false
                clip: true
                T.ScrollBar.vertical: ScrollLine { x: scroll.width - width + 6 }

                Column {
                    id: sections
                    width: scroll.width - 4
                    spacing: 14

                    MaintenanceSection {
                        id: cloud
                        model: Library.tidyingLists.cloudPendingTracks
                        symbol: "icloud.and.arrow.down"
                        tint: Theme.cloudBlue
                        title: Strings.cloudPendingSection
                        hint: Strings.cloudPendingHint
                        actionText: Strings.downloadAll
                        isBusy: Library.downloads.cloudDownloadInFlight
                        onActed: Library.downloads.downloadAllCloudTracks()
                    }
                    MaintenanceSection {
                        id: missing
                        model: Library.tidyingLists.missingTracks
                        symbol: "exclamationmark.triangle.fill"
                        tint: Theme.warmAccent
                        title: Strings.missingSection
                        hint: Strings.missingHint
                        actionText: Strings.removeAllMissing
                        canRemoveOne: true
                        onActed: confirmMissing.ask("")
                        onRemovedOne: path => Library.tidying.removeTracks([path])
                    }
                    MaintenanceSection {
                        id: duplicates
                        model: Library.tidyingLists.duplicateTracks
                        symbol: "doc.on.doc"
                        tint: Theme.gold
                        title: Strings.duplicatesSection
                        hint: Strings.duplicatesHint
                        actionText: Strings.removeDuplicates
                        onActed: confirmDuplicates.ask("")
                    }
                }
                WheelScroller {
                    parent: scroll
                    view: scroll
                }
            }
        }
        Alert {
            id: confirmMissing
            title: Strings.missingSection
            message: Strings.sentences.confirmRemoveMissing(missing.count)
            note: Strings.removedIsRemembered
            acceptText: Strings.removeAllMissing
            isDestructive: true
            onAccepted: Library.tidying.removeTracks(missing.paths())
        }
        Alert {
            id: confirmDuplicates
            title: Strings.duplicatesSection
            message: Strings.sentences.confirmRemoveDuplicates(Library.duplicates.duplicateGroupCount)
            note: Strings.removedIsRemembered
            acceptText: Strings.removeDuplicates
            isDestructive: true
            onAccepted: Library.tidying.removeDuplicateTracks()
        }
    }
}
