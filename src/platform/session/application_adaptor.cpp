// SPDX-License-Identifier: MIT
#include "platform/session/application_adaptor.h"

#include <QDBusConnection>
#include <QDBusVariant>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString tokenOf(const QVariantMap& platformData) {
    const auto token = platformData.value(u"activation-token"_s).toString();
    return token.isEmpty() ? platformData.value(u"desktop-startup-id"_s).toString() : token;
}

// The parameter as it is written on the command line.
QString textOf(const QVariant& parameter) {
    const QVariant value = parameter.metaType() == QMetaType::fromType<QDBusVariant>()
                               ? parameter.value<QDBusVariant>().variant()
                               : parameter;
    if (value.metaType() == QMetaType::fromType<bool>())
        return value.toBool() ? u"on"_s : u"off"_s;
    return value.toString();
}

} // namespace

void ApplicationAdaptor::Activate(const QVariantMap& platform_data) {
    onActivate(tokenOf(platform_data));
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& platform_data) {
    onOpen(QUrl::fromStringList(uris), tokenOf(platform_data));
}

void ApplicationAdaptor::ActivateAction(const QString& action_name, const QVariantList& parameter,
                                        const QVariantMap& platform_data,
                                        const QDBusMessage& message) {
    const QString action =
        parameter.isEmpty() ? action_name : action_name + u'=' + textOf(parameter.first());
    if (const QString objection = objectionTo(action); !objection.isEmpty()) {
        message.setDelayedReply(true);
        QDBusConnection(connection)
            .send(message.createErrorReply(QDBusError::InvalidArgs, objection));
        return;
    }
    onAction(action, tokenOf(platform_data));
}

} // namespace halvane
