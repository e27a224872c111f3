// SPDX-License-Identifier: MIT
import QtQuick
import Halvane

// A slowly turning light in the artwork's colour.
Item {
    id: root

    Accessible.ignored: true

    // Turns the light by so many seconds.
    function advance(seconds: real): void {
        effect.turn = (effect.turn + seconds * 2.4 * Math.PI / 180) % (2 * Math.PI)
    }

    ShaderEffect {
        id: effect

        property real turn: 0.6
        property size size: Qt.size(width, height)
        property color tint: Library.ambient.ambientColor

        anchors.fill: parent
        mesh: GridMesh {
            resolution.width: Math.max(1, Math.ceil(effect.width / 32))
            resolution.height: Math.max(1, Math.ceil(effect.height / 32))
        }
        vertexShader: "qrc:/qt/qml/Halvane/shaders/aurora.vert.qsb"
        fragmentShader: "qrc:/qt/qml/Halvane/shaders/aurora.frag.qsb"
        Behavior on tint {
            ColorAnimation { duration: Theme.ambientChange; easing.type: Easing.InOutQuad }
        }
    }
}
