// SPDX-License-Identifier: MIT
#include "model/raw_value.h"

namespace halvane::detail {

std::optional<int> enumValue(const QMetaEnum& meta, const QString& raw) {
    // QMetaEnum's own look-up also takes scoped names, which are never stored.
    for (int i = 0; i < meta.keyCount(); ++i)
        if (raw == QLatin1String(meta.key(i)))
            return meta.value(i);
    return std::nullopt;
}

} // namespace halvane::detail
