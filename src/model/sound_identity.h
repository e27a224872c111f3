// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace halvane {

/// Tells one sound from another by its coded bytes, whatever the file is called, wherever it lies
/// and whatever its tags say. All zeros: not known. Plain value, any thread.
struct SoundIdentity {
    quint64 high = 0;
    quint64 low = 0;

    [[nodiscard]] bool isKnown() const { return high != 0 || low != 0; }
    /// 32 lower-case hexadecimal digits, as it is stored.
    [[nodiscard]] QString text() const;
    /// None for anything else than what text() gives.
    static std::optional<SoundIdentity> fromText(QStringView text);

    auto operator<=>(const SoundIdentity&) const = default;
};

/// The bits are those of a digest, so that any part of them is as good as a hash.
inline size_t qHash(const SoundIdentity& v, size_t seed = 0) {
    return static_cast<size_t>(v.low) ^ seed;
}

} // namespace halvane
