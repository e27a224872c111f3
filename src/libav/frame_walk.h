// SPDX-License-Identifier: MIT
#pragma once

#include "libav/byte_source.h"

#include <QByteArrayView>

#include <cstdint>
#include <functional>
#include <optional>

namespace halvane {

/// Streams that are nothing but frames, one after another, without a table of where they are, or
/// with one that libavformat misreads.
enum class FrameStream { mpegLayer3, adts, musepack8 };

/// How long the frame that begins with these bytes is, in bytes; 0 where none does. Pure.
std::int64_t frameSize(FrameStream kind, QByteArrayView opening);

/// Walks a stream from header to header, from the frame at byte `from` to its end (or a tag behind
/// it), past tags between files that were joined, without decoding anything. Calls back with each
/// frame's number and position, and gives the number of whole frames; none when the chain breaks
/// anywhere, for then only a decoder can tell what is a frame. Any thread.
std::optional<std::int64_t>
walkFrames(const ByteSource& file, FrameStream kind, std::int64_t from,
           const std::function<void(std::int64_t number, std::int64_t position)>& visit);

/// Whether the frames of a stream are all as long, but for one byte of padding, as far as a look at
/// many places tells. `from` is where its first frame begins. Any thread.
bool hasEvenFrames(const ByteSource& file, FrameStream kind, std::int64_t from);

} // namespace halvane
