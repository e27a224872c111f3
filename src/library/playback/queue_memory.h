// SPDX-License-Identifier: MIT
#pragma once

#include "library/playback/play_queue.h"
#include "platform/clock.h"
#include "platform/serial_worker.h"

#include <QObject>

#include <memory>
#include <optional>

namespace halvane {

class Preferences;
class Transport;

/// The queue as the last run left it, before it is known which files are still in the library.
struct LeftQueue {
    QStringList paths;
    std::optional<QString> sourceLabel;

    [[nodiscard]] QByteArray toJson() const;
    /// None if the text is nothing of the kind.
    static std::optional<LeftQueue> fromJson(const QByteArray& json);
    /// Entries for those of its files that the library has, in its order. Any thread.
    [[nodiscard]] std::vector<PlayQueue::Entry> entries(const TrackRows& library) const;
};

/// Lets the next start take up the queue where this run leaves it, for whoever has chosen that: the
/// entries, which is current and where it stands. The entries are a JSON file of their own, written
/// some seconds after they change, since a queue of the whole library is megabytes long. The place
/// is one of the preferences, written whenever playback changes and now and then while it goes on.
/// Main thread.
class QueueMemory : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool startsWhereLeftOff READ startsWhereLeftOff WRITE setStartsWhereLeftOff NOTIFY
                   startsWhereLeftOffChanged)

  public:
    /// All references must outlive it. `folder` is where the file lives.
    QueueMemory(Preferences& preferences, PlayQueue& queue, Transport& transport, Clock& clock,
                QString folder, QObject* parent = nullptr);
    /// Waits for a write that has begun.
    ~QueueMemory() override;

    /// Takes the choice from the preferences. Writes nothing.
    void restore();
    [[nodiscard]] bool startsWhereLeftOff() const { return m_isChosen; }
    /// Stores the choice, and forgets the queue when it is taken back.
    void setStartsWhereLeftOff(bool chosen);

    /// Reads what the last run left; none where there is nothing or nothing was asked for. To be
    /// called on any thread, and owns what it uses.
    using Recall = std::function<std::optional<LeftQueue>()>;
    [[nodiscard]] Recall recall() const;
    /// Makes the queue what was left, if there is no other yet, paused at its place. Opens no file.
    void takeUp(std::vector<PlayQueue::Entry> entries, const LeftQueue& left);
    /// The library is restored: the queue is worth keeping from now on.
    void begin();
    /// Writes what is not written yet. Called when the program ends.
    void save();

  Q_SIGNALS:
    void startsWhereLeftOffChanged();

  private:
    void entriesChanged();
    void saveEntries();
    void savePlace();
    [[nodiscard]] QString file() const;

    Preferences& m_preferences;
    PlayQueue& m_queue;
    Transport& m_transport;
    Clock& m_clock;
    const QString m_folder;
    bool m_isChosen = false;
    bool m_hasBegun = false;
    std::unique_ptr<Timer> m_pendingSave; ///< of the entries
    std::unique_ptr<Timer> m_beat;        ///< while something plays
    SerialWorker m_worker;
};

} // namespace halvane
