// SPDX-License-Identifier: MIT
#include "model/sound_identity.h"

#include <algorithm>

namespace halvane {

namespace {

constexpr qsizetype digits = 16; // of each half

} // namespace

QString SoundIdentity::text() const {
    return QString::number(high, 16).rightJustified(digits, u'0') +
           QString::number(low, 16).rightJustified(digits, u'0');
}

std::optional<SoundIdentity> SoundIdentity::fromText(QStringView text) {
    const auto isDigit = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f');
    };
    if (text.size() != 2 * digits || !std::all_of(text.begin(), text.end(), isDigit))
        return std::nullopt;
    return SoundIdentity{text.first(digits).toULongLong(nullptr, 16),
                         text.sliced(digits).toULongLong(nullptr, 16)};
}

} // namespace halvane
