// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/app_theme.h"
#include "presentation/qt_colors.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// The constant colours and the fonts of the windows, for QML. What a listener chooses is
/// ThemeSettings'. Pure. Main thread.
class AppPalette : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor sidebarBackground READ sidebarBackground CONSTANT)
    Q_PROPERTY(QColor panel READ panel CONSTANT)
    Q_PROPERTY(QColor panelRaised READ panelRaised CONSTANT)
    Q_PROPERTY(QColor controlBackground READ controlBackground CONSTANT)
    Q_PROPERTY(QColor line READ line CONSTANT)
    Q_PROPERTY(QColor primaryText READ primaryText CONSTANT)
    Q_PROPERTY(QColor secondaryText READ secondaryText CONSTANT)
    Q_PROPERTY(QColor tertiaryText READ tertiaryText CONSTANT)
    Q_PROPERTY(QColor warmAccent READ warmAccent CONSTANT)
    Q_PROPERTY(QColor gold READ gold CONSTANT)

  public:
    using QObject::QObject;

    [[nodiscard]] QColor sidebarBackground() const { return qtColor(AppTheme::sidebarBackground); }
    [[nodiscard]] QColor panel() const { return qtColor(AppTheme::panel); }
    [[nodiscard]] QColor panelRaised() const { return qtColor(AppTheme::panelRaised); }
    [[nodiscard]] QColor controlBackground() const { return qtColor(AppTheme::controlBackground); }
    [[nodiscard]] QColor line() const { return qtColor(AppTheme::line); }
    [[nodiscard]] QColor primaryText() const { return qtColor(AppTheme::primaryText); }
    [[nodiscard]] QColor secondaryText() const { return qtColor(AppTheme::secondaryText); }
    [[nodiscard]] QColor tertiaryText() const { return qtColor(AppTheme::tertiaryText); }
    [[nodiscard]] QColor warmAccent() const { return qtColor(AppTheme::warmAccent); }
    [[nodiscard]] QColor gold() const { return qtColor(AppTheme::gold); }

    /// A text style: pixels, weight (100...900) and space between letters in pixels. Latin is set
    /// in Inter, Chinese in Noto Sans CJK SC.
    Q_INVOKABLE [[nodiscard]] QFont font(int pixels, int weight, double spacing = 0) const {
        QFont result;
        result.setFamilies({QStringLiteral("Inter"), QStringLiteral("Noto Sans CJK SC")});
        result.setPixelSize(pixels);
        result.setWeight(static_cast<QFont::Weight>(weight));
        if (spacing != 0)
            result.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
        return result;
    }

    /// The same with every letter as wide as the next, for key caps. The face is named, since
    /// "monospace" is another one on every desktop.
    Q_INVOKABLE [[nodiscard]] QFont fixedWidthFont(int pixels, int weight) const {
        QFont result = font(pixels, weight);
        result.setFamily(QStringLiteral("DejaVu Sans Mono"));
        return result;
    }
};

} // namespace halvane::views
