// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"

#include <functional>
#include <utility>

namespace halvane {

/// A stored value that is taken over when it is first needed, by when it has mostly been read. One
/// thread.
template<typename T>
class LateValue {
  public:
    /// Takes the value from `later` or, where that fails, from `now`; one that is not there or not
    /// of the kind leaves what there is.
    void restore(Later<T> later, std::function<Stored<T>()> now) {
        m_later = std::move(later);
        m_now = std::move(now);
    }

    const T& get() const {
        settle();
        return m_value;
    }
    T& get() {
        settle();
        return m_value;
    }

  private:
    void settle() const {
        if (!m_later)
            return;
        auto stored = std::exchange(m_later, nullptr)();
        if (!stored)
            stored = m_now();
        if (*stored)
            m_value = **stored;
    }

    mutable T m_value;
    mutable Later<T> m_later; ///< null once it is taken
    std::function<Stored<T>()> m_now;
};

} // namespace halvane
