// SPDX-License-Identifier: MIT
#include "app/windows/window_placement.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr int margin = 16;
constexpr int iconGap = 8;
constexpr QSize handle(96, 32); // what has to show of the top row

int clampedAlong(int low, int high, int length, int position) {
    return std::min(std::max(low, high - length), std::max(position, low));
}

} // namespace

QPoint clampedTo(const QRect& area, QPoint origin, QSize size) {
    return {clampedAlong(area.x(), area.x() + area.width(), size.width(), origin.x()),
            clampedAlong(area.y(), area.y() + area.height(), size.height(), origin.y())};
}

QPoint centredOn(const QRect& other, QSize size, const std::optional<QRect>& area) {
    const QPoint origin(other.x() + (other.width() - size.width()) / 2,
                        other.y() + (other.height() - size.height()) / 2);
    return area ? clampedTo(*area, origin, size) : origin;
}

QPoint topTrailing(const QRect& area, QSize size) {
    return clampedTo(area, {area.x() + area.width() - size.width() - margin, area.y() + margin},
                     size);
}

QPoint besideIcon(QPoint icon, QSize size, const QRect& area) {
    const bool upperHalf = icon.y() < area.center().y();
    return clampedTo(area,
                     {icon.x() - size.width() / 2,
                      upperHalf ? icon.y() + iconGap : icon.y() - iconGap - size.height()},
                     size);
}

QRect areaAround(const QRect& place, const QList<QRect>& areas) {
    const auto shown = [&place](const QRect& area) {
        const QRect common = area.intersected(place);
        return qint64(common.width()) * common.height();
    };
    const auto most = std::ranges::max_element(areas, {}, shown);
    return most == areas.end() ? QRect() : *most;
}

QRect fittedInto(const QRect& area, const QRect& place) {
    const QSize size = place.size().boundedTo(area.size());
    return {size == place.size() ? place.topLeft() : clampedTo(area, place.topLeft(), size), size};
}

std::optional<QRect> stillReachable(const QRect& remembered, const QList<QRect>& areas) {
    if (!remembered.isValid())
        return {};
    const QRect topRow(remembered.topLeft(), QSize(remembered.width(), handle.height()));
    const bool reachable = std::any_of(areas.begin(), areas.end(), [&](const QRect& area) {
        const auto visible = area.intersected(topRow);
        return visible.width() >= std::min(handle.width(), topRow.width()) &&
               visible.height() >= handle.height() / 2;
    });
    return reachable ? std::optional(remembered) : std::nullopt;
}

} // namespace halvane
