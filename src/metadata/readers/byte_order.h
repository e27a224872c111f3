// SPDX-License-Identifier: MIT
#pragma once

#include <QtEndian>

namespace halvane {

inline quint32 bigEndian32(const char* bytes) {
    return qFromBigEndian<quint32>(bytes);
}

/// The 28-bit integers of ID3v2: seven bits a byte.
inline quint32 synchsafe32(const char* bytes) {
    const quint32 value = bigEndian32(bytes);
    return (value & 0x7f) | (value & 0x7f00) >> 1 | (value & 0x7f0000) >> 2 |
           (value & 0x7f000000) >> 3;
}

} // namespace halvane
