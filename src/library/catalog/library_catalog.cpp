// SPDX-License-Identifier: MIT
#include "library/catalog/library_catalog.h"

#include "platform/thread_check.h"

#include <utility>

namespace halvane {

namespace {

/// Up to here a derivation takes a few milliseconds: less than a worker's round trip is worth.
constexpr std::size_t derivedInPlace = 2000;

} // namespace

LibraryCatalog::LibraryCatalog(const LibraryStore& store,
                               std::function<ResolvedLanguage()> language, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_language(std::move(language))
    , m_catalog(buildCatalog(std::make_shared<const TrackRows>(), ResolvedLanguage::english)) {
}

void LibraryCatalog::rebuildImportedAlbums() {
    assertOwnThread(*this);
    m_worker.cancel(); // what was asked for before has been overtaken
    auto rows = m_store.snapshot();
    const ResolvedLanguage language = m_language();
    if (rows->size() <= derivedInPlace)
        return publish(buildCatalog(std::move(rows), language));
    m_worker.run([rows, language] { return buildCatalog(rows, language); },
                 [this](std::shared_ptr<const Catalog> catalog) { publish(std::move(catalog)); });
}

void LibraryCatalog::whenCurrent(QObject* context, std::function<void()> then) {
    assertOwnThread(*this);
    if (isCurrent())
        then();
    else
        connect(this, &LibraryCatalog::catalogChanged, context, std::move(then),
                Qt::SingleShotConnection);
}

void LibraryCatalog::publish(std::shared_ptr<const Catalog> catalog) {
    const auto before = std::exchange(m_catalog, std::move(catalog));
    Q_EMIT catalogChanged();
    // A large one takes long to free; the lists have let go of it.
    if (before->rows->size() > derivedInPlace)
        m_worker.start([before](const auto&) {});
}

} // namespace halvane
