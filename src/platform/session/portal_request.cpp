// SPDX-License-Identifier: MIT
#include "platform/session/portal_request.h"

#include <QDBusConnection>
#include <QRandomGenerator>

namespace halvane {

using namespace Qt::StringLiterals;

PortalRequest::PortalRequest(const QString& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection)
    , m_token(u"halvane%1"_s.arg(QRandomGenerator::global()->generate())) {
    const auto sender = QDBusConnection(connection).baseService().mid(1).replace(u'.', u'_');
    listenOn(u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, m_token));
}

void PortalRequest::listenOn(const QString& path) {
    if (path == m_path)
        return;
    m_path = path;
    QDBusConnection(m_connection)
        .connect(u"org.freedesktop.portal.Desktop"_s, path, u"org.freedesktop.portal.Request"_s,
                 u"Response"_s, this, SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::respond(uint response, const QVariantMap& results) {
    if (response == 0)
        Q_EMIT accepted(results);
    deleteLater();
}

} // namespace halvane
