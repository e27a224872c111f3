// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

struct pa_context;
struct pa_threaded_mainloop;

namespace halvane {

class PulseSurvey;

/// A device that can play, as the server tells of it.
struct PulseSink {
    std::uint32_t index = 0; ///< good until the sink goes away
    QString name;            ///< the server's, the same again after a restart
    QString description;     ///< for people
    int sampleRate = 0;      ///< Hz
    /// What the device has taken is not taken back any more: a pipe, Bluetooth, another machine.
    bool keepsWhatItHas = false;

    bool operator==(const PulseSink&) const = default;
};

/// What the server has, in its own order.
struct PulseSinks {
    std::vector<PulseSink> sinks;
    QString defaultSink; ///< a name, empty for none
    /// The server takes a device's whole block at a time and does not take it back (PipeWire).
    bool takesBlocks = false;

    bool operator==(const PulseSinks&) const = default;
};

/// The one connection to the sound server. It is made in the background and made again, with
/// growing pauses, whenever the server goes away. The library's thread, on which every callback of
/// libpulse runs and which is the audio thread, belongs to it. Main thread, but for what says
/// otherwise.
class PulseServer final : public QObject {
    Q_OBJECT

  public:
    /// Connects to the server at this address, or by default to the session's own. The clock must
    /// outlive it.
    explicit PulseServer(Clock& clock, const QString& address = {}, QObject* parent = nullptr);
    ~PulseServer() override;

    /// Waits until the first attempt to connect has come to an end, but not longer than this.
    void waitForFirstAttempt(std::chrono::milliseconds longest);
    /// Whether the server answers and has told its sinks.
    [[nodiscard]] bool isReady() const { return m_ready; }
    /// As last told; empty while not ready.
    [[nodiscard]] const PulseSinks& sinks() const { return m_sinks; }
    [[nodiscard]] const PulseSink* sink(std::uint32_t index) const;
    [[nodiscard]] const PulseSink* sink(const QString& name) const;

    /// Holds the audio thread off while it lives. Whatever is called of libpulse from another
    /// thread needs it. Not to be taken on the audio thread, which holds it in every callback.
    class Lock {
      public:
        explicit Lock(const PulseServer& server);
        ~Lock();
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

      private:
        pa_threaded_mainloop* m_loop;
    };
    /// Under the lock; null while not connected.
    [[nodiscard]] pa_context* context() const { return m_context; }
    /// The library's thread.
    [[nodiscard]] pa_threaded_mainloop* loop() const { return m_loop; }

  Q_SIGNALS:
    /// Comes before readyChanged when the server appears, and after it when it goes away.
    void sinksChanged();
    void readyChanged();

  private:
    /// The newest news from the audio thread.
    struct News {
        bool lost = false;
        QString reason;
        std::optional<PulseSinks> sinks;
    };

    // Audio thread
    void connectContext();
    void contextStateChanged(pa_context* context);
    void tell(News news);

    // Main thread
    void attempt();
    void dropContext();
    void deliver();
    void becomeLost(const QString& reason);
    void becomeReady(PulseSinks sinks);

    Clock& m_clock;
    const QByteArray m_address;
    pa_threaded_mainloop* m_loop = nullptr;

    // Under the lock
    pa_context* m_context = nullptr;
    std::unique_ptr<PulseSurvey> m_survey;
    bool m_mayStartServer = true; ///< let the library start one: at the first attempt only

    bool m_isPreferred = false; ///< the audio thread has its priority; that thread's

    // Under m_newsMutex, which the audio thread takes only when something has changed
    std::mutex m_newsMutex;
    std::condition_variable m_newsCame;
    std::optional<News> m_news;
    bool m_deliveryPosted = false;

    // Main thread
    bool m_ready = false;
    PulseSinks m_sinks;
    std::chrono::milliseconds m_pause;
    std::unique_ptr<Timer> m_retry;
};

} // namespace halvane
