// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/preferred_languages.h"

namespace halvane {

/// The languages of the session's locale (LANGUAGE, LC_ALL, LC_MESSAGES, LANG).
class SystemLanguages final : public PreferredLanguages {
  public:
    [[nodiscard]] QStringList tags() const override;
};

} // namespace halvane
