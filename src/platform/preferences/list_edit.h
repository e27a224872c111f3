// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace halvane {

/// A text of a stored list, and the number that gives it its place; places grow, with gaps.
struct PlacedText {
    qint64 position;
    QString text;
};

/// What turns one stored list into another: places to empty, then texts to put in.
struct ListEdit {
    std::vector<qint64> removed;
    std::vector<PlacedText> inserted;
};

/// The room that is left between a list's last text and one that is appended.
inline constexpr qint64 listSpacing = qint64(1) << 20;

/// The edit that makes the stored list read as the wanted one. What stays in order stays in place,
/// so that a few texts more or fewer in a long list are few changes. Any thread.
ListEdit planListEdit(const std::vector<PlacedText>& stored, const QStringList& wanted);

} // namespace halvane
