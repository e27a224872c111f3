// SPDX-License-Identifier: MIT
#pragma once

#include "library/import/fake_files.h"
#include "library/playback/fake_engine.h"
#include "library/playback/transport.h"
#include "library/tracks.h"
#include "support/manual_clock.h"

#include <random>

namespace halvane::test {

/// A row state in which nothing is special.
inline RowState plainRowState() {
    RowState state;
    state.isLoved = [](const QString&) { return false; };
    state.rating = [](const QString&) { return 0; };
    state.availability = [](const QString&) { return TrackAvailability::available; };
    state.isCurrent = [](const QString&) { return false; };
    return state;
}

/// A transport on fakes. The files of its queue are "/m/a", "/m/b" and so on.
struct TransportFixture {
    explicit TransportFixture(unsigned seed = 1)
        : generator(seed) {
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
    FakeEngine engine;
    FakeFiles files;
    StatusLine status{clock};
    ProgressClock progress{engine, clock};
    PlayQueue queue{plainRowState()};
    std::mt19937 generator;
    QHash<QString, std::optional<double>> gains;
    QHash<QString, int> playCounts;
    QStringList notified; ///< titles
    QStringList shown;    ///< titles of entries that became current
    int nowPlayingUpdates = 0;
    Transport transport{collaborators()};

    TransportCollaborators collaborators() {
        return {
            .engine = engine,
            .queue = queue,
            .files = files,
            .status = status,
            .progress = progress,
            .clock = clock,
            .random = [this](std::size_t count) { return generator() % count; },
            .language = [] { return ResolvedLanguage::english; },
            .soundCheckGain = [this](const QString& path) { return gains.value(path); },
        };
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
    [[nodiscard]] QUuid id(std::size_t row) const { return queue.idAt(row); }
    void play(std::size_t row) { transport.playItem(id(row), true); }
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
        transport.trackEnded();
    }
};

} // namespace halvane::test
