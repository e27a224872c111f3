// SPDX-License-Identifier: MIT
#pragma once

#include "library/import/fake_files.h"
#include "library/playback/fake_engine.h"
#include "library/playback/transport.h"
#include "library/sound/sound_check.h"
#include "library/tracks.h"
#include "library/user/language_setting.h"
#include "library/user/settings_keys.h"
#include "support/fake_environment.h"

#include <random>

namespace halvane::test {

/// A row state in which nothing is special.
inline RowState plainRowState() {
    RowState state;
    state.isLoved = [](const QString&) { return false; };
    state.rating = [](const QString&) { return 0; };
    state.plays = [](const QString&) { return 0; };
    state.availability = [](const QString&) { return TrackAvailability::available; };
    state.isCurrent = [](const QString&) { return false; };
    return state;
}

/// A transport on fakes. The files of its queue are "/m/a", "/m/b" and so on.
struct TransportFixture {
    explicit TransportFixture(unsigned seed = 1)
        : generator(seed) {
        progress.beginWatching();
        QObject::connect(&transport, &Transport::playStarted,
                         [this](const QString& path) { ++playCounts[path]; });
        QObject::connect(&transport, &Transport::becameCurrent,
                         [this](const QueueItem& item) { shown.append(item.title); });
        QObject::connect(&transport, &Transport::nowPlayingChanged,
                         [this] { ++nowPlayingUpdates; });
        QObject::connect(&transport, &Transport::trackChanged,
                         [this](const QueueItem& item) { notified.append(item.title); });
    }

    ManualClock clock;
    MemoryPreferences preferences;
    FakeLanguages languages;
    LanguageSetting language{preferences, languages};
    FakeEngine engine;
    FakeFiles files;
    LibraryStore store;
    SoundCheck soundCheck{preferences, store, files, std::make_shared<FakeCloudFiles>()};
    StatusLine status{clock};
    ProgressClock progress{engine, clock};
    PlayQueue queue{plainRowState()};
    std::mt19937 generator;
    QHash<QString, int> playCounts;
    QStringList notified; ///< titles
    QStringList shown;    ///< titles of entries that became current
    int nowPlayingUpdates = 0;
    Transport transport{
        engine,     queue,  files,
        soundCheck, status, progress,
        language,   clock,  [this](std::size_t count) { return generator() % count; }};

    /// Sound Check is on, and knows these files' gains in dB and no others.
    void setGains(const QHash<char, double>& gains) {
        NumbersMap loudness;
        for (auto gain = gains.cbegin(); gain != gains.cend(); ++gain)
            loudness.insert(path(gain.key()), {-16 - gain.value(), -100});
        preferences.setBoolean(SettingsKey::soundCheckEnabled, true);
        preferences.remove(SettingsKey::trackLoudness);
        for (auto entry = loudness.cbegin(); entry != loudness.cend(); ++entry)
            preferences.insertNumbers(SettingsKey::trackLoudness, entry.key(), entry.value());
        soundCheck.restore();
    }
    /// A queue of the files named by letters, and nothing current.
    void queueOf(const char* letters) {
        TrackRows rows;
        for (const char* letter = letters; *letter; ++letter) {
            Track track = trackAt(path(*letter));
            track.duration = QStringLiteral("3:20");
            track.durationSeconds = 200;
            rows.push_back(makeRow(std::move(track)));
        }
        queue.assign(rows, std::nullopt);
    }
    static QString path(char letter) { return QStringLiteral("/m/") + QLatin1Char(letter); }
    QUuid id(std::size_t row) const { return queue.idAt(row); }
    /// Lets the disk answer until nothing more is asked of it.
    void settle() {
        while (engine.answer()) {
        }
    }
    void play(std::size_t row) {
        transport.playItem(id(row), true);
        settle();
    }
    void next(bool manual = true) {
        transport.playNext(manual);
        settle();
    }
    /// The title of the current entry, '-' without one.
    [[nodiscard]] char current() const {
        const auto row = queue.currentRow();
        return row ? queue.record(*row).title.at(0).toLatin1() : '-';
    }
    /// What the engine plays or has loaded.
    [[nodiscard]] char loaded() const {
        return engine.file.isEmpty() ? '-' : engine.file.back().toLatin1();
    }
    [[nodiscard]] char pending() const {
        return engine.pending.isEmpty() ? '-' : engine.pending.back().toLatin1();
    }
    /// The current track is heard to its end.
    void endTrack() {
        engine.reachEnd();
        settle();
    }
};

} // namespace halvane::test
