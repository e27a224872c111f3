// SPDX-License-Identifier: MIT
#include "library/sound/equalizer_presets.h"

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr auto builtInPrefix = "builtin:"_L1;
constexpr auto userPrefix = "user:"_L1;

QString withoutPrefix(const QString& id, QLatin1StringView prefix) {
    return id.startsWith(prefix) ? id.sliced(prefix.size()) : QString();
}

} // namespace

const std::array<EQPreset, 10>& builtInEQPresets() {
    static const std::array<EQPreset, 10> presets{{
        {u"flat"_s, L10nKey::presetFlat, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {u"bassBoost"_s, L10nKey::presetBassBoost, {6, 5, 4, 2, 0, 0, 0, 0, 0, 0}},
        {u"trebleBoost"_s, L10nKey::presetTrebleBoost, {0, 0, 0, 0, 0, 0, 1, 3, 5, 6}},
        {u"vocal"_s, L10nKey::presetVocal, {-2, -1, 0, 2, 4, 4, 3, 1, 0, -1}},
        {u"loudness"_s, L10nKey::presetLoudness, {5, 4, 2, 0, -1, -1, 0, 2, 4, 5}},
        {u"rock"_s, L10nKey::presetRock, {4, 3, 1, 0, -1, 0, 1, 3, 4, 4}},
        {u"jazz"_s, L10nKey::presetJazz, {3, 2, 1, 2, -1, -1, 0, 1, 2, 3}},
        {u"classical"_s, L10nKey::presetClassical, {3, 2, 1, 0, 0, 0, -1, 1, 2, 3}},
        {u"electronic"_s, L10nKey::presetElectronic, {5, 4, 1, 0, -2, 1, 1, 3, 4, 5}},
        {u"acoustic"_s, L10nKey::presetAcoustic, {3, 3, 2, 1, 1, 1, 2, 2, 3, 2}},
    }};
    return presets;
}

QString builtInEQPresetID(const QString& id) {
    return builtInPrefix + id;
}

QString userEQPresetID(const QString& name) {
    return userPrefix + name;
}

QString builtInEQPresetOf(const QString& currentEQPresetID) {
    return withoutPrefix(currentEQPresetID, builtInPrefix);
}

QString userEQPresetOf(const QString& currentEQPresetID) {
    return withoutPrefix(currentEQPresetID, userPrefix);
}

QString presetMenuTitle(const QString& currentEQPresetID, ResolvedLanguage language) {
    for (const auto& preset : builtInEQPresets())
        if (currentEQPresetID == builtInEQPresetID(preset.id))
            return L10n::text(preset.labelKey, language);
    if (currentEQPresetID.startsWith(userPrefix))
        return currentEQPresetID.sliced(userPrefix.size());
    return L10n::text(L10nKey::tintCustom, language);
}

} // namespace halvane
