// SPDX-License-Identifier: MIT
#include "library/sound/equalizer_presets.h"
#include "library/sound/equalizer_settings.h"
#include "library/user/language_setting.h"
#include "library/user/settings_keys.h"
#include "library/user/settings_values.h"
#include "library/user/track_user_data.h"
#include "presentation/l10n.h"
#include "support/fake_environment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

const double infinity = std::numeric_limits<double>::infinity();

TEST(SettingsValues, OnlyUsableValuesAreTaken) {
    const std::pair<std::optional<double>, std::optional<double>> volumes[] = {
        {1.7, 1.0},       {-0.3, 0.0},     {std::nan(""), 0.0}, {0.25, 0.25},
        {-infinity, 0.0}, {infinity, 1.0}, {std::nullopt, {}},
    };
    for (const auto& [stored, expected] : volumes)
        EXPECT_EQ(storedVolume(stored), expected);

    using Modes = PlaybackRepeatMode;
    EXPECT_EQ(storedEnum<Modes>(u"all"_s), Modes::all);
    for (const std::optional<QString>& stored : {std::optional(u"ALL"_s), std::optional(u""_s),
                                                 std::optional(u"1"_s), std::optional<QString>()})
        EXPECT_EQ(storedEnum<Modes>(stored), std::nullopt);

    EXPECT_EQ(storedColor(std::vector{0.2, 0.4, 0.6}), (Color{0.2, 0.4, 0.6, 1}));
    EXPECT_EQ(storedColor(std::vector{0.2, 0.4}), std::nullopt);
    EXPECT_EQ(storedColor(std::vector{0.2, 0.4, 0.6, 1.0}), std::nullopt);
    EXPECT_EQ(storedColor(std::vector{0.2, 0.4, std::nan("")}), std::nullopt);
    EXPECT_EQ(colorNumbers({0.2, 0.4, 0.6, 0.5}), (std::vector{0.2, 0.4, 0.6}));
    EXPECT_EQ(colorNumbers({infinity, 0, 0}), std::nullopt);
    EXPECT_EQ(storedGains(std::vector<double>(9)), std::nullopt);
    EXPECT_EQ(storedGains(std::vector<double>(11)), std::nullopt);
    EXPECT_EQ(storedGains(std::vector<double>(10, 15)), std::vector<double>(10, 15));
}

struct TrackUserDataTest : testing::Test {
    MemoryPreferences preferences;
    const QString path = u"/music/a.flac"_s;
};

TEST_F(TrackUserDataTest, ChangesAreStoredByTheEntryAndReadBack) {
    TrackUserData data(preferences);
    int rated = 0;
    QObject::connect(&data, &TrackUserData::ratingChanged, &data, [&] { ++rated; });
    data.toggleLoved(path);
    data.toggleLoved(u"/b"_s);
    data.toggleLoved(u"/b"_s);
    data.setRating(7, path);
    data.setRating(5, path); // no change: it is 5 already
    data.setRating(3, u"/b"_s);
    data.setRating(-2, u"/b"_s);
    data.countPlay(path);
    data.countPlay(path);
    EXPECT_EQ(rated, 3);
    data.toggleLoved({});
    data.setRating(4, {});
    data.countPlay({});

    TrackUserData restored(preferences);
    restored.restore();
    EXPECT_EQ(restored.lovedPaths(), QSet{path});
    EXPECT_EQ(restored.trackRatings(), (IntegerMap{{path, 5}}));
    EXPECT_EQ(restored.playCounts(), (IntegerMap{{path, 2}}));

    restored.forget({path, u"/unknown"_s});
    EXPECT_FALSE(restored.isLoved(path) || restored.rating(path) || restored.playCount(path));
}

TEST_F(TrackUserDataTest, ALovedPathStoredTwiceIsOneAndMapsOfAnotherKindAreLeftAlone) {
    preferences.setStrings(SettingsKey::lovedPaths, {path, path});
    preferences.insertNumbers(SettingsKey::trackRatings, path, {1});
    TrackUserData data(preferences);
    data.restore();
    EXPECT_EQ(data.lovedPaths(), QSet{path});
    EXPECT_EQ(*preferences.strings(SettingsKey::lovedPaths), QStringList{path});
    EXPECT_TRUE(data.trackRatings().isEmpty());
    EXPECT_EQ(preferences.changes(SettingsKey::trackRatings), 1);
}

TEST_F(TrackUserDataTest, APlayCountAtItsEndStays) {
    const qint64 most = std::numeric_limits<qint64>::max();
    preferences.insertInteger(SettingsKey::playCounts, path, most);
    TrackUserData data(preferences);
    data.restore();
    data.countPlay(path);
    EXPECT_EQ(data.playCount(path), most);
}

TEST(LanguageSetting, FollowsTheChoiceAndTheSystem) {
    MemoryPreferences preferences;
    FakeLanguages system;
    preferences.setString(SettingsKey::language, u"System"_s);
    LanguageSetting setting(preferences, system);
    int changed = 0;
    QObject::connect(&setting, &LanguageSetting::languageChanged, &setting, [&] { ++changed; });
    setting.restore(); // no enumerator has that name
    EXPECT_EQ(setting.languageSetting(), AppLanguage::english);
    EXPECT_EQ(*preferences.string(SettingsKey::language), u"System"_s);

    setting.setLanguageSetting(AppLanguage::system);
    EXPECT_EQ(setting.resolvedLanguage(), ResolvedLanguage::english);
    system.list = {u"zh-Hans-CN"_s};
    setting.systemLanguagesChanged();
    EXPECT_EQ(setting.resolvedLanguage(), ResolvedLanguage::simplifiedChinese);
    EXPECT_EQ(changed, 2);
    EXPECT_EQ(*preferences.string(SettingsKey::language), u"system"_s);
}

struct EqualizerSettingsTest : testing::Test {
    struct Applied {
        bool enabled;
        std::vector<double> gains;
        double preamp;
    };
    MemoryPreferences preferences;
    Applied applied{};
    int applications = 0;
    FakeLanguages languages;
    LanguageSetting language{preferences, languages};
    EqualizerSettings equalizer{preferences, language};

    EqualizerSettingsTest() {
        QObject::connect(&equalizer, &EqualizerSettings::applied,
                         [this](bool enabled, const std::vector<double>& gains, double preamp) {
                             applied = {enabled, gains, preamp};
                             ++applications;
                         });
    }

    [[nodiscard]] QString title() const { return equalizer.presetMenuTitle(); }
    [[nodiscard]] std::vector<double> rock() const { return {4, 3, 1, 0, -1, 0, 1, 3, 4, 4}; }
};

TEST_F(EqualizerSettingsTest, ABuiltInPresetAppliesUntilAFaderMoves) {
    equalizer.setEqPreamp(3);
    equalizer.applyBuiltInEQPreset(u"rock"_s);
    EXPECT_EQ(applied.gains, rock());
    EXPECT_EQ(applied.preamp, 0);
    EXPECT_FALSE(applied.enabled); // a preset does not switch the equalizer on
    EXPECT_EQ(title(), u"Rock"_s);
    EXPECT_EQ(*preferences.string(SettingsKey::eqPresetID), u"builtin:rock"_s);

    const int before = applications;
    equalizer.applyBuiltInEQPreset(u"unknown"_s);
    equalizer.setEqGain(10, 1);
    equalizer.setEqGain(-1, 1);
    equalizer.setEqGain(0, std::nan(""));
    EXPECT_EQ(applications, before);

    equalizer.setEqGain(9, 15); // kept as given, because the engine clamps
    EXPECT_EQ(applied.gains.back(), 15);
    EXPECT_EQ(title(), u"Custom"_s);
    EXPECT_FALSE(preferences.string(SettingsKey::eqPresetID));
    EXPECT_EQ(preferences.numbers(SettingsKey::eqGains)->back(), 15);
}

TEST_F(EqualizerSettingsTest, UserPresetsKeepThePreampAndTheirTrimmedName) {
    equalizer.applyBuiltInEQPreset(u"jazz"_s);
    equalizer.setEqPreamp(-2.5);
    equalizer.saveCurrentEQPreset(u"  \n "_s);
    EXPECT_TRUE(equalizer.userEQPresets().isEmpty());
    equalizer.saveCurrentEQPreset(u"  Warm\t"_s);
    EXPECT_EQ(title(), u"Warm"_s);

    equalizer.applyBuiltInEQPreset(u"flat"_s);
    equalizer.applyUserEQPreset(u"Warm"_s);
    EXPECT_EQ(applied.gains, (std::vector<double>{3, 2, 1, 2, -1, -1, 0, 1, 2, 3}));
    EXPECT_EQ(applied.preamp, -2.5);

    equalizer.setEqPreamp(1);
    equalizer.saveCurrentEQPreset(u"Warm"_s); // in the place of the first
    EXPECT_EQ(preferences.numbersMap(SettingsKey::eqUserPresets)->value(u"Warm"_s).back(), 1);
    equalizer.saveCurrentEQPreset(u"air 10"_s);
    equalizer.saveCurrentEQPreset(u"Air 9"_s);
    EXPECT_EQ(equalizer.userEQPresetNames(), (QStringList{u"Air 9"_s, u"air 10"_s, u"Warm"_s}));

    equalizer.applyUserEQPreset(u"Warm"_s);
    const auto sound = applied.gains;
    equalizer.deleteUserEQPreset(u" Warm"_s); // this name is not trimmed
    EXPECT_EQ(title(), u"Warm"_s);
    equalizer.deleteUserEQPreset(u"Warm"_s);
    EXPECT_EQ(title(), u"Custom"_s);
    EXPECT_EQ(equalizer.eqGains(), sound);
    EXPECT_FALSE(preferences.numbersMap(SettingsKey::eqUserPresets)->contains(u"Warm"_s));
}

TEST_F(EqualizerSettingsTest, RestoresWhatIsUsableAndKeepsThePreset) {
    preferences.setNumbers(SettingsKey::eqGains, rock());
    preferences.setNumber(SettingsKey::eqPreamp, -20);
    preferences.insertNumbers(SettingsKey::eqUserPresets, u"Short"_s, std::vector<double>(10));
    preferences.setString(SettingsKey::eqPresetID, u"builtin:rock"_s);
    preferences.setBoolean(SettingsKey::eqEnabled, true);
    equalizer.restore();
    EXPECT_TRUE(applied.enabled);
    EXPECT_EQ(applied.gains, rock());
    EXPECT_EQ(applied.preamp, -20);
    EXPECT_EQ(title(), u"Rock"_s);
    EXPECT_EQ(*preferences.string(SettingsKey::eqPresetID), u"builtin:rock"_s);

    EXPECT_EQ(equalizer.userEQPresetNames(), QStringList{u"Short"_s});
    const int before = applications;
    equalizer.applyUserEQPreset(u"Short"_s);
    EXPECT_EQ(applications, before);
}

TEST_F(EqualizerSettingsTest, MalformedValuesLeaveTheDefaultsAndStayStored) {
    preferences.setNumbers(SettingsKey::eqGains, std::vector<double>(9, 1.0));
    preferences.setString(SettingsKey::eqPreamp, u"loud"_s);
    preferences.insertInteger(SettingsKey::eqUserPresets, u"a"_s, 1);
    preferences.setString(SettingsKey::eqEnabled, u"yes"_s);
    equalizer.restore();
    EXPECT_EQ(equalizer.eqGains(), std::vector<double>(10, 0.0));
    EXPECT_EQ(equalizer.eqPreamp(), 0);
    EXPECT_FALSE(equalizer.eqEnabled());
    EXPECT_TRUE(equalizer.userEQPresets().isEmpty());
    for (const auto& key : {SettingsKey::eqGains, SettingsKey::eqPreamp, SettingsKey::eqUserPresets,
                            SettingsKey::eqEnabled})
        EXPECT_EQ(preferences.changes(key), 1) << key.toStdString();
}

TEST(EqualizerPresets, TheMenuTitleNamesThePreset) {
    const std::pair<QString, QString> cases[] = {
        {{}, u"Custom"_s},
        {u"builtin:vocal"_s, u"Vocal"_s},
        {u"builtin:none"_s, u"Custom"_s},
        {u"user: a "_s, u" a "_s},
        {u"vocal"_s, u"Custom"_s},
    };
    for (const auto& [id, expected] : cases)
        EXPECT_EQ(presetMenuTitle(id, ResolvedLanguage::english), expected);
    EXPECT_EQ(presetMenuTitle(u"builtin:rock"_s, ResolvedLanguage::simplifiedChinese), u"摇滚"_s);
}

} // namespace
} // namespace halvane::test
