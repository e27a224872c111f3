// SPDX-License-Identifier: MIT
#include "metadata/identity/identify_sound.h"

#include "metadata/identity/sound_extent.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/libav_input.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>

namespace halvane {

namespace {

// Two versions of a song may differ in a word or two, so there are many small places. Fewer seeks
// than these would hardly be quicker on a hard disk than to read all.
constexpr qint64 places = 16;
constexpr qint64 placeBytes = 4096;

class Digest {
  public:
    explicit Digest(QByteArrayView kind) { m_hash.addData(kind); }

    void add(QByteArrayView bytes) { m_hash.addData(bytes); }
    void add(qint64 number) {
        const qint64 bytes = qToLittleEndian(number);
        m_hash.addData(QByteArrayView(reinterpret_cast<const char*>(&bytes), sizeof bytes));
    }
    [[nodiscard]] SoundIdentity identity() const {
        const QByteArray digest = m_hash.result();
        return {qFromBigEndian<quint64>(digest.constData()),
                qFromBigEndian<quint64>(digest.constData() + 8)};
    }

  private:
    QCryptographicHash m_hash{QCryptographicHash::Blake2b_256};
};

// What lies in the ranges, as if they were one.
class Joined {
  public:
    Joined(BoundedFile& file, std::vector<ByteRange> ranges)
        : m_file(file)
        , m_ranges(std::move(ranges)) {
        for (const ByteRange& range : m_ranges) {
            m_starts.push_back(m_size);
            m_size += range.end - range.begin;
        }
    }

    [[nodiscard]] qint64 size() const { return m_size; }

    QByteArray read(qint64 offset, qint64 length) {
        QByteArray bytes;
        const auto after = std::upper_bound(m_starts.cbegin(), m_starts.cend(), offset);
        for (auto i = static_cast<std::size_t>(after - m_starts.cbegin()) - 1;
             i < m_ranges.size() && bytes.size() < length; ++i) {
            const qint64 within = offset + bytes.size() - m_starts[i];
            const qint64 begin = m_ranges[i].begin + within;
            const qint64 wanted = std::min(length - bytes.size(), m_ranges[i].end - begin);
            const QByteArray read = m_file.read(begin, wanted);
            bytes += read;
            if (read.size() < wanted)
                break;
        }
        return bytes;
    }

  private:
    BoundedFile& m_file;
    std::vector<ByteRange> m_ranges;
    std::vector<qint64> m_starts; // of each range, among the joined bytes
    qint64 m_size = 0;
};

SoundIdentity identityOf(BoundedFile& file, std::vector<ByteRange> ranges) {
    Joined sound(file, std::move(ranges));
    if (sound.size() == 0)
        return {};
    Digest digest("coded");
    digest.add(sound.size());
    const auto add = [&](qint64 offset, qint64 length) {
        const QByteArray bytes = sound.read(offset, length);
        digest.add(bytes);
        return bytes.size() == length;
    };
    bool isWhole = true;
    if (sound.size() <= places * placeBytes) {
        isWhole = add(0, sound.size());
    } else {
        for (qint64 place = 0; place < places && isWhole; ++place)
            isWhole = add((sound.size() - placeBytes) * place / (places - 1), placeBytes);
    }
    return isWhole ? digest.identity() : SoundIdentity();
}

// The packets of an MP4 file by its sample table. Other packets may lie between them, and where all
// of them lie changes when the tables in front grow.
std::vector<ByteRange> mp4Packets(BoundedFile& file) {
    if (!libav::load())
        return {};
    LibavInput input(file);
    // Which packets are played is the container's own affair.
    AVDictionary* options = nullptr;
    libav::av_dict_set(&options, "ignore_editlist", "1", 0);
    const LibavInput::Format context = input.open(Container::mp4, &options);
    libav::av_dict_free(&options);
    const AVStream* found = context ? firstAudioStream(*context) : nullptr;
    if (!found)
        return {};
    auto* stream = const_cast<AVStream*>(found); // NOLINT: older versions take no const stream
    std::vector<ByteRange> packets;
    const int count = libav::avformat_index_get_entries_count(stream);
    for (int i = 0; i < count; ++i) {
        const AVIndexEntry* entry = libav::avformat_index_get_entry(stream, i);
        if (!entry || entry->size <= 0 || entry->pos < 0)
            return {};
        if (!packets.empty() && packets.back().end == entry->pos)
            packets.back().end += entry->size;
        else
            packets.push_back({entry->pos, entry->pos + entry->size});
    }
    return packets;
}

} // namespace

SoundIdentity statedIdentity(BoundedFile& file, const ContainerFacts& facts) {
    if (facts.container != Container::flac)
        return {};
    // Behind the name and the head of the block (RFC 9639, 8.2): rate, channels, bits and length,
    // and the checksum.
    constexpr qint64 formatAt = 8 + 10;
    constexpr qint64 formatBytes = 8;
    constexpr qint64 checksumBytes = 16;
    constexpr quint64 lengthBits = 0xf'ffff'ffff;
    const QByteArray info = file.read(facts.audioStart + formatAt, formatBytes + checksumBytes);
    if (info.size() < formatBytes + checksumBytes)
        return {};
    const bool hasLength = (qFromBigEndian<quint64>(info.constData()) & lengthBits) != 0;
    const bool hasChecksum = info.last(checksumBytes) != QByteArray(checksumBytes, '\0');
    if (!hasLength || !hasChecksum)
        return {};
    Digest digest("decoded");
    digest.add(info);
    return digest.identity();
}

SoundIdentity identifySound(BoundedFile& file, const ContainerFacts& facts) {
    if (const SoundIdentity stated = statedIdentity(file, facts); stated.isKnown())
        return stated;
    auto extent = soundExtent(byteSource(file), facts);
    if (extent.empty() && facts.container == Container::mp4)
        extent = mp4Packets(file);
    if (file.isExhausted())
        return {};
    return identityOf(file, std::move(extent));
}

} // namespace halvane
