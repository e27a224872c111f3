// SPDX-License-Identifier: MIT
#pragma once

#include "support/child_process.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace halvane::test {

/// A message bus of the test's own, on which no service is started by asking for it.
class PrivateBus {
  public:
    PrivateBus();
    ~PrivateBus();

    [[nodiscard]] QString address() const;
    /// A new connection to it; closed with the bus.
    QDBusConnection connect();
    /// Ends the bus as a crash would.
    void kill() { m_daemon->kill(); }
    /// From now on it accepts connections and says nothing, until it is thawed.
    void freeze() { m_daemon->freeze(); }
    void thaw() { m_daemon->thaw(); }

  private:
    QTemporaryDir m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
    QStringList m_connections;
};

/// Calls a method and runs the event loop until it is answered, so that the test may serve the
/// object itself.
QDBusMessage callAndWait(QDBusConnection from, const QDBusMessage& message);

} // namespace halvane::test
