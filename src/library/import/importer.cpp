// SPDX-License-Identifier: MIT
#include "library/import/importer.h"

#include "audio/files/audio_file.h"
#include "library/catalog/catalog_publisher.h"
#include "library/catalog/track_rows.h"
#include "library/import/fallback_names.h"
#include "library/import/imported_paths.h"
#include "library/import/known_twins.h"
#include "library/playback/play_queue.h"
#include "library/status_line.h"
#include "library/user/language_setting.h"
#include "library/user/playlists.h"
#include "metadata/file_dates.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/session/file_chooser.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <QPointer>

#include <algorithm>
#include <future>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double secondsBetweenRebuilds = 1.0;

// What the user gives waits for so many files at most.
constexpr qsizetype mostTakenIn = 500;

QStringList namesOf(const std::vector<QString>& paths) {
    QStringList names;
    for (const QString& path : paths)
        names.append(FileUrl(standardizedPath(path)).fileName());
    return names;
}

} // namespace

Importer::Importer(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                   ImportedPaths& importedPaths, Playlists& playlists, FileChooser& fileChooser,
                   Clock& clock, StatusLine& status, const LanguageSetting& language,
                   ReadingNeeds needs, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_queue(queue)
    , m_importedPaths(importedPaths)
    , m_playlists(playlists)
    , m_fileChooser(fileChooser)
    , m_clock(clock)
    , m_status(status)
    , m_language(language)
    , m_needs(std::move(needs)) {
}

void Importer::chooseAndImportMusic(bool files, bool directories) {
    const ResolvedLanguage language = m_language.resolvedLanguage();
    FileChooserRequest request;
    request.title = L10n::text(L10nKey::importMusicFolder, language);
    request.prompt = request.title;
    request.message = L10n::text(L10nKey::dragAudioSubtitle, language);
    request.files = files;
    request.directories = directories;
    m_fileChooser.choose(request, [weak = QPointer(this)](const QStringList& paths) {
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls.append(QUrl::fromLocalFile(path));
        if (weak)
            weak->importDroppedURLs(urls);
    });
}

bool Importer::importDroppedProviders(const std::vector<DroppedItem>& items) {
    struct Drop {
        DroppedURLCollector collector;
        std::atomic<std::size_t> unanswered;
    };
    if (items.empty())
        return false;
    auto drop = std::make_shared<Drop>();
    drop->unanswered = items.size();
    for (const DroppedItem& item : items) {
        item([drop, drops = m_drops.address(), this](const QVariant& answer) {
            if (const auto url = TrackMetadataLoader::url(answer))
                drop->collector.append(*url);
            if (--drop->unanswered == 0)
                drops.post([drop, this] { importDroppedURLs(drop->collector.urls()); });
        });
    }
    return true;
}

void Importer::importDroppedURLs(const QList<QUrl>& urls) {
    assertOwnThread(*this);
    QStringList roots;
    for (const QUrl& url : urls)
        if (url.isLocalFile())
            roots.append(url.toLocalFile());
    Q_EMIT rootsGiven(roots);
    give(roots, From::user);
}

void Importer::takeIn(const QStringList& files) {
    assertOwnThread(*this);
    for (qsizetype first = 0; first < files.size(); first += mostTakenIn)
        give(files.mid(first, mostTakenIn), From::followedFolder);
}

// The user's come first.
void Importer::give(const QStringList& roots, From from) {
    const auto behind = std::find_if(m_waiting.cbegin(), m_waiting.cend(), [&](const Given& given) {
        return from == From::user && given.from == From::followedFolder;
    });
    m_waiting.insert(behind, {roots, from, m_choices});
    if (!m_isRunning)
        startNext();
}

// Finds the files of one import, reads them and hands them over in portions, on the worker and with
// everything that it needs. A question to the main thread would delay the first sound at the
// program's start, while that thread is busy with the first picture.
struct Importer::Run {
    Importer* importer; // only used in what is posted to the main thread
    Given given;
    TrackRows queued;
    std::shared_ptr<const TrackRows> library;
    ReadingNeeds needs;
    ResolvedLanguage language;
    double addedDate; // of what is new

    void operator()(const SerialWorker::Job& job) const {
        // The main thread will play the first file.
        const auto preparation = std::async(std::launch::async, &AudioFile::prepare);
        std::shared_ptr<const MetadataIndex> index;
        QStringList sought = given.roots;
        GivenPlaylists playlists;
        const auto lists = std::count_if(sought.cbegin(), sought.cend(), isPlaylistFile);
        if (lists > 0) {
            index = std::make_shared<const MetadataIndex>(needs.cache.loadIndex());
            playlists = takePlaylists(sought, knownTracks(*index), job.token());
        }
        auto [files, leftOut, missing] =
            TrackMetadataLoader::findAudioFiles({sought.begin(), sought.end()}, job.token());
        std::vector<FileUrl> fresh = notThere(files);
        if (!fresh.empty()) {
            if (!index)
                index = std::make_shared<const MetadataIndex>(needs.cache.loadIndex());
            const auto twins = useKnownPaths(files, *index, job.token());
            for (GivenPlaylist& list : playlists.lists)
                for (QString& path : list.paths)
                    path = twins.value(path, path);
            fresh = notThere(files);
        }
        const Found found{files.size(),
                          fresh.size(),
                          leftOut,
                          files.empty() ? QString() : files.front().standardizedPath(),
                          namesOf(missing),
                          playlists,
                          lists == given.roots.size()};
        job.post([importer = importer, found] { importer->take(found); });
        if (!fresh.empty())
            read(job, fresh, std::move(index), preparation);
    }

    // What the user gives joins the queue, also where the library has it.
    [[nodiscard]] std::vector<FileUrl> notThere(const std::vector<FileUrl>& files) const {
        QSet<QString> known;
        for (const TrackPtr& row : given.from == From::user ? queued : *library)
            known.insert(row->path());
        std::vector<FileUrl> fresh;
        for (const FileUrl& file : files) {
            if (known.contains(file.standardizedPath()))
                continue;
            known.insert(file.standardizedPath()); // roots may overlap
            fresh.push_back(file);
        }
        return fresh;
    }

    // What the library has under another path is meant by that. The index stands for the library
    // while that is being restored.
    QHash<QString, QString> useKnownPaths(std::vector<FileUrl>& files, const MetadataIndex& index,
                                          const std::stop_token& stop) const {
        QSet<QString> known;
        known.reserve(std::ssize(*library) + index.size());
        for (const TrackPtr& row : *library)
            known.insert(row->path());
        for (auto record = index.records().keyBegin(); record != index.records().keyEnd(); ++record)
            known.insert(*record);
        const auto twins = knownTwins(files, known, stop);
        for (FileUrl& file : files)
            if (const auto twin = twins.constFind(file.standardizedPath()); twin != twins.cend())
                file = FileUrl(*twin);
        return twins;
    }

    // The same, for what a list says of them.
    [[nodiscard]] KnownTracks knownTracks(const MetadataIndex& index) const {
        KnownTracks known;
        known.reserve(std::ssize(*library) + index.size());
        for (const CachedTrackMetadata* record : index.records())
            known.insert(record->path, {record->title, record->artist, record->durationSeconds});
        for (const TrackPtr& row : *library)
            known.insert(row->path(), {row->title, row->artist, row->durationSeconds});
        return known;
    }

    void read(const SerialWorker::Job& job, const std::vector<FileUrl>& files,
              std::shared_ptr<const MetadataIndex> index,
              const std::future<void>& preparation) const {
        TrackMetadataLoader::Accompaniment with = needs.accompaniment(job.token());
        with.progress = [&](std::size_t done) {
            const double fraction = static_cast<double>(done) / static_cast<double>(files.size());
            job.post([importer = importer, fraction] { importer->setProgress(fraction); });
        };
        needs.cache.streamItems(files, fallbackNames(language), std::move(index), with,
                                [&](std::vector<LoadedItem> next) {
                                    preparation.wait();
                                    handOver(job, std::move(next));
                                });
        job.post([importer = importer] { importer->finish(); });
    }

    // The main thread takes so few rows over within a frame.
    void handOver(const SerialWorker::Job& job, std::vector<LoadedItem> loaded) const {
        job.post([importer = importer, rows = rowsFromLoaded(std::move(loaded), addedDate)] {
            importer->addRows(rows);
        });
        // Taking rows over and opening a file each take a frame's time. The windows get a turn
        // between them.
        job.post([importer = importer] { importer->playFirst(); });
    }
};

void Importer::startNext() {
    if (m_waiting.empty()) {
        setRunning(false);
        Q_EMIT idle();
        return;
    }
    Q_EMIT adding();
    setRunning(true);
    m_rebuiltAt = -secondsBetweenRebuilds;
    m_added = 0;
    m_skipped = 0;
    m_running = m_waiting.front();
    m_waiting.pop_front();
    m_worker.start(Run{this, m_running, m_queue.records(), m_store.snapshot(), m_needs,
                       m_language.resolvedLanguage(), m_clock.wallTime() - referenceDateOffset});
}

void Importer::take(const Found& found) {
    const QStringList& roots = m_running.roots;
    qCInfo(libraryLog, "import: %ld roots, %ld audio files", static_cast<long>(roots.size()),
           static_cast<long>(found.files));
    if (m_running.from == From::followedFolder) {
        if (found.newFiles == 0)
            finishTakingIn();
        return;
    }
    const ResolvedLanguage language = m_language.resolvedLanguage();
    m_leftOut = static_cast<qint64>(found.leftOut);
    m_missing = found.missing;
    addPlaylists(found);
    if (found.files == 0) {
        if (!m_playlistsText.isEmpty() || !m_unreadable.empty()) {
            m_status.show(report(m_playlistsText), m_playlistsText.isEmpty());
            return end();
        }
        const bool isAllMissing = !roots.isEmpty() && m_missing.size() == roots.size();
        m_status.show(
            report(isAllMissing ? QString() : L10n::text(L10nKey::noSupportedAudio, language)),
            true);
        return end();
    }
    m_skipped = static_cast<qint64>(found.files - found.newFiles);
    if (found.newFiles > 0)
        return; // the worker reads them now
    m_status.show(report(resultText(0)), false);
    const auto row = m_queue.rowOfPath(found.firstPath);
    if (playsList())
        askUnlessChosen([this] { Q_EMIT playlistAsked(m_playlist); });
    else if (row)
        askUnlessChosen([this, row] { Q_EMIT playAsked(m_queue.idAt(*row)); });
    end();
}

// Whoever opens a list wants to hear it, from its beginning and in its order.
bool Importer::playsList() const {
    return m_isListsAlone && !m_playlist.isNull();
}

// A list in which nothing can be a track gives no playlist.
void Importer::addPlaylists(const Found& found) {
    QStringList names;
    qint64 entries = 0;
    qint64 notFound = 0;
    qint64 addresses = 0;
    m_playlist = {};
    for (const GivenPlaylist& list : found.playlists.lists) {
        if (list.paths.isEmpty())
            continue;
        const QUuid id = m_playlists.addPlaylist(list.name, list.paths);
        names.append(m_playlists.find(id)->name);
        if (m_playlist.isNull())
            m_playlist = id;
        entries += list.entries;
        notFound += list.notFound;
        addresses += list.addresses;
    }
    m_playlistsText = names.isEmpty() ? QString()
                                      : L10n::addedPlaylists(names, notFound, entries, addresses,
                                                             m_language.resolvedLanguage());
    m_unreadable = found.playlists.unreadable;
    m_isListsAlone = found.isListsAlone;
}

// The tracks of lists are told of by their playlists.
QString Importer::resultText(qint64 added) const {
    if (playsList())
        return m_playlistsText;
    const QString tracks = L10n::importResult(added, m_skipped, m_language.resolvedLanguage());
    return m_playlistsText.isEmpty() ? tracks : m_playlistsText + u" · "_s + tracks;
}

void Importer::addRows(const TrackRows& rows) {
    if (rows.empty())
        return;
    Q_EMIT adding();
    const bool isGiven = m_running.from == From::user;
    const bool isQueueWhole = m_queue.size() >= m_store.size();
    m_store.append(rows);
    if (isGiven || isQueueWhole) {
        const std::size_t first = m_queue.append(rows);
        if (isGiven && m_added == 0)
            m_first = m_queue.idAt(first);
    }
    m_added += static_cast<qint64>(rows.size());
    m_importedPaths.add(pathsOf(rows));
    // Deriving the albums costs more the larger the library is, so it is not done for every
    // portion.
    const double now = m_clock.now();
    if (now - m_rebuiltAt >= secondsBetweenRebuilds) {
        m_rebuiltAt = now;
        m_catalog.rebuildImportedAlbums();
    }
}

void Importer::playFirst() {
    const QUuid first = std::exchange(m_first, {});
    if (!first.isNull() && !playsList()) // a list waits until all of it is there
        askUnlessChosen([&] { Q_EMIT playAsked(first); });
}

// Later choices win, also where a disk has kept an import waiting. Its own are none of the user's.
void Importer::askUnlessChosen(const std::function<void()>& ask) {
    if (m_choices != m_running.choices)
        return;
    ask();
    m_choices = m_running.choices;
}

// Adds what did not come.
QString Importer::report(const QString& result) const {
    const ResolvedLanguage language = m_language.resolvedLanguage();
    QString text =
        L10n::withMissing(L10n::withLeftOut(result, m_leftOut, language), m_missing, language);
    for (const QString& name : m_unreadable)
        text += (text.isEmpty() ? QString() : u" · "_s) + L10n::playlistUnreadable(name, language);
    return text;
}

// They are told of once, however many portions they came in.
void Importer::finishTakingIn() {
    m_takenIn += m_added;
    if (m_added > 0) {
        m_catalog.rebuildImportedAlbums();
        Q_EMIT imported();
    }
    const bool isMore = !m_waiting.empty() && m_waiting.front().from == From::followedFolder;
    if (m_takenIn > 0 && !isMore)
        m_status.add(L10n::takenIn(std::exchange(m_takenIn, 0), m_language.resolvedLanguage()));
    end();
}

void Importer::finish() {
    if (m_running.from == From::followedFolder)
        return finishTakingIn();
    const ResolvedLanguage language = m_language.resolvedLanguage();
    if (m_added == 0) {
        // They were found a moment ago.
        m_status.show(L10n::text(L10nKey::importedFilesGone, language), true);
        return end();
    }
    m_catalog.rebuildImportedAlbums();
    m_status.add(report(resultText(m_added)));
    Q_EMIT imported();
    if (playsList())
        askUnlessChosen([this] { Q_EMIT playlistAsked(m_playlist); });
    end();
}

void Importer::stopImport() {
    assertOwnThread(*this);
    if (!m_isRunning)
        return;
    m_worker.leaveBehind(); // it may search a disk that hangs
    m_waiting.push_front(m_running);
    QStringList roots;
    for (const Given& given : std::exchange(m_waiting, {}))
        if (given.from == From::user)
            roots += given.roots;
    m_first = {};
    m_takenIn = 0;
    m_status.add(L10n::importStopped(m_added, m_language.resolvedLanguage()));
    if (m_added > 0) {
        m_catalog.rebuildImportedAlbums();
        Q_EMIT imported();
    }
    Q_EMIT rootsGivenUp(roots);
    end();
}

void Importer::end() {
    setProgress(-1);
    startNext();
}

void Importer::setRunning(bool isRunning) {
    if (std::exchange(m_isRunning, isRunning) != isRunning)
        Q_EMIT isImportingChanged();
}

void Importer::setProgress(double progress) {
    if (std::exchange(m_progress, progress) != progress)
        Q_EMIT importProgressChanged();
}

} // namespace halvane
