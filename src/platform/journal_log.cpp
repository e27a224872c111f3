// SPDX-License-Identifier: MIT
#include "platform/journal_log.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* identifier = "org.halvane.Halvane";

int syslogPriority(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return 7;
    case QtInfoMsg:
        return 6;
    case QtWarningMsg:
        return 4;
    case QtCriticalMsg:
        return 3;
    case QtFatalMsg:
        return 2;
    }
    return 6;
}

// https://systemd.io/JOURNAL_NATIVE_PROTOCOL: one datagram of NAME=value lines; a value with line
// breaks is given by its length instead.
void appendField(QByteArray& datagram, const char* name, const QByteArray& value) {
    datagram += name;
    if (value.contains('\n')) {
        const auto length = static_cast<quint64>(value.size());
        datagram += '\n';
        for (int shift = 0; shift < 64; shift += 8)
            datagram += static_cast<char>((length >> shift) & 0xff);
    } else {
        datagram += '=';
    }
    datagram += value + '\n';
}

class Journal {
  public:
    Journal() {
        m_address.sun_family = AF_UNIX;
        constexpr char path[] = "/run/systemd/journal/socket";
        std::copy(std::begin(path), std::end(path), m_address.sun_path);
        if (access(path, W_OK) == 0)
            m_socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    }

    [[nodiscard]] bool send(QtMsgType type, const char* category, const QByteArray& message) const {
        if (m_socket < 0)
            return false;
        QByteArray datagram;
        appendField(datagram, "MESSAGE", message);
        appendField(datagram, "PRIORITY", QByteArray::number(syslogPriority(type)));
        appendField(datagram, "SYSLOG_IDENTIFIER", identifier);
        appendField(datagram, "CATEGORY", category ? category : "default");
        return sendto(m_socket, datagram.constData(), static_cast<size_t>(datagram.size()),
                      MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&m_address),
                      sizeof m_address) == datagram.size();
    }

  private:
    sockaddr_un m_address{};
    int m_socket = -1;
};

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    static const Journal journal;
    static const bool isWatched = isatty(STDERR_FILENO);
    const auto message = text.toUtf8();
    const bool inJournal = journal.send(type, context.category, message);
    if (!inJournal || isWatched || type == QtFatalMsg)
        std::fprintf(stderr, "halvane: %s: %s\n", context.category ? context.category : "default",
                     message.constData());
    // A missing display is no fault of the program. Anything fatal later is one, and leaves a core.
    if (type == QtFatalMsg && QCoreApplication::startingUp())
        _exit(EXIT_FAILURE);
}

} // namespace

std::optional<QtMsgType> logLevel(const QString& word) {
    if (word == "debug"_L1)
        return QtDebugMsg;
    if (word == "info"_L1)
        return QtInfoMsg;
    if (word == "warning"_L1)
        return QtWarningMsg;
    if (word == "error"_L1)
        return QtCriticalMsg;
    return {};
}

void installLog(QtMsgType lowest) {
    qInstallMessageHandler(handle);
    const auto on = [lowest](QtMsgType type) {
        return syslogPriority(type) <= syslogPriority(lowest) ? "true"_L1 : "false"_L1;
    };
    QLoggingCategory::setFilterRules(u"library.debug=%1\nlibrary.info=%2\n*.warning=%3"_s.arg(
        on(QtDebugMsg), on(QtInfoMsg), on(QtWarningMsg)));
}

} // namespace halvane
