// SPDX-License-Identifier: MIT
#include "platform/mpris/mpris_adaptors.h"

#include <QDBusConnection>
#include <QSysInfo>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// Handlers are absent until the library has registered them.
template<typename Handler, typename... Arguments>
void run(const Handler& handler, Arguments... arguments) {
    if (handler)
        handler(arguments...);
}

bool isThisMachine(const QString& host) {
    return host.isEmpty() || host == "localhost"_L1 || host == QSysInfo::machineHostName();
}

} // namespace

QString MprisRootAdaptor::identity() const {
    return u"Halvane"_s;
}

QString MprisRootAdaptor::desktopEntry() const {
    return u"org.halvane.Halvane"_s;
}

QStringList MprisRootAdaptor::uriSchemes() const {
    return {u"file"_s};
}

void MprisRootAdaptor::Raise() {
    run(m_shared.windows.raise);
}

void MprisRootAdaptor::Quit() {
    run(m_shared.windows.quit);
}

void MprisPlayerAdaptor::setLoopStatus(const QString& status) {
    if (const auto loop = loopOfMprisStatus(status))
        run(m_shared.handlers.setLoop, *loop);
}

// There is one speed; a client that asks for none means a pause.
void MprisPlayerAdaptor::setRate(double rate) {
    if (rate == 0)
        Pause();
}

void MprisPlayerAdaptor::setShuffle(bool shuffle) {
    run(m_shared.handlers.setShuffle, shuffle);
}

void MprisPlayerAdaptor::setVolume(double volume) {
    if (std::isfinite(volume))
        run(m_shared.handlers.setVolume, std::max(volume, 0.0));
}

qlonglong MprisPlayerAdaptor::position() const {
    if (!m_shared.state.info || !m_shared.handlers.elapsedSeconds)
        return 0;
    return microseconds(m_shared.handlers.elapsedSeconds());
}

void MprisPlayerAdaptor::Next() {
    if (canGoNext())
        run(m_shared.handlers.nextTrack);
}

void MprisPlayerAdaptor::Previous() {
    if (canGoPrevious())
        run(m_shared.handlers.previousTrack);
}

void MprisPlayerAdaptor::Pause() {
    if (canPause())
        run(m_shared.handlers.pause);
}

void MprisPlayerAdaptor::PlayPause() {
    if (canPause() || canPlay())
        run(m_shared.handlers.togglePlayPause);
}

void MprisPlayerAdaptor::Stop() {
    run(m_shared.handlers.stop);
}

void MprisPlayerAdaptor::Play() {
    if (canPlay())
        run(m_shared.handlers.play);
}

void MprisPlayerAdaptor::Seek(qlonglong Offset) {
    const auto& info = m_shared.state.info;
    if (!canSeek() || !info)
        return;
    const qlonglong from = position();
    const qlonglong target = from + std::min(Offset, std::numeric_limits<qlonglong>::max() - from);
    if (info->durationSeconds && target > microseconds(*info->durationSeconds))
        Next();
    else
        run(m_shared.handlers.changePlaybackPosition,
            static_cast<double>(std::max(target, 0LL)) / 1e6);
}

// A client that aims at a track which has ended meanwhile must not move the next one.
void MprisPlayerAdaptor::SetPosition(const QDBusObjectPath& TrackId, qlonglong Position) {
    const auto& info = m_shared.state.info;
    if (!canSeek() || !info || TrackId.path() != mprisTrackId(info) || Position < 0)
        return;
    if (info->durationSeconds && Position > microseconds(*info->durationSeconds))
        return;
    run(m_shared.handlers.changePlaybackPosition, static_cast<double>(Position) / 1e6);
}

// The look at the file may wait for a disk, so it has a thread of its own, which may outlive this.
void MprisPlayerAdaptor::OpenUri(const QString& Uri, const QDBusMessage& message) {
    message.setDelayedReply(true);
    const QUrl url(Uri);
    if (!url.isLocalFile() || !isThisMachine(url.host())) {
        refuse(message, u"only files of this machine can be opened: %1"_s.arg(Uri));
        return;
    }
    const QString path = url.toLocalFile();
    const auto answer = [this, message, path, isAnswered = std::make_shared<bool>()](bool isThere) {
        if (std::exchange(*isAnswered, true))
            return;
        if (!isThere)
            return refuse(message, u"there is no such file: %1"_s.arg(path));
        run(m_shared.handlers.openFile, path);
        QDBusConnection(m_shared.connection).send(message.createReply());
    };
    // Of a disk that does not answer by then, the opening tells.
    constexpr std::chrono::milliseconds patience{500};
    QTimer::singleShot(patience, this, [answer] { answer(true); });
    std::thread([path, answer, exists = m_shared.exists, here = m_looks.address()] {
        const bool isThere = exists(path);
        here.post([answer, isThere] { answer(isThere); });
    }).detach();
}

void MprisPlayerAdaptor::refuse(const QDBusMessage& message, const QString& why) const {
    QDBusConnection(m_shared.connection)
        .send(message.createErrorReply(QDBusError::InvalidArgs, why));
}

} // namespace halvane
