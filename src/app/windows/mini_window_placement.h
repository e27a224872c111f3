// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

#include <QRect>

#include <memory>

namespace halvane {

class WindowRegistry;

/// Puts the mini player over the middle of the main window when it opens. Does nothing on a desktop
/// where programs can't place their windows. Main thread.
class MiniWindowPlacement {
  public:
    /// Both must outlive this object.
    MiniWindowPlacement(WindowRegistry& windows, Clock& clock);

    /// To be called while the main window still shows, before the mini window opens: waits for it,
    /// a short while, and then places it.
    void centerOnMainWindow();

  private:
    void look(const QRect& mainFrame, int looksLeft);

    WindowRegistry& m_windows;
    Clock& m_clock;
    std::unique_ptr<Timer> m_nextLook;
};

} // namespace halvane
