// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace halvane {

/// The system's preferred languages. Any thread.
class PreferredLanguages {
  public:
    virtual ~PreferredLanguages() = default;
    /// Language tags such as zh-Hans-CN or en-US, the most preferred first; may be empty. The
    /// system is asked each time.
    [[nodiscard]] virtual QStringList tags() const = 0;
};

} // namespace halvane
