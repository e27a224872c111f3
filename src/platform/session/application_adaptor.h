// SPDX-License-Identifier: MIT
// org.freedesktop.Application as the bus sees it. Internal to SingleInstance.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QList>
#include <QUrl>
#include <QVariantMap>

#include <functional>

namespace halvane {

class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ApplicationAdaptor(QObject* object)
        : QDBusAbstractAdaptor(object) {}

    // Not signals: an adaptor's signals go out on the bus.
    std::function<void(const QString&)> onActivate;
    std::function<void(const QList<QUrl>&, const QString&)> onOpen;
    std::function<void(const QString&, const QString&)> onAction;
    /// What there is against an action; empty when it may be activated.
    std::function<QString(const QString&)> objectionTo;
    QString connection; ///< its name

  public Q_SLOTS:
    void Activate(const QVariantMap& platform_data);
    void Open(const QStringList& uris, const QVariantMap& platform_data);
    void ActivateAction(const QString& action_name, const QVariantList& parameter,
                        const QVariantMap& platform_data, const QDBusMessage& message);
};

} // namespace halvane
