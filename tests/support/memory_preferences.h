// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/preferences.h"

#include <QHash>

namespace halvane::test {

/// Preferences that live as long as the object. Counts the changes, so that a test can tell a
/// written value from one that merely stayed.
class MemoryPreferences final : public Preferences {
  public:
    /// How often a key was written or removed.
    [[nodiscard]] int changes(const QString& key) const { return m_changes.value(key); }
    [[nodiscard]] bool contains(const QString& key) const { return m_values.contains(key); }

  protected:
    std::optional<PreferenceValue> value(const QString& key) override {
        const auto found = m_values.constFind(key);
        return found == m_values.cend() ? std::nullopt : std::optional(*found);
    }
    void change(PreferenceChange change) override {
        ++m_changes[change.key];
        std::optional<PreferenceValue> value =
            m_values.contains(change.key) ? std::optional(m_values.take(change.key)) : std::nullopt;
        applyChange(change, value);
        if (value)
            m_values.emplace(change.key, *std::move(value));
    }

  private:
    QHash<QString, PreferenceValue> m_values;
    QHash<QString, int> m_changes;
};

} // namespace halvane::test
