// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"
#include "metadata/cache/metadata_index.h"

#include <QStringList>

namespace halvane {

/// The library as the index knows it, without a look at any of its files.
struct RememberedLibrary {
    IndexedRows rows;             ///< of the files with a record, by path
    std::vector<FileUrl> unknown; ///< the files without one, by path
};

/// Finds the records of the stored paths, which may be in any order. `cacheDirectory` is where the
/// pictures are kept. Uses all processors. Any thread.
RememberedLibrary rememberedLibrary(QStringList paths,
                                    const std::shared_ptr<const MetadataIndex>& index,
                                    const QString& cacheDirectory);

} // namespace halvane
