// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/notifications.h"

#include <memory>

namespace halvane {

/// Notifications by org.freedesktop.Notifications 1.2. Every call is asynchronous: a server that
/// hangs, dies or lacks a capability holds up nothing. While the server has not answered, only the
/// newest notification of an identifier is kept. Main thread.
class DBusNotifications final : public Notifications {
  public:
    /// Takes the name of a D-Bus connection that outlives this object.
    explicit DBusNotifications(const QString& connection);
    ~DBusNotifications() override;

    void requestAuthorization() override;
    void post(const Notification& notification) override;

  private:
    class Client;
    std::unique_ptr<Client> m_client;
};

} // namespace halvane
