// SPDX-License-Identifier: MIT
#include "library/catalog/library_catalog.h"

#include "library/background.h"
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
    m_worker.setMaxThreadCount(1);
}

LibraryCatalog::~LibraryCatalog() {
    m_worker.clear();
    m_worker.waitForDone();
}

void LibraryCatalog::rebuildImportedAlbums() {
    assertOwnThread(*this);
    ++m_generation;
    m_worker.clear(); // what waits has been overtaken
    auto rows = m_store.snapshot();
    const ResolvedLanguage language = m_language();
    if (rows->size() <= derivedInPlace)
        return publish(buildCatalog(std::move(rows), language));
    m_worker.start([this, rows, language, generation = m_generation] {
        yieldToTheWindow();
        auto catalog = buildCatalog(rows, language);
        QMetaObject::invokeMethod(this, [this, catalog, generation] {
            if (generation == m_generation)
                publish(catalog);
        });
    });
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
    if (before->rows->size() > derivedInPlace)
        m_worker.start([before] {}); // a large one takes long to free; the lists have let go of it
}

} // namespace halvane
