// SPDX-License-Identifier: MIT
#pragma once

#include "library/library_store.h"

#include <QStringList>

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
    /// Tracks of these paths came into the library.
    void add(const QStringList& paths);
    /// Tracks of these paths left it.
    void remove(const QSet<QString>& paths);

  private:
    Preferences& m_preferences;
    const LibraryStore& m_library;
};

} // namespace halvane
