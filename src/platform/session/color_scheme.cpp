// SPDX-License-Identifier: MIT
#include "platform/session/color_scheme.h"

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
const auto appearance = u"org.freedesktop.appearance"_s;
const auto schemeKey = u"color-scheme"_s;

// Read wraps its answer twice.
uint unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

ColorScheme::ColorScheme(const QString& connection, QObject* parent)
    : QObject(parent) {
    QDBusConnection bus(connection);
    if (!bus.isConnected())
        return;
    bus.connect(service, path, settings, u"SettingChanged"_s, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto question = QDBusMessage::createMethodCall(service, path, settings, u"Read"_s);
    question << appearance << schemeKey;
    auto* pending = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply(*pending);
        if (!reply.isError())
            take(unwrapped(reply.value().variant()));
    });
}

void ColorScheme::settingChanged(const QString& group, const QString& key,
                                 const QDBusVariant& value) {
    if (group == appearance && key == schemeKey)
        take(unwrapped(value.variant()));
}

void ColorScheme::take(uint value) {
    const auto preference = value == 1   ? Preference::dark
                            : value == 2 ? Preference::light
                                         : Preference::none;
    if (std::exchange(m_preference, preference) != preference)
        Q_EMIT changed();
}

} // namespace halvane
