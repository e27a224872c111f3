// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace halvane {

struct Notification {
    QString identifier; ///< a later one of the same identifier replaces this one
    QString title;
    QString body;                     ///< plain text
    std::optional<QString> imagePath; ///< a picture file
};

/// The desktop's notifications. Main thread; never blocks. Without a server nothing happens.
class Notifications {
  public:
    virtual ~Notifications() = default;
    /// Asks for leave to notify, quietly; the answer is not used.
    virtual void requestAuthorization() = 0;
    virtual void post(const Notification& notification) = 0;
};

} // namespace halvane
