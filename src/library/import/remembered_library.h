// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "metadata/cache/metadata_index.h"

#include <QStringList>

namespace halvane {

/// The library as it is remembered, without a look at any of its files.
struct RememberedLibrary {
    IndexedRows rows;             ///< of the files that have a record, by path
    std::vector<FileUrl> unknown; ///< those that have none, by path
};

/// Puts the stored paths, in any order, together with their records. `cacheDirectory` is where the
/// pictures are kept. Works on all processors. Any thread.
RememberedLibrary rememberedLibrary(QStringList paths,
                                    const std::shared_ptr<const MetadataIndex>& index,
                                    const QString& cacheDirectory);

} // namespace halvane
