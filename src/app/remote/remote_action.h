// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"
#include "model/enums.h"

#include <QStringList>

#include <optional>

namespace halvane {

/// What can be asked of the player from outside: on the command line and by org.freedesktop.
/// Application's actions. A plain value.
struct RemoteAction {
    enum class Kind {
        playPause,
        play,
        pause,
        stop,
        next,
        previous,
        seek,
        volume,
        mute,
        shuffle,
        repeat,
        love,
        rate,
        showHide,
        fullPlayer,
        stopAfterCurrent,
        sleepTimer,
    };

    Kind kind = Kind::playPause;
    double amount = 0; ///< seek: seconds; volume: 0...1; rate: stars, 0...5; sleepTimer: minutes
    bool isRelative = false;                    ///< the amount is added to what is
    std::optional<bool> on{};                   ///< the switches; none: the other way round
    std::optional<PlaybackRepeatMode> repeat{}; ///< none: the next mode

    bool operator==(const RemoteAction&) const = default;
};

/// Reads an action as users write it: "Next", "Seek=+10", "Repeat=all".
Result<RemoteAction> readAction(const QString& text);

/// One line for each action: how it is written, and what it does.
QString actionHelp();
/// Their names alone.
QStringList actionNames();

/// Files that are opened with such an action are played, which is all that it asks.
bool isDoneByOpening(const RemoteAction& action);
/// The action is about the queue or its current entry, and waits for these at the start.
bool isAboutTracks(const RemoteAction& action);

} // namespace halvane
