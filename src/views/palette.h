// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/app_theme.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace halvane::views {

/// The program's palette and what follows from the theme settings, for QML. Pure. Main thread.
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

    QColor sidebarBackground() const { return shown(AppTheme::sidebarBackground); }
    QColor panel() const { return shown(AppTheme::panel); }
    QColor panelRaised() const { return shown(AppTheme::panelRaised); }
    QColor controlBackground() const { return shown(AppTheme::controlBackground); }
    QColor line() const { return shown(AppTheme::line); }
    QColor primaryText() const { return shown(AppTheme::primaryText); }
    QColor secondaryText() const { return shown(AppTheme::secondaryText); }
    QColor tertiaryText() const { return shown(AppTheme::tertiaryText); }
    QColor warmAccent() const { return shown(AppTheme::warmAccent); }
    QColor gold() const { return shown(AppTheme::gold); }

    /// A text style: pixels, weight (100...900) and space between letters in pixels. Latin is set
    /// in Inter, Chinese in Noto Sans CJK SC.
    Q_INVOKABLE QFont font(int pixels, int weight, double spacing = 0) const {
        QFont result;
        result.setFamilies({QStringLiteral("Inter"), QStringLiteral("Noto Sans CJK SC")});
        result.setPixelSize(pixels);
        result.setWeight(QFont::Weight(weight));
        if (spacing != 0)
            result.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
        return result;
    }

    /// The same with every letter as wide as the next, for key caps. Not whatever the desktop takes
    /// for "monospace", which is another one on each.
    Q_INVOKABLE QFont fixedWidthFont(int pixels, int weight) const {
        QFont result = font(pixels, weight);
        result.setFamily(QStringLiteral("DejaVu Sans Mono"));
        return result;
    }

    /// Styles and modes are the model's enumerations as numbers.
    Q_INVOKABLE QColor accent(int mode, const QColor& ambient, const QColor& custom) const {
        return shown(
            AppTheme::resolvedThemeAccent(SpectrumTintMode(mode), read(ambient), read(custom)));
    }
    Q_INVOKABLE QColor windowBackground(int style) const {
        return shown(AppTheme::windowBackground(BackgroundStyle(style)));
    }
    Q_INVOKABLE double radiusLarge(int style) const { return radii(style).large; }
    Q_INVOKABLE double radiusMedium(int style) const { return radii(style).medium; }
    Q_INVOKABLE double radiusSmall(int style) const { return radii(style).small; }

  private:
    static AppTheme::Radii radii(int style) { return AppTheme::radii(CornerStyle(style)); }
    static QColor shown(const Color& c) {
        return QColor::fromRgbF(float(c.red), float(c.green), float(c.blue), float(c.opacity));
    }
    static Color read(const QColor& c) {
        return {double(c.redF()), double(c.greenF()), double(c.blueF()), double(c.alphaF())};
    }
};

} // namespace halvane::views
