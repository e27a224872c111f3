// SPDX-License-Identifier: MIT
#include "metadata/readers/mp4_nesting.h"

#include "metadata/readers/byte_order.h"

#include <string_view>
#include <vector>

namespace halvane {

namespace {

bool isParent(std::string_view name) {
    constexpr std::string_view parents[] = {"moov", "udta", "mdia", "meta", "ilst", "stbl",
                                            "minf", "moof", "traf", "trak", "stsd"};
    for (const auto parent : parents)
        if (name == parent)
            return true;
    return false;
}

} // namespace

bool mp4NestsTooDeep(BoundedFile& file) {
    constexpr std::size_t deepest = 32;
    constexpr int mostBoxes = 20'000;
    std::vector<qint64> ends{file.size()};
    qint64 offset = 0;
    for (int boxes = 0; boxes < mostBoxes; ++boxes) {
        while (!ends.empty() && offset + 8 > ends.back()) {
            offset = std::max(offset, ends.back());
            ends.pop_back();
        }
        char box[8];
        if (ends.empty() || file.read(offset, sizeof box, box) != sizeof box)
            return file.isExhausted();
        qint64 length = bigEndian32(box);
        qint64 header = 8;
        if (length == 1) {
            char large[8] = {};
            file.read(offset + 8, 8, large);
            length = qFromBigEndian<qint64>(large);
            header = 16;
        }
        if (length == 0)
            length = file.size() - offset;
        if (length < header || length > file.size())
            return false; // no parser goes on behind such a box
        const std::string_view name(box + 4, 4);
        if (!isParent(name)) {
            offset += length;
            continue;
        }
        ends.push_back(offset + length);
        if (ends.size() > deepest)
            return true;
        offset += header + (name == "meta" ? 4 : name == "stsd" ? 8 : 0);
    }
    return true;
}

} // namespace halvane
