// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace halvane {

class Preferences;
class Transport;

/// Keeps the transport's volume, shuffle and repeat in the preferences: each is stored the moment
/// it changes. Main thread.
class TransportSettings : public QObject {
    Q_OBJECT

  public:
    /// Both references must outlive it.
    TransportSettings(Preferences& preferences, Transport& transport, QObject* parent = nullptr);

    /// Takes them from the preferences, where they are stored and make sense.
    void restore();

  private:
    Preferences& m_preferences;
    Transport& m_transport;
};

} // namespace halvane
