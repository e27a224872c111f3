// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"

#include <taglib/tiostream.h>

namespace halvane {

/// Lets TagLib read a BoundedFile. TagLib's own stream would open files for writing; this one
/// cannot write at all.
class TagLibStream final : public TagLib::IOStream {
  public:
    explicit TagLibStream(BoundedFile& file)
        : m_file(file) {}

    TagLib::FileName name() const override { return m_file.name().constData(); }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return m_file.isOpen(); }
    void seek(long offset, Position from) override;
    long tell() const override { return m_position; }
    long length() override { return m_file.size(); }
    void truncate(long) override {}

  private:
    BoundedFile& m_file;
    long m_position = 0;
};

} // namespace halvane
