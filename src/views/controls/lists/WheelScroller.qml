// SPDX-License-Identifier: MIT
import QtQuick

// Scrolls its parent, a Flickable, with the wheel or the touchpad, and leaves the mouse's buttons to
// the rows, which can then be dragged.
WheelHandler {
    id: root

    required property Flickable view
    property real target: 0

    function scrollTo(y: real): void {
        const top = root.view.originY - root.view.topMargin
        const bottom = Math.max(top, root.view.originY + root.view.contentHeight + root.view.bottomMargin - root.view.height)
        glide.stop()
        root.view.contentY = Math.round(Math.max(top, Math.min(bottom, y)))
    }

    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    orientation: Qt.Vertical
    onWheel: event => {
        if (event.pixelDelta.y !== 0) {
            root.scrollTo(root.view.contentY - event.pixelDelta.y)
            return
        }
        const from = glide.running ? root.target : root.view.contentY
        const top = root.view.originY - root.view.topMargin
        const bottom = Math.max(top, root.view.originY + root.view.contentHeight + root.view.bottomMargin - root.view.height)
        root.target = Math.round(Math.max(top, Math.min(bottom, from - event.angleDelta.y)))
        glide.to = root.target
        glide.restart()
    }

    property NumberAnimation glide: NumberAnimation {
        target: root.view
        property: "contentY"
        duration: 120
        easing.type: Easing.OutQuad
    }
}
