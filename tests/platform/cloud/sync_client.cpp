// SPDX-License-Identifier: MIT
#include "sync_client.h"

#include <array>
#include <chrono>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace halvane::test {

SyncClient::SyncClient(const QString& socketPath, const QString& root, Manner manner)
    : m_root(root.toUtf8())
    , m_manner(manner)
    , m_listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const QByteArray name = socketPath.toUtf8();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    ::bind(m_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::listen(m_listener, 4);
    m_thread = std::thread([this] { serve(); });
}

SyncClient::~SyncClient() {
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
}

void SyncClient::serve() {
    for (;;) {
        const int connection = ::accept(m_listener, nullptr, nullptr);
        if (connection < 0)
            return;
        talk(connection);
        ::close(connection);
    }
}

void SyncClient::talk(int connection) {
    const auto say = [&](const QByteArray& text) {
        if (m_manner == Manner::polite)
            ::send(connection, text.constData(), static_cast<std::size_t>(text.size()),
                   MSG_NOSIGNAL);
    };
    say("REGISTER_PATH:" + m_root + '\n');
    QByteArray unread;
    std::array<char, 4096> block;
    for (ssize_t count; (count = ::recv(connection, block.data(), block.size(), 0)) > 0;) {
        unread.append(block.data(), count);
        for (qsizetype end; (end = unread.indexOf('\n')) >= 0; unread.remove(0, end + 1)) {
            const QByteArray line = unread.left(end);
            if (line.startsWith("RETRIEVE_FILE_STATUS:"))
                say("STATUS:OK:" + line.mid(line.indexOf(':') + 1) + '\n');
            const std::lock_guard lock(m_mutex);
            m_lines.push_back(line);
            m_arrived.notify_all();
        }
    }
}

std::vector<QByteArray> SyncClient::waitForLines(std::size_t count) {
    std::unique_lock lock(m_mutex);
    m_arrived.wait_for(lock, std::chrono::seconds(30), [&] { return m_lines.size() >= count; });
    return m_lines;
}

} // namespace halvane::test
