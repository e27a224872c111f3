// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace halvane {

/// Writes a file so that the old or the new content is there, whole, at any moment, even after a
/// crash or a power cut. A neighbouring file is written and synced, and then takes the name. One
/// writer of one name at a time. One thread.
class AtomicFile {
  public:
    explicit AtomicFile(const QString& path);
    /// Leaves the old content when commit() was not called.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Failures are remembered: the next commit() then fails.
    void write(const QByteArray& bytes);
    /// Whether the new content is in place.
    bool commit();

  private:
    QByteArray m_path;
    QByteArray m_neighbour;
    int m_descriptor = -1;
    bool m_failed = false;
};

/// Gives `path` the content of another file without storing it twice. False where the file system
/// can't.
bool linkAtomically(const QString& existing, const QString& path);

} // namespace halvane
