// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/taglib_stream.h"

#include <taglib/tfile.h>

namespace halvane {

/// A file for TagLib's tags to be read from, without one of TagLib's formats. One thread.
class PlainTagLibFile {
  public:
    explicit PlainTagLibFile(BoundedFile& file)
        : m_stream(file)
        , m_file(m_stream) {}

    [[nodiscard]] TagLib::File& file() { return m_file; }

  private:
    class File final : public TagLib::File {
      public:
        explicit File(TagLib::IOStream& stream)
            : TagLib::File(&stream) {}
        [[nodiscard]] TagLib::Tag* tag() const override { return nullptr; }
        [[nodiscard]] TagLib::AudioProperties* audioProperties() const override { return nullptr; }
        bool save() override { return false; }
    };

    TagLibStream m_stream;
    File m_file;
};

} // namespace halvane
