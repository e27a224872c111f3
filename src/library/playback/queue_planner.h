// SPDX-License-Identifier: MIT
// Which entry of the queue plays next. Entries are given by their place in the queue. Pure; any
// thread.
#pragma once

#include "model/enums.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace halvane {

/// The queue as a decision sees it.
class QueueView {
  public:
    virtual ~QueueView() = default;
    [[nodiscard]] virtual std::size_t size() const = 0;
    /// The entry that is current.
    [[nodiscard]] virtual std::optional<std::size_t> current() const = 0;
    /// The entry's file is available, as far as is known.
    [[nodiscard]] virtual bool isPlayable(std::size_t entry) const = 0;
    /// The entry has been played in the present shuffle cycle.
    [[nodiscard]] virtual bool wasPlayed(std::size_t entry) const = 0;
    /// The user has asked to hear the entry next, and has not heard it yet.
    [[nodiscard]] virtual bool isAskedFor(std::size_t entry) const = 0;
    [[nodiscard]] virtual bool isSameFile(std::size_t entry, std::size_t other) const = 0;
};

struct PlayMode {
    PlaybackRepeatMode repeat = PlaybackRepeatMode::off;
    bool shuffle = false;
};

/// What comes next.
struct Advance {
    std::optional<std::size_t> entry; ///< none: playback ends
    bool userInitiated = false;
    bool startsCycle = false; ///< the shuffle memory is emptied first

    bool operator==(const Advance&) const = default;
};

/// Gives a number from 0 up to, and without, its argument. All are equally likely.
using RandomIndex = std::function<std::size_t(std::size_t count)>;

/// The entry after the current one. `manual` means the user's Next, otherwise a track has ended.
/// Shuffle takes the entries that were asked for before all others, in the queue's order.
Advance nextEntry(const QueueView& queue, PlayMode mode, bool manual, const RandomIndex& random);

/// The entry of the user's Previous. Nothing happens without one.
Advance previousEntry(const QueueView& queue, PlayMode mode, const RandomIndex& random);

/// A random entry that has not been played in this cycle. With none left, a new cycle begins. An
/// automatic advance begins one only when all is repeated. The current entry is chosen only where
/// there is no other.
Advance shuffledEntry(const QueueView& queue, PlaybackRepeatMode repeat, bool manual,
                      const RandomIndex& random);

/// The entry to hand to the engine ahead of time, so that it can follow without a gap.
std::optional<std::size_t> gaplessSuccessor(const QueueView& queue, PlayMode mode);

/// The playable entries that are heard before and after an entry in the order of the queue. None
/// while shuffle chooses each entry when the one before ends.
std::vector<std::size_t> neighbours(const QueueView& queue, PlayMode mode, std::size_t entry);

/// The entry that the play button starts while nothing is loaded.
std::optional<std::size_t> entryToStart(const QueueView& queue);

} // namespace halvane
