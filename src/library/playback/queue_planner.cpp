// SPDX-License-Identifier: MIT
#include "library/playback/queue_planner.h"

namespace halvane {

namespace {

std::optional<std::size_t> firstPlayable(const QueueView& queue, std::size_t from) {
    for (std::size_t i = from; i < queue.size(); ++i) {
        if (queue.isPlayable(i))
            return i;
    }
    return std::nullopt;
}

std::optional<std::size_t> lastPlayable(const QueueView& queue, std::size_t before) {
    for (std::size_t i = before; i-- > 0;) {
        if (queue.isPlayable(i))
            return i;
    }
    return std::nullopt;
}

// Whether wrapping round may land on an entry. It must be playable and not the current file.
bool isWrapTarget(const QueueView& queue, std::size_t entry) {
    const auto current = queue.current();
    return queue.isPlayable(entry) && !(current && queue.isSameFile(entry, *current));
}

std::optional<std::size_t> firstAskedFor(const QueueView& queue) {
    for (std::size_t i = 0; i < queue.size(); ++i) {
        if (queue.isAskedFor(i) && queue.isPlayable(i))
            return i;
    }
    return std::nullopt;
}

Advance nextInOrder(const QueueView& queue, PlaybackRepeatMode repeat, bool manual) {
    const auto current = queue.current();
    if (const auto next = firstPlayable(queue, current ? *current + 1 : 0))
        return {next, manual};
    if (manual || repeat == PlaybackRepeatMode::all) {
        for (std::size_t i = 0; i < queue.size(); ++i) {
            if (isWrapTarget(queue, i))
                return {i, manual};
        }
    }
    // A queue of one file repeats as one of many does.
    const auto again = repeat == PlaybackRepeatMode::all ? firstPlayable(queue, 0) : std::nullopt;
    return again ? Advance{again, manual} : Advance{};
}

} // namespace

Advance shuffledEntry(const QueueView& queue, PlaybackRepeatMode repeat, bool manual,
                      const RandomIndex& random) {
    const auto current = queue.current();
    std::vector<std::size_t> unplayed;
    std::vector<std::size_t> playable;
    for (std::size_t i = 0; i < queue.size(); ++i) {
        if (!queue.isPlayable(i))
            continue;
        playable.push_back(i);
        if (!queue.wasPlayed(i))
            unplayed.push_back(i);
    }
    if (playable.empty())
        return {};
    if (current && unplayed.size() >= 2)
        std::erase(unplayed, *current);
    if (!unplayed.empty())
        return {unplayed[random(unplayed.size())], manual};
    if (repeat != PlaybackRepeatMode::all && !manual)
        return {};
    if (current && playable.size() >= 2)
        std::erase(playable, *current);
    return {playable[random(playable.size())], manual, true};
}

Advance nextEntry(const QueueView& queue, PlayMode mode, bool manual, const RandomIndex& random) {
    const auto current = queue.current();
    if (mode.repeat == PlaybackRepeatMode::one && !manual && current && queue.isPlayable(*current))
        return {current, false};
    if (!mode.shuffle)
        return nextInOrder(queue, mode.repeat, manual);
    if (const auto asked = firstAskedFor(queue))
        return {asked, manual};
    return shuffledEntry(queue, mode.repeat, manual, random);
}

Advance previousEntry(const QueueView& queue, PlayMode mode, const RandomIndex& random) {
    if (mode.shuffle)
        return shuffledEntry(queue, mode.repeat, true, random);
    for (std::size_t i = queue.current().value_or(0); i-- > 0;) {
        if (queue.isPlayable(i))
            return {i, true};
    }
    if (mode.repeat == PlaybackRepeatMode::all) {
        for (std::size_t i = queue.size(); i-- > 0;) {
            if (isWrapTarget(queue, i))
                return {i, true};
        }
    }
    return {};
}

std::optional<std::size_t> gaplessSuccessor(const QueueView& queue, PlayMode mode) {
    if (mode.shuffle || mode.repeat == PlaybackRepeatMode::one)
        return std::nullopt;
    const auto current = queue.current();
    auto next = firstPlayable(queue, current ? *current + 1 : 0);
    if (!next && mode.repeat == PlaybackRepeatMode::all)
        next = firstPlayable(queue, 0);
    return next == current ? std::nullopt : next;
}

std::vector<std::size_t> neighbours(const QueueView& queue, PlayMode mode, std::size_t entry) {
    std::vector<std::size_t> found;
    if (mode.shuffle)
        return found;
    const bool wraps = mode.repeat == PlaybackRepeatMode::all;
    const auto add = [&](std::optional<std::size_t> neighbour) {
        if (neighbour && *neighbour != entry)
            found.push_back(*neighbour);
    };
    const auto before = lastPlayable(queue, entry);
    add(before || !wraps ? before : lastPlayable(queue, queue.size()));
    const auto after = firstPlayable(queue, entry + 1);
    add(after || !wraps ? after : firstPlayable(queue, 0));
    return found;
}

std::optional<std::size_t> entryToStart(const QueueView& queue) {
    const auto current = queue.current();
    return current && queue.isPlayable(*current) ? current : firstPlayable(queue, 0);
}

} // namespace halvane
