// SPDX-License-Identifier: MIT
#include "library/catalog/catalog_publisher.h"

#include "library/user/language_setting.h"
#include "library/user/track_user_data.h"
#include "platform/thread_check.h"

#include <utility>

namespace halvane {

namespace {

// With so many rows a derivation takes a few milliseconds, which is not worth a worker's round
// trip.
constexpr std::size_t derivedInPlace = 2000;

} // namespace

CatalogPublisher::CatalogPublisher(const LibraryStore& store, const TrackUserData& userData,
                                   const LanguageSetting& language, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_userData(userData)
    , m_language(language)
    , m_catalog(buildCatalog(std::make_shared<const TrackRows>(), ResolvedLanguage::english)) {
    connect(&userData, &TrackUserData::reset, this, &CatalogPublisher::rebuildImportedAlbums);
    connect(&userData, &TrackUserData::lovedChanged, this, &CatalogPublisher::followLoved);
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
    const auto derive = [rows, language, loved, sorting = m_sorting] {
        return sorted(buildCatalog(rows, language, loved), sorting);
    };
    if (rows->size() <= derivedInPlace)
        return publish(derive());
    m_worker.run(derive, [this](Derived derived) { publish(std::move(derived)); });
}

void CatalogPublisher::setSorting(const TrackSorting& sorting) {
    assertOwnThread(*this);
    m_sorting = sorting;
    sortRows();
}

CatalogPublisher::Derived CatalogPublisher::sorted(std::shared_ptr<const Catalog> catalog,
                                                   const TrackSorting& sorting) {
    std::vector<quint32> rows = halvane::sortedRows(*catalog, sorting);
    return {std::move(catalog), sorting, std::move(rows)};
}

void CatalogPublisher::sortRows() {
    if (m_sorting.by == TrackOrder::library || m_catalog->rows->size() <= derivedInPlace)
        return takeOrder(sorted(m_catalog, m_sorting));
    m_worker.run([catalog = m_catalog, sorting = m_sorting] { return sorted(catalog, sorting); },
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
    if (before->rows->size() > derivedInPlace)
        m_worker.start([before](const auto&) {});
    if (m_sorted != m_sorting) // which was asked for meanwhile
        sortRows();
}

} // namespace halvane
