// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/transport_fixture.h"

#include <utility>

namespace halvane::test {

/// The transport's rules in their plainest form: recursive, and with nothing but lists.
class Reference {
  public:
    struct Entry {
        QUuid id;
        QString path;
    };

    Reference(const FakeEngine& world, const FakeFiles& disk, unsigned seed)
        : m_world(world)
        , m_disk(disk)
        , m_generator(seed) {}

    std::vector<Entry> entries;
    std::optional<std::size_t> current;
    QString loaded, pending;
    bool playing = false;
    bool shuffle = false;
    PlaybackRepeatMode repeat = PlaybackRepeatMode::off;
    QSet<QString> missing, inCloud;
    QSet<QUuid> played;
    QHash<QString, int> counts;

    [[nodiscard]] bool playable(std::size_t i) const {
        return !missing.contains(entries[i].path) && !inCloud.contains(entries[i].path);
    }

    void playItem(std::size_t i, bool user) {
        if (user && current == i && !loaded.isEmpty())
            toggle();
        else
            start(i, user);
    }

    void toggle() {
        if (playing) {
            playing = false;
        } else if (loaded.isEmpty()) {
            if (current && playable(*current))
                return start(*current, true);
            for (std::size_t i = 0; i < entries.size(); ++i) {
                if (playable(i))
                    return start(i, true);
            }
        } else {
            playing = true;
            plan();
        }
    }

    void next(bool manual) {
        if (repeat == PlaybackRepeatMode::one && !manual && current && playable(*current))
            return start(*current, false);
        if (shuffle) {
            const auto choice = randomPlayable(manual);
            return choice ? start(*choice, manual) : finish();
        }
        for (std::size_t i = current ? *current + 1 : 0; i < entries.size(); ++i) {
            if (playable(i))
                return start(i, manual);
        }
        if (manual || repeat == PlaybackRepeatMode::all) {
            for (std::size_t i = 0; i < entries.size(); ++i) {
                if (playable(i) && !isCurrentFile(i))
                    return start(i, manual);
            }
        }
        finish();
    }

    void previous() {
        if (shuffle) {
            if (const auto choice = randomPlayable(true))
                start(*choice, true);
            return;
        }
        for (std::size_t i = current.value_or(0); i-- > 0;) {
            if (playable(i))
                return start(i, true);
        }
        for (std::size_t i = entries.size(); repeat == PlaybackRepeatMode::all && i-- > 0;) {
            if (playable(i) && !isCurrentFile(i))
                return start(i, true);
        }
    }

    void trackEnded() {
        if (pending.isEmpty()) {
            playing = false;
            return next(false);
        }
        loaded = std::exchange(pending, QString());
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (entries[i].path == loaded) {
                current = i;
                played.insert(entries[i].id);
                userInitiated = false;
                ++counts[loaded];
                return plan();
            }
        }
        next(false);
    }

    void seek(bool fails) {
        if (loaded.isEmpty())
            return;
        pending.clear();
        if (!fails)
            return plan();
        failed();
    }

    void toggleShuffle() {
        shuffle = !shuffle;
        played.clear();
        replan();
    }
    void advanceRepeat() {
        repeat = repeat == PlaybackRepeatMode::off   ? PlaybackRepeatMode::all
                 : repeat == PlaybackRepeatMode::all ? PlaybackRepeatMode::one
                                                     : PlaybackRepeatMode::off;
        replan();
    }
    void move(std::size_t from, std::size_t to) {
        if (from == to)
            return;
        const QUuid now = current ? entries[*current].id : QUuid();
        const Entry entry = entries[from];
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(from));
        entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(to), entry);
        find(now);
    }
    void remove(const QString& path) {
        if (current && entries[*current].path == path)
            stop();
        const QUuid now = current ? entries[*current].id : QUuid();
        std::erase_if(entries, [&](const Entry& entry) { return entry.path == path; });
        find(now);
        replan();
    }
    void replan() {
        pending.clear();
        plan();
    }

  private:
    [[nodiscard]] bool isCurrentFile(std::size_t i) const {
        return current && entries[i].path == entries[*current].path;
    }
    void find(const QUuid& id) {
        current.reset();
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (entries[i].id == id)
                current = i;
        }
    }
    std::optional<std::size_t> randomPlayable(bool manual) {
        std::vector<std::size_t> all, fresh;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (playable(i)) {
                all.push_back(i);
                if (!played.contains(entries[i].id))
                    fresh.push_back(i);
            }
        }
        if (all.empty())
            return std::nullopt;
        if (!fresh.empty())
            return fresh[m_generator() % fresh.size()];
        if (repeat != PlaybackRepeatMode::all && !manual)
            return std::nullopt;
        played.clear();
        if (all.size() >= 2 && current)
            std::erase(all, *current);
        return all[m_generator() % all.size()];
    }
    void start(std::size_t i, bool user) {
        const QString path = entries[i].path;
        if (m_disk.evicted.contains(path)) {
            inCloud.insert(path);
            return user ? void() : next(false);
        }
        if (m_disk.gone.contains(path)) {
            missing.insert(path);
            return user ? void() : next(false);
        }
        missing.remove(path);
        inCloud.remove(path);
        current = i;
        played.insert(entries[i].id);
        userInitiated = user;
        loaded.clear();
        pending.clear();
        if (m_world.broken.contains(path))
            return failed();
        loaded = path;
        playing = true;
        ++counts[path];
        plan();
    }
    void failed() {
        if (current)
            (m_disk.evicted.contains(entries[*current].path) ? inCloud : missing)
                .insert(entries[*current].path);
        userInitiated ? stop() : next(false);
    }
    void finish() { stop(); }
    void stop() {
        loaded.clear();
        pending.clear();
        playing = false;
    }
    void plan() {
        if (loaded.isEmpty() || shuffle || repeat == PlaybackRepeatMode::one)
            return;
        std::optional<std::size_t> next;
        for (std::size_t i = current ? *current + 1 : 0; i < entries.size() && !next; ++i) {
            if (playable(i))
                next = i;
        }
        for (std::size_t i = 0; repeat == PlaybackRepeatMode::all && i < entries.size() && !next;
             ++i) {
            if (playable(i))
                next = i;
        }
        if (!next || next == current)
            return;
        const QString& path = entries[*next].path;
        if (m_disk.evicted.contains(path)) {
            inCloud.insert(path);
            return;
        }
        if (pending.isEmpty() && !m_world.broken.contains(path) &&
            m_world.formatOf.value(path) == m_world.formatOf.value(loaded))
            pending = path;
    }

    const FakeEngine& m_world;
    const FakeFiles& m_disk;
    std::mt19937 m_generator;
    bool userInitiated = false;
};

} // namespace halvane::test
