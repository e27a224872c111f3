// SPDX-License-Identifier: MIT
#include "platform/cloud/sync_client_socket.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace halvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

// One client's socket, with an end to every wait.
class Client {
  public:
    Client(const QString& path, SteadyClock::time_point deadline)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
        , m_deadline(deadline) {
        const QByteArray name = QFile::encodeName(path);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (name.size() >= static_cast<qsizetype>(sizeof address.sun_path))
            return;
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        m_isConnected =
            ::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Client() {
        if (m_socket >= 0)
            ::close(m_socket);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] bool isConnected() const { return m_isConnected; }

    bool send(const QByteArray& line) {
        for (qsizetype sent = 0; sent < line.size();) {
            const ssize_t count =
                ::send(m_socket, line.constData() + sent,
                       static_cast<std::size_t>(line.size() - sent), MSG_NOSIGNAL);
            if (count > 0)
                sent += count;
            else if (!waitFor(POLLOUT))
                return false;
        }
        return true;
    }

    // The next line without its end; none at the end, or when the client takes too long.
    std::optional<QByteArray> readLine() {
        for (;;) {
            if (const qsizetype end = m_unread.indexOf('\n'); end >= 0) {
                const QByteArray line = m_unread.left(end);
                m_unread.remove(0, end + 1);
                return line;
            }
            constexpr qsizetype longestLine = 1 << 20;
            std::array<char, 4096> block;
            const ssize_t count = ::recv(m_socket, block.data(), block.size(), 0);
            if (count > 0)
                m_unread.append(block.data(), count);
            if (count == 0 || m_unread.size() > longestLine || (count < 0 && !waitFor(POLLIN)))
                return std::nullopt;
        }
    }

  private:
    [[nodiscard]] bool waitFor(short events) const {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(m_deadline - SteadyClock::now());
        pollfd ready{m_socket, events, 0};
        return left.count() > 0 && ::poll(&ready, 1, static_cast<int>(left.count())) > 0;
    }

    const int m_socket;
    const SteadyClock::time_point m_deadline;
    bool m_isConnected = false;
    QByteArray m_unread;
};

QStringList sockets(const QString& runtimeFolder) {
    QStringList found;
    const QDir folder(runtimeFolder);
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (const QString path = folder.filePath(name + QStringLiteral("/socket"));
            QFile::exists(path))
            found += path;
    return found;
}

bool isBelow(const QString& file, const QString& root) {
    return file.startsWith(root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/'));
}

// The folders that the client keeps in step. The client names them when one connects, and answers a
// question only after the last of them.
QStringList roots(Client& client, const QString& anyFile) {
    QStringList found;
    if (!client.send("RETRIEVE_FILE_STATUS:" + anyFile.toUtf8() + '\n'))
        return found;
    while (const auto line = client.readLine()) {
        static const QByteArray registers("REGISTER_PATH:");
        if (line->startsWith(registers))
            found += QDir::cleanPath(QString::fromUtf8(line->mid(registers.size())));
        else if (line->startsWith("STATUS:"))
            break;
    }
    return found;
}

} // namespace

int requestDownloads(const QString& runtimeFolder, const QStringList& files,
                     std::chrono::milliseconds patience) {
    constexpr qsizetype filesInOneLine = 100;
    constexpr QChar separator(0x1e); // record separator
    int asked = 0;
    QStringList left = files;
    for (const QString& path : sockets(runtimeFolder)) {
        if (left.isEmpty())
            break;
        Client client(path, SteadyClock::now() + patience);
        if (!client.isConnected())
            continue;
        const QStringList kept = roots(client, left.first());
        const auto mine = std::stable_partition(left.begin(), left.end(), [&](const QString& file) {
            return std::none_of(kept.begin(), kept.end(),
                                [&](const QString& root) { return isBelow(file, root); });
        });
        const QStringList wanted(mine, left.end());
        left.erase(mine, left.end());
        for (qsizetype at = 0; at < wanted.size(); at += filesInOneLine) {
            const QStringList batch = wanted.mid(at, filesInOneLine);
            if (client.send("MAKE_AVAILABLE_LOCALLY:" + batch.join(separator).toUtf8() + '\n'))
                asked += static_cast<int>(batch.size());
        }
    }
    return asked;
}

} // namespace halvane
