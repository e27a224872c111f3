// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/play_queue.h"
#include "library/playback/queue_planner.h"
#include "library/tidying/file_availability.h"

#include <QSet>

namespace halvane {

/// The queue as the planner sees it at this moment. Everything given must outlive it. Main thread.
class PlannedQueue final : public QueueView {
  public:
    /// Rows that are about to leave, in ascending order, are not playable any more.
    PlannedQueue(const PlayQueue& queue, const FileAvailability& files, const QSet<QUuid>& played,
                 const QSet<QUuid>& askedFor, std::vector<RowRange> leaving)
        : m_queue(queue)
        , m_files(files)
        , m_played(played)
        , m_askedFor(askedFor)
        , m_leaving(std::move(leaving)) {}

    [[nodiscard]] std::size_t size() const override { return m_queue.size(); }
    [[nodiscard]] std::optional<std::size_t> current() const override {
        return m_queue.currentRow();
    }
    [[nodiscard]] bool isPlayable(std::size_t entry) const override {
        return m_files.state(path(entry)) == TrackAvailability::available &&
               !isIn(m_leaving, entry);
    }
    [[nodiscard]] bool wasPlayed(std::size_t entry) const override {
        return m_played.contains(m_queue.idAt(entry));
    }
    [[nodiscard]] bool isAskedFor(std::size_t entry) const override {
        return !m_askedFor.isEmpty() && m_askedFor.contains(m_queue.idAt(entry));
    }
    [[nodiscard]] bool isSameFile(std::size_t entry, std::size_t other) const override {
        return path(entry) == path(other);
    }

  private:
    [[nodiscard]] const QString& path(std::size_t entry) const {
        return m_queue.record(entry).sourceURL->standardizedPath();
    }

    const PlayQueue& m_queue;
    const FileAvailability& m_files;
    const QSet<QUuid>& m_played;
    const QSet<QUuid>& m_askedFor;
    const std::vector<RowRange> m_leaving;
};

} // namespace halvane
