// SPDX-License-Identifier: MIT
#pragma once

#include "audio/graph/transport_engine.h"
#include "platform/clock.h"

#include <QObject>

namespace halvane {

/// Looks every few seconds whether a disk keeps the engine waiting for what is to be heard. It asks
/// the engine only, so that it never waits itself. Main thread.
class DiskWatch : public QObject {
    Q_OBJECT

  public:
    static constexpr std::chrono::seconds interval{5};

    /// The engine and the clock must outlive this.
    DiskWatch(const TransportEngine& engine, Clock& clock, QObject* parent = nullptr);

    /// Begins to look, or begins anew: there is another file to wait for.
    void begin();
    void end();

  Q_SIGNALS:
    /// The engine waits, and did so at this many looks, one after the other.
    void waits(int looks);
    /// The engine has what it needs.
    void hears();

  private:
    void look();

    const TransportEngine& m_engine;
    Clock& m_clock;
    int m_looks = 0;
    std::unique_ptr<Timer> m_beat; ///< there while it looks
};

} // namespace halvane
