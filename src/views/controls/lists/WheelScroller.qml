// SPDX-License-Identifier: MIT
import QtQuick

// Scrolls its parent, a Flickable, with the wheel or the touchpad, and to what takes the keyboard's
// focus, and leaves the mouse's buttons to the rows, which can then be dragged.
WheelHandler {
    id: root

    required property Flickable view
    property real target: 0
    readonly property Item focused: root.view.Window.activeFocusItem
    readonly property real air: 8 // around what has the focus

    // A hand has scrolled.
    signal turned

    // The place nearest to y that the view can show.
    function within(y: real): real {
        const top = root.view.originY - root.view.topMargin
        const bottom = Math.max(top, root.view.originY + root.view.contentHeight + root.view.bottomMargin - root.view.height)
        return Math.round(Math.max(top, Math.min(bottom, y)))
    }
    // The view is put somewhere: nothing may draw it on.
    function stop(): void {
        glide.stop()
    }
    function scrollTo(y: real): void {
        root.stop()
        root.view.contentY = root.within(y)
    }
    function glideTo(y: real, duration: int): void {
        root.target = root.within(y)
        glide.to = root.target
        glide.duration = duration
        glide.restart()
    }

    function bringIntoView(item: Item): void {
        const top = item.mapToItem(root.view.contentItem, 0, 0).y - root.air
        const bottom = top + item.height + 2 * root.air
        if (top < root.view.contentY)
            root.scrollTo(top)
        else if (bottom > root.view.contentY + root.view.height)
            root.scrollTo(bottom - root.view.height)
    }

    onFocusedChanged: {
        let above = root.focused?.parent ?? null
        while (above && above !== root.view.contentItem)
            above = above.parent
        if (above)
            root.bringIntoView(root.focused)
    }
    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    orientation: Qt.Vertical
    onWheel: event => {
        root.turned()
        if (event.pixelDelta.y !== 0) {
            root.scrollTo(root.view.contentY - event.pixelDelta.y)
            return
        }
        const from = glide.running ? root.target : root.view.contentY
        root.glideTo(from - event.angleDelta.y, 120)
    }

    property NumberAnimation glide: NumberAnimation {
        target: root.view
        property: "contentY"
        easing.type: Easing.OutQuad
    }
}
