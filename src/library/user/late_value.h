// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"

#include <utility>

namespace halvane {

/// A long stored value, which is taken when it is first needed. The preferences have mostly read it
/// ahead by then. One thread.
template<typename T>
class LateValue {
  public:
    /// The value will come from `later`, or from `now` if `later` is null or gives none. It stays
    /// as it is if both give none.
    void restore(Later<T> later, std::function<std::optional<T>()> now) {
        m_later = std::move(later);
        m_now = std::move(now);
    }

    [[nodiscard]] const T& get() const {
        settle();
        return m_value;
    }
    T& get() {
        settle();
        return m_value;
    }

  private:
    void settle() const {
        if (!m_now)
            return;
        auto found = m_later ? std::exchange(m_later, nullptr)() : std::nullopt;
        const auto now = std::exchange(m_now, nullptr);
        if (!found)
            found = now();
        if (found)
            m_value = *std::move(found);
    }

    mutable T m_value;
    mutable Later<T> m_later;
    mutable std::function<std::optional<T>()> m_now; ///< null once the value is taken
};

} // namespace halvane
