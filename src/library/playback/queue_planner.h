// SPDX-License-Identifier: MIT
// Which entry of the queue plays next. Pure: the queue as it stands goes in, a decision comes out.
// Entries are given by their place in the queue. Any thread.
#pragma once

#include "model/enums.h"

#include <cstddef>
#include <functional>
#include <optional>

namespace halvane {

/// The queue as a decision sees it.
class QueueView {
  public:
    virtual ~QueueView() = default;
    virtual std::size_t size() const = 0;
    /// The entry that is current.
    virtual std::optional<std::size_t> current() const = 0;
    /// The entry has a file, and nothing is known against playing it.
    virtual bool isPlayable(std::size_t entry) const = 0;
    /// The entry has been played in the present shuffle cycle.
    virtual bool wasPlayed(std::size_t entry) const = 0;
    virtual bool isSameFile(std::size_t entry, std::size_t other) const = 0;
};

struct PlayMode {
    PlaybackRepeatMode repeat = PlaybackRepeatMode::off;
    bool shuffle = false;
};

/// What an advance comes to.
struct Advance {
    std::optional<std::size_t> entry; ///< none: playback ends
    bool userInitiated = false;
    bool startsCycle = false; ///< the shuffle memory is emptied first

    bool operator==(const Advance&) const = default;
};

/// Gives a number from 0 to below its argument, each as likely as the others.
using RandomIndex = std::function<std::size_t(std::size_t count)>;

/// Where an advance leads: the user's Next (manual), or the end of a track.
Advance nextEntry(const QueueView& queue, PlayMode mode, bool manual, const RandomIndex& random);

/// Where the user's Previous leads; without an entry nothing happens.
Advance previousEntry(const QueueView& queue, PlayMode mode, const RandomIndex& random);

/// A random entry that has not been played in this cycle; with none left, a new cycle that does not
/// begin with the current entry, unless an automatic advance may not begin one.
Advance shuffledEntry(const QueueView& queue, PlaybackRepeatMode repeat, bool manual,
                      const RandomIndex& random);

/// The entry to hand to the engine ahead of time, that it may follow without a gap.
std::optional<std::size_t> gaplessSuccessor(const QueueView& queue, PlayMode mode);

/// The entry that a press of play starts while nothing is loaded.
std::optional<std::size_t> entryToStart(const QueueView& queue);

} // namespace halvane
