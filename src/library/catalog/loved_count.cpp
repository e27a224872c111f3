// SPDX-License-Identifier: MIT
#include "library/catalog/loved_count.h"

#include "library/background.h"
#include "library/catalog/library_catalog.h"
#include "library/user/track_user_data.h"

#include <algorithm>

namespace halvane {

namespace {

/// Up to here counting takes less than a millisecond.
constexpr qsizetype countedInPlace = 2000;

} // namespace

LovedCount::LovedCount(const LibraryStore& store, const LibraryCatalog& catalog,
                       const TrackUserData& userData, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_catalog(catalog)
    , m_userData(userData) {
    m_worker.setMaxThreadCount(1);
    connect(&catalog, &LibraryCatalog::catalogChanged, this, &LovedCount::recount);
    connect(&userData, &TrackUserData::reset, this, &LovedCount::recount);
    connect(&userData, &TrackUserData::lovedChanged, this, &LovedCount::follow);
}

void LovedCount::recount() {
    const quint64 generation = ++m_generation;
    const QSet<QString>& loved = m_userData.lovedPaths();
    m_isCounting = loved.size() > countedInPlace;
    if (!m_isCounting) {
        set(static_cast<std::size_t>(
            std::count_if(loved.cbegin(), loved.cend(), [this](const QString& path) {
                return m_store.rowOf(path).has_value();
            })));
        return;
    }
    runInBackground(
        m_worker, this,
        [loved, rows = m_catalog.catalog()->rows] {
            yieldToTheWindow();
            return std::count_if(rows->cbegin(), rows->cend(), [&](const TrackPtr& track) {
                return loved.contains(track->path());
            });
        },
        [this, generation](std::ptrdiff_t count) {
            if (generation != m_generation)
                return;
            m_isCounting = false;
            set(static_cast<std::size_t>(count));
        });
}

void LovedCount::follow(const QString& path) {
    if (m_isCounting)
        recount();
    else if (m_store.rowOf(path))
        set(m_userData.isLoved(path) ? m_count + 1 : m_count - 1);
}

void LovedCount::set(std::size_t count) {
    if (count == m_count)
        return;
    m_count = count;
    Q_EMIT changed();
}

} // namespace halvane
