// SPDX-License-Identifier: MIT
#pragma once

#include "libav/container.h"
#include "libav/functions.h"
#include "metadata/readers/bounded_file.h"

#include <memory>

namespace halvane {

/// A BoundedFile as libavformat's input. One thread.
class LibavInput {
  public:
    /// libav must be loaded, and the file must outlive this.
    explicit LibavInput(BoundedFile& file);
    ~LibavInput();
    LibavInput(const LibavInput&) = delete;
    LibavInput& operator=(const LibavInput&) = delete;

    struct CloseFormat {
        void operator()(AVFormatContext* context) const;
    };
    using Format = std::unique_ptr<AVFormatContext, CloseFormat>;

    /// Reads the headers. Null where that fails. The input must outlive what this gives.
    Format open(Container container, AVDictionary** options = nullptr);

  private:
    static int isInterrupted(void* self);
    static int read(void* self, uint8_t* data, int length);
    static int64_t seek(void* self, int64_t offset, int whence);

    BoundedFile& m_file;
    AVIOContext* m_io = nullptr;
    qint64 m_position = 0;
};

/// Null where there is none.
const AVStream* firstAudioStream(const AVFormatContext& context);

} // namespace halvane
