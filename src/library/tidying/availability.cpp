// SPDX-License-Identifier: MIT
#include "library/tidying/availability.h"

#include "library/playback/play_queue.h"
#include "metadata/parallel/bounded_parallel.h"
#include "platform/cloud/cloud_files.h"
#include "platform/thread_check.h"

#include <QFileInfo>

#include <algorithm>

namespace halvane {

Availability::Availability(const LibraryStore& store, const PlayQueue& queue,
                           std::shared_ptr<const CloudFiles> cloudFiles, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_queue(queue)
    , m_cloudFiles(std::move(cloudFiles)) {
}

Availability::Sets Availability::lookAt(const TrackRows& library, const TrackRows& queue,
                                        const std::shared_ptr<const CloudFiles>& cloudFiles,
                                        const Sets& before) {
    constexpr std::size_t portion = 512;
    // Shared with the threads, because one that hangs in a dead mount outlives this call.
    auto paths = std::make_shared<QStringList>();
    // The queue shares nearly all of its records with the library.
    QSet<const Track*> known;
    for (const TrackRows* rows : {&library, &queue}) {
        for (const TrackPtr& row : *rows) {
            if (!row->sourceURL || known.contains(row.get()))
                continue;
            known.insert(row.get());
            paths->append(row->path());
        }
    }

    const auto count = static_cast<std::size_t>(paths->size());
    BoundedParallel<Sets>::Options options;
    options.threads = lookingThreads();
    const auto portions = BoundedParallel<Sets>::run(
        (count + portion - 1) / portion,
        [paths, cloudFiles](std::size_t index) {
            Sets sets;
            const QStringList files =
                paths->mid(static_cast<qsizetype>(index) * qsizetype{portion}, portion);
            const auto found = cloudFiles->presences(files);
            for (qsizetype i = 0; i < files.size(); ++i) {
                const FilePresence presence = found[static_cast<std::size_t>(i)];
                if (presence == FilePresence::evicted)
                    sets.inCloud.insert(files[i]);
                else if (presence == FilePresence::gone)
                    sets.missing.insert(files[i]);
            }
            return sets;
        },
        options);
    Sets all;
    for (std::size_t p = 0; p < portions.size(); ++p) {
        if (portions[p]) {
            all.inCloud.unite(portions[p]->inCloud);
            all.missing.unite(portions[p]->missing);
            continue;
        }
        for (const QString& path :
             paths->mid(static_cast<qsizetype>(p) * qsizetype{portion}, portion)) {
            if (before.inCloud.contains(path))
                all.inCloud.insert(path);
            else if (before.missing.contains(path))
                all.missing.insert(path);
        }
    }
    return all;
}

void Availability::refreshAvailability() {
    assertOwnThread(*this);
    const quint64 generation = ++m_generation;
    m_worker.cancel(); // only the newest look counts
    if (m_store.size() == 0 && m_queue.isEmpty()) {
        publish({});
        return;
    }
    m_worker.run([library = m_store.snapshot(), queue = m_queue.records(),
                  cloudFiles = m_cloudFiles,
                  before = m_sets] { return lookAt(*library, queue, cloudFiles, before); },
                 [this, generation](Sets sets) { land(generation, std::move(sets)); });
}

void Availability::land(quint64 generation, Sets sets) {
    if (generation != m_generation) {
        // A file was marked meanwhile, so that this look is stale.
        refreshAvailability();
        return;
    }
    publish(std::move(sets));
    Q_EMIT refreshed();
}

void Availability::publish(Sets sets) {
    const bool cloudChanged = sets.inCloud != m_sets.inCloud;
    const bool missingChanged = sets.missing != m_sets.missing;
    const auto all = [](const Sets& of) { return of.inCloud | of.missing; };
    QSet<QString> changed = all(sets) | all(m_sets);
    changed -= sets.inCloud & m_sets.inCloud;
    changed -= sets.missing & m_sets.missing;
    m_sets = std::move(sets);
    if (missingChanged) {
        m_missingBytes = 0;
        for (const QString& path : std::as_const(m_sets.missing))
            m_missingBytes += bytesOf(path);
    }
    if (cloudChanged)
        Q_EMIT cloudPendingPathsChanged();
    if (missingChanged)
        Q_EMIT unavailablePathsChanged();
    if (!changed.isEmpty())
        Q_EMIT statesChanged(changed);
}

void Availability::forget(const QSet<QString>& paths) {
    ++m_generation;
    Sets sets = m_sets;
    sets.inCloud.subtract(paths);
    sets.missing.subtract(paths);
    publish(std::move(sets));
}

TrackAvailability Availability::state(const QString& path) const {
    if (m_sets.inCloud.contains(path))
        return TrackAvailability::inCloud;
    return m_sets.missing.contains(path) ? TrackAvailability::missing
                                         : TrackAvailability::available;
}

void Availability::markAvailable(const QString& path) {
    setState(path, TrackAvailability::available);
}

void Availability::markInCloud(const QString& path) {
    setState(path, TrackAvailability::inCloud);
}

void Availability::markMissing(const QString& path) {
    setState(path, TrackAvailability::missing);
}

// The sets change in place, because a drive's files may be found missing one by one.
void Availability::setState(const QString& path, TrackAvailability state) {
    assertOwnThread(*this);
    ++m_generation;
    const auto update = [&](QSet<QString>& set, bool holds) {
        if (set.contains(path) == holds)
            return false;
        if (holds)
            set.insert(path);
        else
            set.remove(path);
        return true;
    };
    const bool cloudChanged = update(m_sets.inCloud, state == TrackAvailability::inCloud);
    const bool missingChanged = update(m_sets.missing, state == TrackAvailability::missing);
    if (missingChanged)
        m_missingBytes += state == TrackAvailability::missing ? bytesOf(path) : -bytesOf(path);
    if (cloudChanged)
        Q_EMIT cloudPendingPathsChanged();
    if (missingChanged)
        Q_EMIT unavailablePathsChanged();
    if (cloudChanged || missingChanged)
        Q_EMIT statesChanged({path});
}

qint64 Availability::bytesOf(const QString& path) const {
    const TrackPtr track = m_store.track(path);
    return track ? std::max<qint64>(track->fileSize, 0) : 0;
}

void Availability::startCloudDownloads(const QSet<QString>& paths) {
    Q_EMIT downloadsAsked(paths);
}

} // namespace halvane
