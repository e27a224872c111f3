// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A record with the current album's cover as its label, turning while music plays, in the ring of
// the live spectrum.
Item {
    id: root

    required property real discSize
    property real angle: 0
    readonly property real labelShare: 0.425

    Accessible.ignored: true

    // Turns the record by so many seconds; a stall is not made up for.
    function advance(seconds: real): void {
        if (Library.transport.isPlaying)
            root.angle = (root.angle + Math.min(seconds, 0.1) * 18) % 360
        ring.bands = Library.spectrum.bands
    }

    SpectrumRing {
        id: ring
        anchors.fill: parent
        discSize: root.discSize
    }
    Rectangle {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: root.discSize * 0.012
        width: root.discSize + 10
        height: width
        radius: width / 2
        color: Qt.rgba(0, 0, 0, 0.28)
    }
    ShaderEffect {
        property real label: root.labelShare

        anchors.centerIn: parent
        width: root.discSize
        height: root.discSize
        visible: !Renderer.isSoftware
        fragmentShader: "qrc:/qt/qml/Halvane/shaders/vinyl.frag.qsb"
        // The disc looks the same at every angle: drawn once, and shown again and again.
        layer.enabled: visible
    }
    RecordPicture {
        anchors.centerIn: parent
        width: root.discSize
        height: root.discSize
        visible: Renderer.isSoftware
        label: root.labelShare
    }
    VinylLabel {
        anchors.centerIn: parent
        width: Math.round(root.discSize * root.labelShare)
        height: width
        rotation: root.angle
    }
}
