// SPDX-License-Identifier: MIT
#pragma once

#include "support/child_process.h"

#include <QString>
#include <QTemporaryDir>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace halvane::test {

/// What a sink plays, taken from its monitor by a recorder of its own. Interleaved floats.
class MonitorRecording {
  public:
    MonitorRecording(const QString& server, const QString& sink, int sampleRate, int channels,
                     int latency, const QString& file);

    /// Whether the recorder has begun to receive.
    [[nodiscard]] bool hasBegun() const;
    /// All samples so far.
    [[nodiscard]] std::vector<float> samples() const;
    [[nodiscard]] std::int64_t frames() const;
    /// Runs the event loop until this many more frames have been recorded.
    [[nodiscard]] bool waitForFrames(std::int64_t more) const;

  private:
    QString m_file;
    int m_channels;
    std::unique_ptr<ChildProcess> m_recorder;
};

/// The other end of a sink that writes to a pipe: takes from it as fast as the sound runs. Stereo.
class PipeListener {
  public:
    PipeListener(const QString& pipe, int sampleRate);
    ~PipeListener();
    PipeListener(const PipeListener&) = delete;
    PipeListener& operator=(const PipeListener&) = delete;

    /// Interleaved floats, all so far.
    [[nodiscard]] std::vector<float> samples() const;

  private:
    void listen(int sampleRate);

    int m_pipe;
    std::atomic<bool> m_ends{false};
    mutable std::mutex m_mutex;
    std::vector<float> m_heard; ///< under the mutex
    std::thread m_thread;
};

/// A sound server for this test alone, on a socket of its own. Every call waits until it is done;
/// what goes wrong is reported as a test failure.
class PrivateSoundServer {
  public:
    virtual ~PrivateSoundServer();

    /// What to connect to, as libpulse writes it ("unix:...").
    [[nodiscard]] QString address() const;
    /// Starts it, again after kill(). What was loaded after the first start is gone.
    virtual void start() = 0;
    /// Ends it at once, as a crash would.
    virtual void kill() = 0;
    /// Stops it where it is, without closing its sockets, and lets it go on.
    virtual void freeze() = 0;
    virtual void thaw() = 0;

    /// Adds a sink that plays to nothing, in 32-bit float, and never takes back what it has begun
    /// to play, so that its monitor tells the truth; returns the number to unload it by.
    std::uint32_t loadNullSink(const QString& name, int sampleRate, const QString& description,
                               int channels = 2);
    /// Adds one that takes back what it has not played yet, as sound cards do.
    void loadRevisingSink(const QString& name, int sampleRate);
    /// Adds one that writes to a pipe, as to Bluetooth: what it has written it never takes back.
    /// The listener hears what arrives.
    std::unique_ptr<PipeListener> loadPipeSink(const QString& name, int sampleRate);
    /// Adds a device that can only record.
    virtual std::uint32_t loadInputOnly(const QString& name, const QString& description) = 0;
    void unload(std::uint32_t module);
    void setDefaultSink(const QString& name);
    void suspendSink(const QString& name, bool suspended);
    bool hasPausedStream();
    /// How many streams play or are paused.
    qsizetype streams();
    /// The server's number for a sink; none without one.
    std::optional<std::uint32_t> sinkIndex(const QString& name);
    /// Starts to record what a sink plays and waits until the recording runs. What has been
    /// recorded can't be taken back: a recording as close to the ear as its latency, in ms.
    std::unique_ptr<MonitorRecording> record(const QString& sink, int sampleRate, int channels = 2,
                                             int latency = 100);

  protected:
    PrivateSoundServer();
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QProcessEnvironment environment() const;
    std::uint32_t load(const QStringList& module);
    QString control(const QStringList& arguments);

  private:
    QTemporaryDir m_folder; ///< runtime and state folder, home, sockets, logs and recordings
    int m_recordings = 0;
};

/// PulseAudio with three null sinks, "null44100" (the default), "null48000" and "null96000", which
/// are named "Null 44100" and so on.
class PrivatePulse final : public PrivateSoundServer {
  public:
    PrivatePulse() { start(); }

    void start() override;
    void kill() override { m_server->kill(); }
    void freeze() override { m_server->freeze(); }
    void thaw() override { m_server->thaw(); }
    std::uint32_t loadInputOnly(const QString& name, const QString& description) override;
    /// Has the server silence music while somebody calls.
    void loadRoleCork() { load({QStringLiteral("module-role-cork")}); }
    /// Somebody who calls, as long as it lives.
    std::unique_ptr<ChildProcess> call();

  private:
    std::unique_ptr<ChildProcess> m_server;
};

/// PipeWire's pulse server with the same three null sinks.
class PrivatePipeWire final : public PrivateSoundServer {
  public:
    PrivatePipeWire() { start(); }

    void start() override;
    void kill() override;
    void freeze() override { m_pulse->freeze(); }
    void thaw() override { m_pulse->thaw(); }
    std::uint32_t loadInputOnly(const QString& name, const QString& description) override;

    /// Has everything run at another rate, also what is playing.
    void forceRate(int sampleRate);

  private:
    [[nodiscard]] QProcessEnvironment sessionEnvironment() const;
    void leaveBluetoothOut() const;

    // In the order they are started.
    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_core;
    std::unique_ptr<ChildProcess> m_session;
    std::unique_ptr<ChildProcess> m_pulse;
};

} // namespace halvane::test
