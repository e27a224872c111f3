// SPDX-License-Identifier: MIT
#include "platform/session/portal_setting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

const auto service = u"org.freedesktop.portal.Desktop"_s;
const auto path = u"/org/freedesktop/portal/desktop"_s;
const auto settings = u"org.freedesktop.portal.Settings"_s;

} // namespace

PortalSetting::PortalSetting(const QString& connection, const QString& group, const QString& key) {
    QDBusConnection bus(connection);
    if (!bus.isConnected())
        return;
    qRegisterMetaType<QDBusVariant>(); // by whose name the slot's type is found
    bus.connect(service, path, settings, u"SettingChanged"_s, {group, key}, u"ssv"_s, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto question = QDBusMessage::createMethodCall(service, path, settings, u"Read"_s);
    question << group << key;
    auto* pending = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply(*pending);
        if (!reply.isError())
            take(reply.value().variant());
    });
}

void PortalSetting::settingChanged(const QString&, const QString&, const QDBusVariant& value) {
    take(value.variant());
}

void PortalSetting::take(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) // Read wraps its answer twice
        value = value.value<QDBusVariant>().variant();
    m_value = value;
    Q_EMIT changed();
}

} // namespace halvane
