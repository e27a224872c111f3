// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A slowly turning light in the artwork's colour, which stands still under the software renderer.
Item {
    id: root

    property real turn: 0.6
    property color tint: Library.ambient.ambientColor

    Accessible.ignored: true

    // Turns the light by so many seconds.
    function advance(seconds: real): void {
        root.turn = (root.turn + seconds * 2.4 * Math.PI / 180) % (2 * Math.PI)
    }

    Behavior on tint {
        enabled: !Renderer.isSoftware
        ColorAnimation { duration: Theme.ambientChange; easing.type: Easing.InOutQuad }
    }

    ShaderEffect {
        id: effect

        readonly property real turn: root.turn
        readonly property size size: Qt.size(width, height)
        readonly property color tint: root.tint

        anchors.fill: parent
        visible: !Renderer.isSoftware
        mesh: GridMesh {
            resolution.width: Math.max(1, Math.ceil(effect.width / 32))
            resolution.height: Math.max(1, Math.ceil(effect.height / 32))
        }
        vertexShader: "qrc:/qt/qml/Halvane/shaders/aurora.vert.qsb"
        fragmentShader: "qrc:/qt/qml/Halvane/shaders/aurora.frag.qsb"
    }
    AuroraPicture {
        anchors.fill: parent
        visible: Renderer.isSoftware
        turn: root.turn
        tint: root.tint
    }
}
