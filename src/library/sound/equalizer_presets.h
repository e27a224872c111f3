// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/l10n.h"

#include <QString>

#include <array>

namespace halvane {

/// A curve of the equalizer that comes with the program.
struct EQPreset {
    QString id;
    L10nKey labelKey;
    std::array<double, 10> gains; ///< dB, in band order
};

/// The built-in presets, in menu order. Any thread.
const std::array<EQPreset, 10>& builtInEQPresets();

/// The id of a preset as the current one, which is stored and which presetMenuTitle takes.
QString builtInEQPresetID(const QString& id);
QString userEQPresetID(const QString& name);
// The inverse; empty for an id of the other kind.
QString builtInEQPresetOf(const QString& currentEQPresetID);
QString userEQPresetOf(const QString& currentEQPresetID);

/// The title of the preset menu for the current preset. An empty id is a curve of the user's own.
/// Any thread.
QString presetMenuTitle(const QString& currentEQPresetID, ResolvedLanguage language);

} // namespace halvane
