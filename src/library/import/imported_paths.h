// SPDX-License-Identifier: MIT
#pragma once

#include "library/catalog/library_store.h"

#include <QStringList>

#include <functional>

namespace halvane {

class Preferences;

/// The stored list of the library's files: standardized paths, sorted. The cost of a change to a
/// large library does not grow with the library: there new paths go to the end of the stored list,
/// and reading sorts it. Main thread.
class ImportedPaths {
  public:
    /// Both must outlive it.
    ImportedPaths(Preferences& preferences, const LibraryStore& library)
        : m_preferences(preferences)
        , m_library(library) {}

    /// As stored; sorting is left to a worker.
    QStringList stored() const;
    /// The same when it comes, on any thread; none when that failed. Until restored() the library
    /// is not whole, so that the stored list is not written anew from it.
    std::function<std::optional<QStringList>()> restore();
    void restored() { m_isRestoring = false; }
    /// Tracks of these paths came into the library.
    void add(const QStringList& paths);

  private:
    Preferences& m_preferences;
    const LibraryStore& m_library;
    bool m_isRestoring = false;
};

} // namespace halvane
