// SPDX-License-Identifier: MIT
#include "metadata/readers/mp3_padding.h"

#include "metadata/readers/byte_order.h"

#include <utility>

namespace halvane {

int mp3PaddingSamples(BoundedFile& file, qint64 firstFrame) {
    constexpr qsizetype enough = 192; // header, longest side information, Xing fields, LAME tag
    const QByteArray frame = file.read(firstFrame, enough);
    const auto byte = [&](qsizetype at) { return static_cast<unsigned char>(frame[at]); };
    if (frame.size() < enough || byte(0) != 0xff || (byte(1) & 0xe0) != 0xe0)
        return 0;
    const bool isMpeg1 = (byte(1) & 0x18) == 0x18;
    const bool isMono = (byte(3) & 0xc0) == 0xc0;
    const qsizetype sideInformation = isMpeg1 ? (isMono ? 17 : 32) : (isMono ? 9 : 17);
    const qsizetype xing = 4 + sideInformation;
    const QByteArray name = frame.mid(xing, 4);
    if (name != "Xing" && name != "Info")
        return 0;
    const quint32 flags = bigEndian32(frame.constData() + xing + 4);
    constexpr std::pair<quint32, qsizetype> fields[] = {{1, 4}, {2, 4}, {4, 100}, {8, 4}};
    qsizetype at = xing + 8;
    for (const auto& [flag, bytes] : fields)
        at += flags & flag ? bytes : 0;
    if (byte(at) == 0)
        return 0; // no encoder's name, so nothing follows
    const qsizetype numbers = at + 9 + 12;
    const int before = byte(numbers) << 4 | byte(numbers + 1) >> 4;
    const int after = (byte(numbers + 1) & 0x0f) << 8 | byte(numbers + 2);
    return before + after;
}

} // namespace halvane
