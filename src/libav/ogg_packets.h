// SPDX-License-Identifier: MIT
// What the packets of the codecs in Ogg files say about their lengths. Pure; any thread.
#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <vector>

namespace halvane {

/// Frames at 48 kHz in an Opus packet, by its first two bytes (RFC 6716, 3.1). 0 where they make no
/// sense.
std::int64_t opusPacketFrames(QByteArrayView packet);

/// The sizes of Vorbis blocks, by the mode that a packet names (Vorbis I, 4.2).
class VorbisBlocks {
  public:
    /// From the first and the third header packet; none where they make no sense.
    static std::optional<VorbisBlocks> from(QByteArrayView identification, QByteArrayView setup);
    /// Frames in the block of a packet, of which half overlap each neighbour. 0 for a packet that
    /// is no sound.
    [[nodiscard]] int blockFrames(QByteArrayView packet) const;

  private:
    int m_sizes[2] = {};       ///< frames of a short and of a long block
    std::vector<bool> m_modes; ///< whether a mode has long blocks
    int m_modeBits = 0;
};

} // namespace halvane
