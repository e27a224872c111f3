// SPDX-License-Identifier: MIT
#include "platform/session/application_adaptor.h"

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

QString tokenOf(const QVariantMap& platformData) {
    const auto token = platformData.value(u"activation-token"_s).toString();
    return token.isEmpty() ? platformData.value(u"desktop-startup-id"_s).toString() : token;
}

} // namespace

void ApplicationAdaptor::Activate(const QVariantMap& platform_data) {
    onActivate(tokenOf(platform_data));
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& platform_data) {
    onOpen(QUrl::fromStringList(uris), tokenOf(platform_data));
}

void ApplicationAdaptor::ActivateAction(const QString& action_name, const QVariantList&,
                                        const QVariantMap& platform_data) {
    onAction(action_name, tokenOf(platform_data));
}

} // namespace halvane
