// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"

#include <optional>

namespace halvane {

/// Steps over the frames of an ID3v2 tag without reading their contents. Tells what has to be known
/// before TagLib reads the tag, and finds what TagLib leaves out. One thread.
class Id3v2Walk {
  public:
    struct Frame {
        QByteArray id; ///< of three letters in ID3v2.2, otherwise of four
        qint64 offset; ///< of the frame's content
        qint64 size;
        bool isPlain; ///< neither compressed nor otherwise wrapped
    };

    /// `offset` is where the tag begins in the file.
    Id3v2Walk(BoundedFile& file, qint64 offset);
    /// Size of the tag behind its header; 0 where there is no tag.
    [[nodiscard]] qint64 tagSize() const { return m_size; }
    std::optional<Frame> next();

  private:
    BoundedFile& m_file;
    qint64 m_size = 0;
    qint64 m_position = 0;
    qint64 m_end = 0;
    unsigned m_version = 0;
};

/// Whether the tag holds more frames than any real one. Reading it would cost much memory.
bool id3v2IsOvercrowded(BoundedFile& file, qint64 offset);

/// The first text of a text frame, read without TagLib, which drops texts in UTF-16 without a
/// byte-order mark and everything behind a frame that it can't read. Empty where there is none, or
/// where it is compressed.
QString id3v2Text(BoundedFile& file, qint64 tagOffset, const QByteArray& frameId);

} // namespace halvane
