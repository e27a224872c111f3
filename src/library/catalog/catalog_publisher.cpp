// SPDX-License-Identifier: MIT
#include "library/catalog/catalog_publisher.h"

#include "library/user/language_setting.h"
#include "library/user/track_user_data.h"
#include "platform/thread_check.h"

#include <utility>

namespace halvane {

CatalogPublisher::CatalogPublisher(const LibraryStore& store, const TrackUserData& userData,
                                   const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_userData(userData)
    , m_language(language)
    , m_catalog(buildCatalog(std::make_shared<const TrackRows>(), ResolvedLanguage::english)) {
    connect(&userData, &TrackUserData::reset, this, &CatalogPublisher::rebuildImportedAlbums);
    connect(&userData, &TrackUserData::lovedChanged, this, &CatalogPublisher::followLoved);
    connect(&userData, &TrackUserData::playsChanged, this,
            [this] { m_isOutdated |= m_sorting.by == TrackOrder::plays; });
    connect(&userData, &TrackUserData::ratingChanged, this,
            [this] { m_isOutdated |= m_sorting.by == TrackOrder::rating; });
    // The catalog contains texts for unknown names and for lengths.
    connect(&language, &LanguageSetting::languageChanged, this,
            &CatalogPublisher::rebuildImportedAlbums);
}

void CatalogPublisher::rebuildImportedAlbums() {
    assertOwnThread(*this);
    m_worker.cancel(); // an older derivation would be stale
    m_lovedSince = 0;
    auto rows = m_store.snapshot();
    const ResolvedLanguage language = m_language.resolvedLanguage();
    const QSet<QString>& loved = m_userData.lovedPaths();
    const auto derive = [rows, language, loved, sorting = m_sorting, said = said(m_sorting)] {
        return sorted(buildCatalog(rows, language, loved), sorting, said);
    };
    m_isOutdated = false;
    if (rows->size() <= doneInPlace)
        return publish(derive());
    m_worker.run(derive, [this](Derived derived) { publish(std::move(derived)); });
}

void CatalogPublisher::setSorting(const TrackSorting& sorting) {
    assertOwnThread(*this);
    if (sorting == m_sorting)
        return;
    m_sorting = sorting;
    sortRows();
}

void CatalogPublisher::sortOutdated() {
    if (m_isOutdated)
        sortRows();
}

IntegerMap CatalogPublisher::said(const TrackSorting& sorting) const {
    return sorting.by == TrackOrder::plays    ? m_userData.playCounts()
           : sorting.by == TrackOrder::rating ? m_userData.trackRatings()
                                              : IntegerMap();
}

std::vector<quint32> CatalogPublisher::sortedRows(const TrackSorting& sorting,
                                                  std::vector<quint32> rows) const {
    return halvane::sortedRows(*m_catalog, sorting, said(sorting), std::move(rows));
}

CatalogPublisher::Derived CatalogPublisher::sorted(std::shared_ptr<const Catalog> catalog,
                                                   const TrackSorting& sorting,
                                                   const IntegerMap& said) {
    std::vector<quint32> rows;
    if (sorting.by != TrackOrder::library)
        rows = halvane::sortedRows(*catalog, sorting, said, allRows(*catalog));
    return {std::move(catalog), sorting, std::move(rows)};
}

void CatalogPublisher::sortRows() {
    m_isOutdated = false;
    if (m_sorting.by == TrackOrder::library || m_catalog->rows->size() <= doneInPlace)
        return takeOrder(sorted(m_catalog, m_sorting, said(m_sorting)));
    m_worker.run([catalog = m_catalog, sorting = m_sorting,
                  said = said(m_sorting)] { return sorted(catalog, sorting, said); },
                 [this](Derived derived) {
                     if (derived.catalog == m_catalog && derived.sorting == m_sorting)
                         takeOrder(std::move(derived));
                 });
}

void CatalogPublisher::takeOrder(Derived derived) {
    m_sorted = derived.sorting;
    m_sortedRows = std::move(derived.rows);
    Q_EMIT sortedRowsChanged();
}

TrackRows CatalogPublisher::albumAround(const TrackPtr& track) const {
    const Catalog& catalog = *m_catalog;
    const TrackRows& rows = *catalog.rows;
    const auto row = m_store.rowOf(track->path());
    if (!row || *row >= rows.size() || rows[*row]->path() != track->path())
        return {track};
    const quint32 album = catalog.albumOfRow[*row];
    TrackRows found;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (catalog.albumOfRow[i] == album)
            found.push_back(rows[i]);
    return found;
}

void CatalogPublisher::whenCurrent(QObject* context, std::function<void()> then) {
    assertOwnThread(*this);
    if (isCurrent())
        then();
    else
        connect(this, &CatalogPublisher::catalogChanged, context, std::move(then),
                Qt::SingleShotConnection);
}

// A derivation under way is of the store's rows, because whoever changes them asks for another one.
void CatalogPublisher::followLoved(const QString& path) {
    if (!m_store.rowOf(path))
        return;
    const std::ptrdiff_t change = m_userData.isLoved(path) ? 1 : -1;
    m_lovedSince += change;
    m_lovedCount += static_cast<std::size_t>(change);
    Q_EMIT lovedCountChanged();
}

void CatalogPublisher::publish(Derived derived) {
    const auto before = std::exchange(m_catalog, std::move(derived.catalog));
    m_sorted = derived.sorting;
    m_sortedRows = std::move(derived.rows);
    m_lovedCount = m_catalog->lovedCount + static_cast<std::size_t>(m_lovedSince);
    Q_EMIT catalogChanged();
    // Freeing a large catalog takes long. The lists no longer hold it.
    if (before->rows->size() > doneInPlace)
        m_worker.start([before](const auto&) {});
    if (m_sorted != m_sorting) // which was asked for meanwhile
        sortRows();
}

} // namespace halvane
