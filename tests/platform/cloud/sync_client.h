// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace halvane::test {

/// A small sync client that speaks the socket protocol over a real local socket, in a thread.
class SyncClient {
  public:
    enum class Manner { polite, silent };

    SyncClient(const QString& socketPath, const QString& root, Manner manner = Manner::polite);
    ~SyncClient();
    SyncClient(const SyncClient&) = delete;
    SyncClient& operator=(const SyncClient&) = delete;

    /// Waits for that many lines and returns them. Fewer when none comes for some seconds.
    std::vector<QByteArray> waitForLines(std::size_t count);

  private:
    void serve();
    void talk(int connection);

    const QByteArray m_root;
    const Manner m_manner;
    int m_listener = -1;
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::vector<QByteArray> m_lines;
    std::thread m_thread;
};

} // namespace halvane::test
