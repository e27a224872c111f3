// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaEnum>
#include <QString>

#include <optional>

namespace halvane {

namespace detail {
std::optional<int> enumValue(const QMetaEnum& meta, const QString& raw);
}

/// The stored text of an enumeration's case: its name. Any thread.
template<typename Enum>
QString rawValue(Enum value) {
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}

/// The case that a stored text names, case-sensitively; none when it names no case. Any thread.
template<typename Enum>
std::optional<Enum> fromRawValue(const QString& raw) {
    const auto value = detail::enumValue(QMetaEnum::fromType<Enum>(), raw);
    return value ? std::optional<Enum>(static_cast<Enum>(*value)) : std::nullopt;
}

} // namespace halvane
