// SPDX-License-Identifier: MIT
#include "library/import/importer.h"

#include "audio/files/audio_file.h"
#include "library/catalog/catalog_publisher.h"
#include "library/catalog/track_rows.h"
#include "library/import/fallback_names.h"
#include "library/import/imported_paths.h"
#include "library/playback/play_queue.h"
#include "library/status_line.h"
#include "library/user/language_setting.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/session/file_chooser.h"
#include "platform/thread_check.h"
#include "presentation/l10n.h"

#include <QPointer>

#include <future>

namespace halvane {

namespace {

constexpr double secondsBetweenRebuilds = 1.0;
constexpr double secondsBeforeProgress = 1.0;

} // namespace

Importer::Importer(LibraryStore& store, CatalogPublisher& catalog, PlayQueue& queue,
                   ImportedPaths& importedPaths, FileChooser& fileChooser, Clock& clock,
                   StatusLine& status, const LanguageSetting& language, ReadingNeeds needs,
                   QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_queue(queue)
    , m_importedPaths(importedPaths)
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
    m_waiting.push_back(roots);
    if (!m_isRunning)
        startNext();
}

// Finds the files of one import, reads them and hands them over in portions, on the worker and with
// everything that it needs. A question to the main thread would delay the first sound at the
// program's start, while that thread is busy with the first picture.
struct Importer::Run {
    Importer* importer; // only used in what is posted to the main thread
    QStringList roots;
    TrackRows queued;
    ReadingNeeds needs;
    ResolvedLanguage language;

    void operator()(const SerialWorker::Job& job) const {
        // The main thread will play the first file.
        const auto preparation = std::async(std::launch::async, &AudioFile::prepare);
        const auto all =
            TrackMetadataLoader::audioFileURLs({roots.begin(), roots.end()}, job.token());
        const auto files = notQueued(all);
        const Found found{all.size(), files.size(),
                          all.empty() ? QString() : all.front().standardizedPath()};
        job.post([importer = importer, roots = roots, found] { importer->take(roots, found); });
        if (!files.empty())
            read(job, files, preparation);
    }

    [[nodiscard]] std::vector<FileUrl> notQueued(const std::vector<FileUrl>& files) const {
        QSet<QString> known;
        known.reserve(std::ssize(queued) + std::ssize(files));
        for (const TrackPtr& row : queued)
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

    void read(const SerialWorker::Job& job, const std::vector<FileUrl>& files,
              const std::future<void>& preparation) const {
        TrackMetadataLoader::Accompaniment with = needs.accompaniment(job.token());
        with.progress = [&](std::size_t done) {
            const double fraction = static_cast<double>(done) / static_cast<double>(files.size());
            job.post([importer = importer, fraction] { importer->setProgress(fraction); });
        };
        auto index = std::make_shared<const MetadataIndex>(needs.cache.loadIndex());
        needs.cache.streamItems(files, fallbackNames(language), std::move(index), with,
                                [&](std::vector<LoadedItem> next) {
                                    preparation.wait();
                                    handOver(job, std::move(next));
                                });
        job.post([importer = importer] { importer->finish(); });
    }

    // The main thread takes so few rows over within a frame.
    void handOver(const SerialWorker::Job& job, std::vector<LoadedItem> loaded) const {
        job.post([importer = importer, rows = rowsFromLoaded(std::move(loaded))] {
            importer->addRows(rows);
        });
        // Taking rows over and opening a file each take a frame's time. The windows get a turn
        // between them.
        job.post([importer = importer] { importer->playFirst(); });
    }
};

void Importer::startNext() {
    if (m_waiting.empty()) {
        Q_EMIT idle();
        return;
    }
    Q_EMIT adding();
    m_isRunning = true;
    m_startedAt = m_clock.now();
    m_rebuiltAt = -secondsBetweenRebuilds;
    m_added = 0;
    m_skipped = 0;
    const QStringList roots = m_waiting.front();
    m_waiting.pop_front();
    m_worker.start(Run{this, roots, m_queue.records(), m_needs, m_language.resolvedLanguage()});
}

void Importer::take(const QStringList& roots, const Found& found) {
    qCInfo(libraryLog, "import: %ld roots, %ld audio files", static_cast<long>(roots.size()),
           static_cast<long>(found.files));
    if (found.files == 0) {
        m_status.show(L10n::text(L10nKey::noSupportedAudio, m_language.resolvedLanguage()), true);
        return end();
    }
    m_skipped = static_cast<qint64>(found.files - found.newFiles);
    if (found.newFiles > 0)
        return; // the worker reads them now
    m_status.show(L10n::importResult(0, m_skipped, m_language.resolvedLanguage()), false);
    if (const auto row = m_queue.rowOfPath(found.firstPath))
        Q_EMIT playAsked(m_queue.idAt(*row));
    end();
}

void Importer::addRows(const TrackRows& rows) {
    if (rows.empty())
        return;
    Q_EMIT adding();
    const bool isFirst = m_added == 0;
    m_added += static_cast<qint64>(rows.size());
    m_store.append(rows);
    const std::size_t first = m_queue.append(rows);
    m_importedPaths.add(pathsOf(rows));
    if (isFirst)
        m_first = m_queue.idAt(first);
    // Deriving the albums costs more the larger the library is, so it is not done for every
    // portion.
    const double now = m_clock.now();
    if (now - m_rebuiltAt >= secondsBetweenRebuilds) {
        m_rebuiltAt = now;
        m_catalog.rebuildImportedAlbums();
    }
}

void Importer::playFirst() {
    if (const QUuid first = std::exchange(m_first, {}); !first.isNull())
        Q_EMIT playAsked(first);
}

void Importer::finish() {
    m_catalog.rebuildImportedAlbums();
    m_status.show(L10n::importResult(m_added, m_skipped, m_language.resolvedLanguage()), false);
    Q_EMIT imported();
    end();
}

void Importer::end() {
    m_isRunning = false;
    setProgress(-1);
    startNext();
}

void Importer::setProgress(double progress) {
    const bool isShown = m_isRunning && m_clock.now() - m_startedAt >= secondsBeforeProgress;
    const double shown = isShown ? progress : -1;
    if (shown == m_progress)
        return;
    m_progress = shown;
    Q_EMIT importProgressChanged();
}

} // namespace halvane
