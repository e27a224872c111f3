// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace halvane {

/// A menu as the desktop is told of it. Plain value.
struct MenuEntry {
    QString title; ///< empty: a separator
    bool isEnabled = true;
    QString shortcut; ///< portable form, such as Ctrl+Shift+S; may be empty
    std::function<void()> action;
    std::vector<MenuEntry> children;
};

} // namespace halvane
