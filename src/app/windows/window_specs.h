// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>

#include <optional>
#include <vector>

namespace halvane {

/// How one window of the program is set up.
struct WindowSpec {
    enum class Kind {
        normal,         ///< framed by the desktop
        hiddenTitleBar, ///< frameless: its own top row stands in for the title bar
        popup,          ///< frameless, above others, gone when it loses the keyboard
    };

    QString id;
    QString title; ///< always English
    QString file;  ///< of the views' module
    Kind kind = Kind::normal;
    std::optional<QSize> defaultSize; ///< none: the window follows its content
    QSize minimumSize;

    [[nodiscard]] bool isResizable() const { return defaultSize.has_value(); }
};

const std::vector<WindowSpec>& windowSpecs();
/// Null when there is no such window.
const WindowSpec* windowSpec(const QString& id);

} // namespace halvane
