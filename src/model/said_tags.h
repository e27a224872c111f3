// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace halvane {

/// What other programs have written into a file's tags of what a listener thinks of it. It counts
/// only where the user has said nothing. Plain value, any thread.
struct SaidTags {
    quint8 rating = 0; ///< whole stars, 1 to 5; 0: none
    quint32 plays = 0;

    bool operator==(const SaidTags&) const = default;
};

} // namespace halvane
