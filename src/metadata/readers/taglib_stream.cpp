// SPDX-License-Identifier: MIT
#include "metadata/readers/taglib_stream.h"

#include <algorithm>
#include <limits>

namespace halvane {

TagLib::ByteVector TagLibStream::readBlock(taglib::Length length) {
    const auto wanted = static_cast<qint64>(
        std::min<taglib::Length>(length, std::numeric_limits<qint64>::max() / 2));
    TagLib::ByteVector bytes(static_cast<unsigned int>(m_file.clampedLength(m_position, wanted)));
    const qint64 got = m_file.read(m_position, bytes.size(), bytes.data());
    bytes.resize(static_cast<unsigned int>(got));
    m_position += got;
    return bytes;
}

void TagLibStream::seek(taglib::Offset offset, Position from) {
    taglib::Offset base = 0;
    if (from == Current)
        base = m_position;
    else if (from == End)
        base = m_file.size();
    taglib::Offset target = 0;
    if (__builtin_add_overflow(base, offset, &target))
        target = m_file.size();
    m_position = std::max<taglib::Offset>(0, target);
}

} // namespace halvane
