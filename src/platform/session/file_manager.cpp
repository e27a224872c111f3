// SPDX-License-Identifier: MIT
#include "platform/session/file_manager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QUrl>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 10000; // milliseconds: it may have to be started

} // namespace

FileManager::FileManager(const QString& connection,
                         std::function<void(const QString& folder)> openFolder, QObject* parent)
    : QObject(parent)
    , m_connection(connection)
    , m_openFolder(std::move(openFolder)) {
}

void FileManager::show(const QString& path) {
    auto message = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    message << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << QString();
    auto* call = new QDBusPendingCallWatcher(
        QDBusConnection(m_connection).asyncCall(message, patience), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, path] {
        call->deleteLater();
        if (call->isError())
            m_openFolder(QFileInfo(path).path());
    });
}

} // namespace halvane
