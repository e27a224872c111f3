// SPDX-License-Identifier: MIT
#include "library/user/playlist_export.h"

#include "library/catalog/library_store.h"
#include "library/status_line.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "metadata/playlists/playlist_writer.h"
#include "platform/log.h"
#include "platform/session/file_chooser.h"
#include "presentation/l10n.h"

#include <QPointer>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// A playlist's name as that of a file. A leading dot would hide it.
QString fileName(QString name) {
    name.replace(u'/', u'-');
    if (name.startsWith(u'.'))
        name.prepend(u'_');
    constexpr qsizetype longest = 60; // characters; a name on a disk has 255 bytes
    return name.left(longest) + u".m3u8"_s;
}

std::vector<WrittenEntry> entriesOf(const Playlist& playlist, const LibraryStore& store) {
    std::vector<WrittenEntry> entries;
    entries.reserve(playlist.trackPaths.size());
    for (const QString& path : playlist.trackPaths) {
        WrittenEntry entry;
        entry.path = path;
        if (const TrackPtr track = store.track(path)) {
            entry.artist = track->artist;
            entry.title = track->title;
            entry.seconds = track->durationSeconds;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace

PlaylistExport::PlaylistExport(const Playlists& playlists, const LibraryStore& store,
                               FileChooser& fileChooser, StatusLine& status,
                               const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_playlists(playlists)
    , m_store(store)
    , m_fileChooser(fileChooser)
    , m_status(status)
    , m_language(language) {
}

void PlaylistExport::exportPlaylist(const QUuid& id) {
    const Playlist* playlist = m_playlists.find(id);
    if (!playlist)
        return;
    const ResolvedLanguage language = m_language.resolvedLanguage();
    FileTargetRequest request;
    request.title = L10n::text(L10nKey::exportPlaylist, language);
    request.prompt = L10n::text(L10nKey::exportPrompt, language);
    request.fileName = fileName(playlist->name);
    m_fileChooser.chooseTarget(request, [weak = QPointer(this), id](const QString& file) {
        if (weak)
            weak->write(id, file);
    });
}

void PlaylistExport::write(const QUuid& id, const QString& file) {
    const Playlist* playlist = m_playlists.find(id);
    if (!playlist)
        return;
    m_worker.run(
        [file, name = playlist->name, entries = entriesOf(*playlist, m_store)] {
            return writePlaylist(file, name, entries);
        },
        [this, file, name = playlist->name](const Result<>& written) {
            const ResolvedLanguage language = m_language.resolvedLanguage();
            if (written) {
                m_status.show(L10n::exportedPlaylist(name, language), false);
            } else {
                qCWarning(libraryLog, "a list was not written: %s",
                          qUtf8Printable(written.failure().text));
                m_status.show(L10n::playlistNotWritten(FileUrl(file).fileName(), language), true);
            }
            Q_EMIT ended();
        });
}

} // namespace halvane
