// SPDX-License-Identifier: MIT
#include "library/user/ambient_color.h"
#include "library/user/settings_keys.h"
#include "library/user/theme_settings.h"
#include "presentation/artwork_color.h"
#include "support/child_process.h"
#include "support/memory_preferences.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray picture(QRgb color) {
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(color);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

// Gives its bytes only when the gate is opened.
struct SlowSource final : ArtworkSource {
    QByteArray bytes;
    mutable QSemaphore gate;
    [[nodiscard]] QByteArray read() const override {
        gate.acquire();
        return bytes;
    }
    [[nodiscard]] QString key() const override { return u"slow"_s; }
};

// Waits until nobody reads it any more.
void awaitEnd(const std::shared_ptr<SlowSource>& source) {
    while (source.use_count() > 1)
        std::this_thread::yield();
}

struct ThemeTest : testing::Test {
    MemoryPreferences preferences;
    AmbientColor ambient;
    ThemeSettings theme{preferences, ambient};

    void landAmbient(const std::optional<Artwork>& artwork, const std::optional<Color>& fallback) {
        bool landed = false;
        const auto connection = QObject::connect(&ambient, &AmbientColor::ambientColorChanged,
                                                 &ambient, [&] { landed = true; });
        ambient.updateAmbientColor(artwork, {}, fallback);
        ASSERT_TRUE(waitFor([&] { return landed; }));
        QObject::disconnect(connection);
    }
};

TEST_F(ThemeTest, TheStyleFollowsTheSettings) {
    theme.setThemeAccentMode(SpectrumTintMode::gold);
    theme.setThemeCornerStyle(CornerStyle::round);
    theme.setThemeBackgroundStyle(BackgroundStyle::oled);
    EXPECT_EQ(theme.style(), (AppTheme::Style{AppTheme::gold, Color{0, 0, 0}, {18, 14, 11}}));
    EXPECT_EQ(theme.ambientBackgroundBoost(), 0);
    theme.setThemeBackgroundStyle(BackgroundStyle::ambient);
    EXPECT_EQ(theme.style().windowBackground, AppTheme::defaultWindowBackground);
    EXPECT_EQ(theme.ambientBackgroundBoost(), 0.22);

    // Mint means the default accent, but for the spectrum it means the accent in use.
    theme.setSpectrumTintMode(SpectrumTintMode::mint);
    EXPECT_EQ(theme.spectrumTint(), AppTheme::gold);
    theme.setThemeAccentMode(SpectrumTintMode::mint);
    EXPECT_EQ(theme.spectrumTint(), AppTheme::defaultAccent);
    theme.setSpectrumTintMode(SpectrumTintMode::sunset);
    EXPECT_EQ(theme.spectrumTint(), AppTheme::warmAccent);
    theme.setSpectrumTintMode(SpectrumTintMode::ambient);
    EXPECT_EQ(theme.spectrumTint(), ArtworkColor::vivid(AppTheme::defaultAccent));
}

TEST_F(ThemeTest, ColoursReadBackAsTheVeryNumbers) {
    const Color color{0.2, 0.4, 0.6};
    theme.setCustomThemeAccent(color);
    theme.setCustomSpectrumColor({0.1, 1.0 / 3, 0.3, 0.5});
    theme.setThemeAccentMode(SpectrumTintMode::custom);
    ThemeSettings restored(preferences, ambient);
    restored.restoreSpectrum();
    restored.restoreTheme();
    EXPECT_EQ(restored.customThemeAccent(), color);
    EXPECT_EQ(restored.customSpectrumColor(), (Color{0.1, 1.0 / 3, 0.3, 1}));

    restored.setCustomThemeAccent({std::numeric_limits<double>::infinity(), 0, 0});
    EXPECT_EQ(*preferences.numbers(SettingsKey::customThemeAccent), (std::vector{0.2, 0.4, 0.6}));
}

TEST_F(ThemeTest, StoredTextsThatNameNoCaseLeaveTheDefaults) {
    const auto keys = {SettingsKey::themeAccentMode, SettingsKey::themeCornerStyle,
                       SettingsKey::themeBackgroundStyle, SettingsKey::spectrumTintMode};
    for (const auto& key : keys)
        preferences.setString(key, u"Gold"_s);
    theme.restoreSpectrum();
    theme.restoreTheme();
    EXPECT_EQ(theme.themeAccentMode(), SpectrumTintMode::mint);
    EXPECT_EQ(theme.spectrumTintMode(), SpectrumTintMode::ambient);
    EXPECT_EQ(theme.style(), AppTheme::Style());
    for (const auto& key : keys)
        EXPECT_EQ(*preferences.string(key), u"Gold"_s);
}

TEST(AccentTest, TextInItIsLegibleAndItsHueStays) {
    struct Case {
        const char* name;
        Color picked;
        bool stays;
    };
    const Case cases[]{
        {"mint", AppTheme::defaultAccent, true},
        {"gold", AppTheme::gold, true},
        {"white", {1, 1, 1}, true},
        {"black", {0, 0, 0}, false},
        {"pure blue", {0, 0, 1}, false},
        {"pure red", {1, 0, 0}, false},
        {"night blue", {0.16, 0.18, 0.61}, false},
        {"wine", {0.4, 0.05, 0.15}, false},
        {"mid grey", {0.4, 0.4, 0.4}, false},
        {"vivid violet", {0.45, 0.1, 0.9}, false},
    };
    EXPECT_NEAR(AppTheme::contrast({1, 1, 1}, {0, 0, 0}), 21, 1e-9);
    EXPECT_NEAR(AppTheme::contrast({0.4, 0.4, 0.4}, {1, 1, 1}), 5.74, 0.01);
    for (const auto& [name, picked, stays] : cases) {
        SCOPED_TRACE(name);
        const Color shown = AppTheme::legible(picked);
        EXPECT_EQ(shown == picked, stays);
        for (const Color& surface :
             {AppTheme::defaultWindowBackground, AppTheme::sidebarBackground, AppTheme::panel,
              AppTheme::controlBackground, AppTheme::panelRaised})
            EXPECT_GE(AppTheme::contrast(shown, surface), 4.5);
        EXPECT_GE(AppTheme::contrast(Color{0.03, 0.05, 0.05}, shown), 4.5) << "text on it";
        if (hsbOf(shown).saturation > 0.01) {
            EXPECT_NEAR(hsbOf(shown).hue, hsbOf(picked).hue, 1e-6);
        }
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(AppTheme::legible({nan, 0, 0}).red));
}

TEST_F(ThemeTest, TheAccentFollowsTheArtworkOnlyWhereItIsAskedTo) {
    const auto red = Artwork::fromBytes(picture(qRgb(255, 0, 0)));
    landAmbient(red, {});
    EXPECT_EQ(theme.style().accent, AppTheme::defaultAccent);
    theme.setThemeAccentMode(SpectrumTintMode::ambient);
    const auto hue = hsbOf(theme.style().accent).hue;
    EXPECT_NEAR(hue, 0, 1e-9);
    landAmbient(Artwork::fromBytes(picture(qRgb(0, 0, 255))), {});
    EXPECT_NEAR(hsbOf(theme.style().accent).hue, 2.0 / 3, 1e-9);
}

TEST_F(ThemeTest, WithoutAPictureTheFallbackIsTaken) {
    const Color fallback{0.5, 0.25, 0.125};
    landAmbient(Artwork::fromBytes("no picture"), fallback);
    EXPECT_EQ(ambient.ambientColor(), fallback);
    landAmbient({}, {});
    EXPECT_EQ(ambient.ambientColor(), AppTheme::defaultAccent);
}

TEST_F(ThemeTest, OnlyTheLatestRequestLandsEvenIfAnEarlierOneEndsLast) {
    const auto slow = std::make_shared<SlowSource>();
    slow->bytes = picture(qRgb(255, 0, 0));
    ambient.updateAmbientColor(Artwork(slow), {}, {});
    landAmbient(Artwork::fromBytes(picture(qRgb(0, 0, 255))), {});
    const Color blue = ambient.ambientColor();
    slow->gate.release();
    awaitEnd(slow);
    QCoreApplication::processEvents();
    EXPECT_EQ(ambient.ambientColor(), blue);
}

TEST_F(ThemeTest, ARequestThatOutlivesItsAskerIsDropped) {
    const auto slow = std::make_shared<SlowSource>();
    {
        AmbientColor shortLived;
        shortLived.updateAmbientColor(Artwork(slow), {}, {});
    }
    slow->gate.release();
    awaitEnd(slow);
    QCoreApplication::processEvents(); // must not touch the destroyed asker
}

} // namespace
} // namespace halvane::test
