// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/sleep_inhibitor.h"

#include <memory>

class QString;

namespace halvane {

/// Keeps the machine awake by the desktop portal, or by the login manager where the portal can't.
/// Calls are asynchronous. Nothing is held where neither answers. Main thread.
class DBusSleepInhibitor final : public SleepInhibitor {
  public:
    /// Takes the names of the connections to the session bus and to the system bus.
    DBusSleepInhibitor(const QString& session, const QString& system);
    /// The system's own buses.
    explicit DBusSleepInhibitor(const QString& session);
    ~DBusSleepInhibitor() override;

    void setInhibited(bool inhibited) override;

  private:
    class Client;
    std::unique_ptr<Client> m_client;
};

} // namespace halvane
