// SPDX-License-Identifier: MIT
#include "library/tidying/removal_history.h"

#include "library/catalog/catalog_publisher.h"
#include "library/import/imported_paths.h"
#include "library/playback/transport.h"
#include "library/status_line.h"
#include "library/tidying/tidying.h"
#include "library/undo_history.h"
#include "library/user/language_setting.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

namespace halvane {

using Subject = UndoHistory::Subject;

RemovalHistory::RemovalHistory(const RemovalNeeds& needs, UndoHistory& history, StatusLine& status,
                               const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_needs(needs)
    , m_history(history)
    , m_status(status)
    , m_language(language) {
    connect(&needs.tidying, &Tidying::removing, this, &RemovalHistory::remember);
    connect(&needs.playlists, &Playlists::deleting, this, [this](const QUuid& id) {
        rememberList(m_needs.playlists, id, L10nKey::deletePlaylist, L10n::deletedPlaylist);
    });
    connect(&needs.liveLists, &LiveLists::removing, this, [this](const QUuid& id) {
        rememberList(m_needs.liveLists, id, L10nKey::deleteLiveList, L10n::deletedLiveList);
    });
    connect(&needs.playlists, &Playlists::removingPaths, this, &RemovalHistory::rememberPaths);
    connect(&needs.queue, &PlayQueue::replaced, this, [this] { ++m_queuesMade; });
}

void RemovalHistory::remember(const QStringList& paths) {
    assertOwnThread(*this);
    Lost lost;
    lost.tracks = m_needs.store.placed(paths);
    if (lost.tracks.empty())
        return;
    QSet<const Track*> records;
    QSet<QString> known;
    for (const auto& [row, track] : lost.tracks) {
        const QString path = track->path();
        records.insert(track.get());
        known.insert(path);
        if (const auto said = m_needs.userData.said(path); said != Said())
            lost.said.emplace_back(path, said);
    }
    lost.places = m_needs.playlists.placesOf(known);
    lost.entries = m_needs.queue.pieces(m_needs.queue.rowsOf(records));
    lost.queueMade = m_queuesMade;
    const QString message = L10n::removedFromLibrary(lost.tracks.front().second->title,
                                                     static_cast<qint64>(lost.tracks.size()),
                                                     m_language.resolvedLanguage());
    m_history.add({L10nKey::removeFromLibrary, Subject::library,
                   [this, lost = std::move(lost)] { bringBack(lost); }, nullptr});
    m_status.showWithUndo(message);
}

void RemovalHistory::bringBack(const Lost& lost) {
    m_needs.tidying.finishRemoval();
    m_needs.store.putBack(lost.tracks);
    QStringList paths;
    for (const auto& [row, track] : lost.tracks)
        paths.append(track->path());
    m_needs.importedPaths.add(paths);
    for (const auto& [path, said] : lost.said) {
        // Where the sound is known, all that was said has come back with it.
        const TrackPtr track = m_needs.store.track(path);
        if (!track || !track->identity.isKnown())
            m_needs.userData.sayAgain(said, path);
    }
    m_needs.playlists.putBack(lost.places);
    if (lost.queueMade == m_queuesMade) {
        m_needs.queue.putBack(lost.entries);
        m_needs.transport.replanSuccessor();
    }
    m_needs.catalog.rebuildImportedAlbums();
    Q_EMIT cameBack();
}

template<typename Lists>
void RemovalHistory::rememberList(Lists& lists, const QUuid& id, L10nKey what,
                                  QString (*sentence)(const QString&, ResolvedLanguage)) {
    const auto list = *lists.find(id);
    const std::size_t row = *lists.rowOf(id);
    m_history.add(
        {what, Subject::playlists, [&lists, row, list] { lists.putBack(row, list); }, nullptr});
    m_status.showWithUndo(sentence(list.name, m_language.resolvedLanguage()));
}

void RemovalHistory::rememberPaths(const QStringList& paths, const QUuid& playlist) {
    std::vector<Playlists::Place> places =
        m_needs.playlists.placesOf(QSet<QString>(paths.cbegin(), paths.cend()));
    std::erase_if(places, [&](const auto& place) { return place.playlist != playlist; });
    if (places.empty())
        return;
    const TrackPtr track = m_needs.store.track(paths.first());
    m_history.add({L10nKey::removeFromPlaylist, Subject::playlists,
                   [this, places] { m_needs.playlists.putBack(places); }, nullptr});
    m_status.showWithUndo(L10n::removedFromPlaylist(
        track ? track->title : paths.first(), paths.size(), m_needs.playlists.find(playlist)->name,
        m_language.resolvedLanguage()));
}

} // namespace halvane
