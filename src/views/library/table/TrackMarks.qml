// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Halvane

// What a hand can say of the track that it points at: stars, where there is room, and a heart. They
// stand where those that are set stand.
Item {
    id: root

    required property TrackColumns columns
    required property string path
    required property bool isLoved
    required property int rating
    property int pointedStar // 0: none

    component Mark: PressableBase {
        id: mark

        required property string symbol
        required property real symbolSize
        required property color color

        height: 24 // a click above or below plays the row
        activeFocusOnTab: false // the row's menu has the same for the keyboard
        contentItem: SymbolLabel {
            symbol: mark.symbol
            size: mark.symbolSize
            color: mark.color
        }
        background: Item {}
    }

    Row {
        x: root.columns.stars
        anchors.verticalCenter: parent.verticalCenter
        visible: root.columns.showsStars

        Repeater {
            model: 5
            Mark {
                id: star

                required property int index
                readonly property int stars: star.index + 1
                readonly property bool isLit: star.stars <= (root.pointedStar || root.rating)

                width: root.columns.starWidth
                symbol: star.isLit ? "star.fill" : "star"
                symbolSize: root.columns.starSize
                color: star.isLit ? Theme.gold : Theme.tertiaryText
                tip: Strings.rating + ": " + star.stars
                Accessible.role: Accessible.RadioButton
                Accessible.checkable: true
                Accessible.checked: root.rating === star.stars
                onHoveredChanged: {
                    if (star.hovered)
                        root.pointedStar = star.stars
                    else if (root.pointedStar === star.stars)
                        root.pointedStar = 0
                }
                // The stars that there are, once more, take them away.
                onClicked: Library.userData.setRating(root.rating === star.stars ? 0 : star.stars, root.path)
            }
        }
    }
    Mark {
        x: root.columns.heart
        anchors.verticalCenter: parent.verticalCenter
        width: root.columns.heartWidth
        symbol: root.isLoved ? "heart.fill" : "heart"
        symbolSize: 16
        color: root.isLoved || hovered ? Theme.accent : Theme.secondaryText
        tip: Strings.loved
        Accessible.checkable: true
        Accessible.checked: root.isLoved
        onClicked: Library.userData.toggleLoved(root.path)
    }
}
