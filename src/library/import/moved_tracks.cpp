// SPDX-License-Identifier: MIT
#include "library/import/moved_tracks.h"

#include "library/catalog/catalog_publisher.h"
#include "library/import/drive_places.h"
#include "library/playback/transport.h"
#include "library/status_line.h"
#include "library/tidying/availability.h"
#include "library/tidying/tidying.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "library/user/sound_memory.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <algorithm>

namespace halvane {

namespace {

std::ptrdiff_t commonEnd(const QString& a, const QString& b) {
    return std::mismatch(a.crbegin(), a.crend(), b.crbegin(), b.crend()).first - a.crbegin();
}

} // namespace

std::vector<Move> movesBetween(const QStringList& gone, QStringList came) {
    std::vector<Move> moves;
    for (const QString& from : gone) {
        const auto to =
            std::max_element(came.begin(), came.end(), [&](const QString& a, const QString& b) {
                return commonEnd(from, a) < commonEnd(from, b);
            });
        if (to == came.end())
            break;
        moves.emplace_back(from, *to);
        came.erase(to);
    }
    return moves;
}

MovedTracks::MovedTracks(const MovedTracksNeeds& needs, StatusLine& status,
                         const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_needs(needs)
    , m_status(status)
    , m_language(language) {
    connect(&needs.store, &LibraryStore::came, this, [this](const TrackRows& tracks) {
        for (const TrackPtr& track : tracks)
            m_came.insert(track->path());
    });
}

void MovedTracks::settle() {
    assertOwnThread(*this);
    m_worker.cancel();
    const auto moves = likelyMoves();
    if (moves.empty())
        return;
    m_worker.run(
        [moves] {
            std::vector<Move> certain;
            std::copy_if(moves.cbegin(), moves.cend(), std::back_inserter(certain),
                         [](const Move& move) { return !isWhereADriveWas(move.first); });
            return certain;
        },
        [this](const std::vector<Move>& certain) { take(certain); });
}

std::vector<Move> MovedTracks::likelyMoves() const {
    std::vector<Move> moves;
    if (m_came.isEmpty())
        return moves;
    QHash<SoundIdentity, QStringList> gone;
    for (const QString& path : m_needs.availability.unavailablePaths()) {
        const TrackPtr track = m_needs.store.track(path);
        if (track && track->identity.isKnown() && path != m_needs.queue.currentPath())
            gone[track->identity].append(path);
    }
    for (auto sound = gone.cbegin(); sound != gone.cend(); ++sound) {
        QStringList came = m_needs.sounds.pathsOf(sound.key());
        came.removeIf([&](const QString& path) {
            return !m_came.contains(path) ||
                   m_needs.availability.state(path) == TrackAvailability::missing;
        });
        const auto own = movesBetween(*sound, came);
        moves.insert(moves.end(), own.cbegin(), own.cend());
    }
    return moves;
}

void MovedTracks::take(const std::vector<Move>& moves) {
    QHash<QString, TrackPtr> newcomers; // by the path that is gone
    TrackRows rows;
    for (const auto& [from, to] : moves) {
        const TrackPtr newcomer = m_needs.store.track(to);
        const TrackPtr before = m_needs.store.track(from);
        if (!newcomer || !before || m_needs.availability.state(from) != TrackAvailability::missing)
            continue;
        Track row = *newcomer;
        row.addedDate = before->addedDate;
        rows.push_back(makeRow(std::move(row)));
        newcomers.insert(from, rows.back());
    }
    if (newcomers.isEmpty())
        return;
    m_needs.store.replace(rows);
    PlayQueue::Places queued;
    m_needs.queue.replace(rows, queued);
    m_needs.playlists.putStandIns([&newcomers](const QString& path) {
        const auto newcomer = newcomers.constFind(path);
        return newcomer == newcomers.cend() ? std::nullopt : std::optional((*newcomer)->path());
    });
    takePlacesInQueue(newcomers);
    takeRows(newcomers);
    m_needs.transport.replanSuccessor();
    m_needs.catalog.rebuildImportedAlbums();
    m_status.show(L10n::foundElsewhere(newcomers.size(), m_language.resolvedLanguage()), false);
    Q_EMIT moved();
}

// An entry keeps its place under the new path, and the one that the import has added at the end
// goes. One that plays moves to the place instead.
void MovedTracks::takePlacesInQueue(QHash<QString, TrackPtr> newcomers) {
    PlayQueue& queue = m_needs.queue;
    QHash<QString, QUuid> entries;
    for (std::size_t row = 0; row < queue.size(); ++row) {
        if (newcomers.contains(queue.record(row).path()))
            entries.insert(queue.record(row).path(), queue.idAt(row));
    }
    newcomers.removeIf([&](auto newcomer) { return !entries.contains(newcomer.key()); });
    const QString current = queue.currentPath();
    QSet<const Track*> doubled;
    for (auto newcomer = newcomers.begin(); newcomer != newcomers.end();) {
        if ((*newcomer)->path() == current) {
            queue.moveBehind(queue.idAt(*queue.currentRow()), entries.value(newcomer.key()));
            newcomer = newcomers.erase(newcomer);
        } else {
            doubled.insert(newcomer->get());
            ++newcomer;
        }
    }
    (void)queue.takeOut(queue.rowsOf(doubled));
    queue.exchange(newcomers);
}

void MovedTracks::takeRows(const QHash<QString, TrackPtr>& newcomers) {
    auto rows = m_needs.store.placed(newcomers.keys());
    QSet<QString> paths;
    for (auto& [row, track] : rows) {
        track = newcomers.value(track->path());
        paths.insert(track->path());
    }
    m_needs.tidying.letGo(newcomers.keys());
    m_needs.store.remove(paths);
    m_needs.store.putBack(rows);
}

} // namespace halvane
