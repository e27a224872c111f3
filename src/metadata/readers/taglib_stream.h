// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"
#include "metadata/readers/taglib_version.h"

namespace halvane {

/// Lets TagLib read a BoundedFile. TagLib's own stream would open files for writing; this one
/// cannot write at all.
class TagLibStream final : public TagLib::IOStream {
  public:
    explicit TagLibStream(BoundedFile& file)
        : m_file(file) {}

    [[nodiscard]] TagLib::FileName name() const override { return m_file.name().constData(); }
    TagLib::ByteVector readBlock(taglib::Length length) override;
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, taglib::Start, taglib::Length) override {}
    void removeBlock(taglib::Start, taglib::Length) override {}
    [[nodiscard]] bool readOnly() const override { return true; }
    [[nodiscard]] bool isOpen() const override { return m_file.isOpen(); }
    void seek(taglib::Offset offset, Position from) override;
    [[nodiscard]] taglib::Offset tell() const override { return m_position; }
    taglib::Offset length() override { return m_file.size(); }
    void truncate(taglib::Offset) override {}

  private:
    BoundedFile& m_file;
    taglib::Offset m_position = 0;
};

} // namespace halvane
