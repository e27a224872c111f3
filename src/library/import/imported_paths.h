// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <QStringList>

#include <functional>

namespace halvane {

class Preferences;

/// The stored list of the library's files by their standardized paths. The list of a small library
/// is kept sorted. New paths of a large one go to the end, so that the cost of a change does not
/// grow with the library. Main thread.
class ImportedPaths {
  public:
    /// Both must outlive it.
    ImportedPaths(Preferences& preferences, const LibraryStore& library)
        : m_preferences(preferences)
        , m_library(library) {}

    /// The list as it is stored, for a worker to sort.
    [[nodiscard]] QStringList stored() const;
    /// The same, to be read on any thread; none if that failed. The library is not whole until
    /// restored(), so that the stored list is not replaced by its paths before.
    std::function<std::optional<QStringList>()> restore();
    void restored() { m_isRestoring = false; }
    /// Tracks with these paths came into the library.
    void add(const QStringList& paths);

  private:
    Preferences& m_preferences;
    const LibraryStore& m_library;
    bool m_isRestoring = false;
};

} // namespace halvane
