// SPDX-License-Identifier: MIT
// Memberwise hashing of the model's value types. Any thread.
#pragma once

#include <QHashFunctions>

#include <optional>
#include <vector>

namespace halvane {

/// Folds values into one hash in the order in which they are added. An absent optional adds the
/// flag 0; a present one adds the flag 1, then its value.
class Hasher {
  public:
    explicit Hasher(size_t seed)
        : m_hash(seed) {}

    template<typename T>
    Hasher& add(const T& value) {
        m_hash = qHashMulti(m_hash, value);
        return *this;
    }
    template<typename T>
    Hasher& add(const std::optional<T>& value) {
        add(value ? 1 : 0);
        return value ? add(*value) : *this;
    }
    template<typename T>
    Hasher& add(const std::vector<T>& values) {
        add(values.size());
        for (const T& value : values)
            add(value);
        return *this;
    }
    [[nodiscard]] size_t result() const { return m_hash; }

  private:
    size_t m_hash;
};

} // namespace halvane
