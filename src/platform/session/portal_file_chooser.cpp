// SPDX-License-Identifier: MIT
#include "platform/session/portal_file_chooser.h"

#include "platform/log.h"
#include "platform/session/portal_request.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUrl>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// The portal answers once its dialog shows; a service that is still starting may take its time.
constexpr int patience = 15000; // milliseconds

QStringList localPaths(const QVariantMap& results) {
    QStringList paths;
    for (const auto& uri : results.value(u"uris"_s).toStringList()) {
        const auto path = QUrl(uri).toLocalFile();
        if (!path.isEmpty())
            paths.append(path);
    }
    return paths;
}

} // namespace

class PortalFileChooser::Portal final : public QObject {
  public:
    Portal(const QString& connection, std::function<QString()> parentWindow, FileChooser& fallback)
        : m_connection(connection)
        , m_parentWindow(std::move(parentWindow))
        , m_fallback(fallback) {}

    void choose(const FileChooserRequest& request, std::function<void(const QStringList&)> chosen) {
        const QVariantMap options{{u"accept_label"_s, request.prompt},
                                  {u"multiple"_s, true},
                                  {u"directory"_s, request.directories && !request.files}};
        ask(u"OpenFile"_s, request.title, options, chosen,
            [this, request, chosen] { m_fallback.choose(request, chosen); });
    }

    void chooseTarget(const FileTargetRequest& request,
                      std::function<void(const QString&)> chosen) {
        const QVariantMap options{{u"accept_label"_s, request.prompt},
                                  {u"current_name"_s, request.fileName}};
        ask(
            u"SaveFile"_s, request.title, options,
            [chosen](const QStringList& paths) { chosen(paths.front()); },
            [this, request, chosen] { m_fallback.chooseTarget(request, chosen); });
    }

  private:
    // Calls `chosen` with at least one path, or `instead` where there is no portal.
    void ask(const QString& method, const QString& title, QVariantMap options,
             std::function<void(const QStringList&)> chosen, std::function<void()> instead) {
        if (!m_connection.isConnected()) {
            instead();
            return;
        }
        auto* answer = new PortalRequest(m_connection.name(), this);
        connect(answer, &PortalRequest::accepted, this, [chosen](const QVariantMap& results) {
            if (const auto paths = localPaths(results); !paths.isEmpty())
                chosen(paths);
        });
        options.insert(u"handle_token"_s, answer->token());
        auto message = QDBusMessage::createMethodCall(
            u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
            u"org.freedesktop.portal.FileChooser"_s, method);
        message << m_parentWindow() << title << options;
        auto* call = new QDBusPendingCallWatcher(m_connection.asyncCall(message, patience), this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [=] {
            call->deleteLater();
            const QDBusPendingReply<QDBusObjectPath> reply(*call);
            if (!reply.isError()) {
                answer->listenOn(reply.value().path());
                return;
            }
            qCInfo(libraryLog, "no file panel of the desktop: %s",
                   qUtf8Printable(reply.error().message()));
            answer->deleteLater();
            instead();
        });
    }

    QDBusConnection m_connection;
    std::function<QString()> m_parentWindow;
    FileChooser& m_fallback;
};

PortalFileChooser::PortalFileChooser(const QString& connection,
                                     std::function<QString()> parentWindow, FileChooser& fallback)
    : m_portal(std::make_unique<Portal>(connection, std::move(parentWindow), fallback)) {
}

PortalFileChooser::~PortalFileChooser() = default;

void PortalFileChooser::choose(const FileChooserRequest& request,
                               std::function<void(const QStringList& paths)> chosen) {
    m_portal->choose(request, std::move(chosen));
}

void PortalFileChooser::chooseTarget(const FileTargetRequest& request,
                                     std::function<void(const QString& path)> chosen) {
    m_portal->chooseTarget(request, std::move(chosen));
}

} // namespace halvane
