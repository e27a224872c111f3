// SPDX-License-Identifier: MIT
#include "platform/mpris/mpris_controls.h"

#include "platform/log.h"
#include "platform/mpris/mpris_adaptors.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFileInfo>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto objectPath = u"/org/mpris/MediaPlayer2"_s;
const auto rootInterface = u"org.mpris.MediaPlayer2"_s;
const auto playerInterface = u"org.mpris.MediaPlayer2.Player"_s;
const auto busName = u"org.mpris.MediaPlayer2.halvane"_s;

} // namespace

class MprisControls::Player final : public QObject {
  public:
    Player(const QString& connectionName, Look exists)
        : m_connection(connectionName)
        , m_player(new MprisPlayerAdaptor(this, m_shared)) {
        new MprisRootAdaptor(this, m_shared);
        m_shared.connection = connectionName;
        m_shared.exists = std::move(exists);
        m_signalled = mprisPlayerProperties(m_shared.state);
        if (!m_connection.isConnected())
            return;
        m_connection.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
        const auto unique = busName + u".instance%1"_s.arg(QCoreApplication::applicationPid());
        for (const auto& name : {busName, unique}) {
            if (m_connection.registerService(name)) {
                m_name = name;
                break;
            }
        }
        if (m_name.isEmpty())
            qCWarning(libraryLog, "no media controls: the bus gives no name");
    }

    ~Player() override {
        if (!m_name.isEmpty())
            m_connection.unregisterService(m_name);
    }

    MprisShared& shared() { return m_shared; }

    void signalChangesSoon() {
        if (std::exchange(m_isSignalDue, true))
            return;
        QMetaObject::invokeMethod(this, &Player::signalChanges, Qt::QueuedConnection);
    }

    void seeked(double seconds) {
        // The client must know the track before it hears of a position in it.
        signalChanges();
        Q_EMIT m_player->Seeked(microseconds(seconds));
    }

  private:
    void signalChanges() {
        m_isSignalDue = false;
        const auto now = mprisPlayerProperties(m_shared.state);
        QVariantMap changed;
        for (auto it = now.cbegin(); it != now.cend(); ++it) {
            if (m_signalled.value(it.key()) != it.value())
                changed.insert(it.key(), it.value());
        }
        m_signalled = now;
        if (!changed.isEmpty())
            signal(playerInterface, changed);
    }

    void signal(const QString& interface, const QVariantMap& changed) {
        auto message = QDBusMessage::createSignal(objectPath, u"org.freedesktop.DBus.Properties"_s,
                                                  u"PropertiesChanged"_s);
        message << interface << changed << QStringList();
        m_connection.send(message);
    }

    QDBusConnection m_connection;
    MprisShared m_shared;
    MprisPlayerAdaptor* m_player; // a child
    QString m_name;
    QVariantMap m_signalled;
    bool m_isSignalDue = false;
};

MprisControls::MprisControls(const QString& connection)
    : MprisControls(connection, [](const QString& path) { return QFileInfo::exists(path); }) {
}

MprisControls::MprisControls(const QString& connection, Look exists)
    : m_player(std::make_unique<Player>(connection, std::move(exists))) {
}

MprisControls::~MprisControls() = default;

void MprisControls::setHandlers(MediaCommandHandlers handlers) {
    m_player->shared().handlers = std::move(handlers);
}

void MprisControls::setWindowHandlers(WindowCommandHandlers handlers) {
    m_player->shared().windows = std::move(handlers);
}

void MprisControls::publish(const std::optional<NowPlayingInfo>& info, MediaPlaybackState state) {
    m_player->shared().state.info = info;
    m_player->shared().state.playback = state;
    m_player->signalChangesSoon();
}

void MprisControls::publishCapabilities(const MediaCapabilities& capabilities) {
    m_player->shared().state.capabilities = capabilities;
    m_player->signalChangesSoon();
}

void MprisControls::publishModes(MediaLoop loop, bool shuffle, double volume) {
    auto& state = m_player->shared().state;
    state.loop = loop;
    state.shuffle = shuffle;
    state.volume = volume;
    m_player->signalChangesSoon();
}

void MprisControls::seeked(double seconds) {
    m_player->seeked(seconds);
}

} // namespace halvane
