// SPDX-License-Identifier: MIT
#include "libav/ogg_links.h"

#include "libav/ogg_packets.h"

#include <QtEndian>

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

namespace halvane {

namespace {

/// A page of an Ogg file (RFC 3533, section 6).
struct Page {
    static constexpr qint64 fixedHeader = 27;
    static constexpr std::int64_t noGranule = -1;

    qint64 begin = 0;
    unsigned flags = 0;
    std::int64_t granule = noGranule; ///< noGranule: no packet ends on the page
    quint32 serial = 0;
    QByteArray lacing;

    [[nodiscard]] bool isContinued() const { return (flags & 1) != 0; }
    [[nodiscard]] bool isFirst() const { return (flags & 2) != 0; }
    [[nodiscard]] bool isLast() const { return (flags & 4) != 0; }
    [[nodiscard]] qint64 body() const { return begin + fixedHeader + lacing.size(); }
    [[nodiscard]] qint64 end() const {
        return std::accumulate(lacing.begin(), lacing.end(), body(), [](qint64 sum, char piece) {
            return sum + static_cast<unsigned char>(piece);
        });
    }
};

std::optional<Page> parsePage(QByteArrayView bytes, qint64 begin) {
    constexpr char allFlags = 7;
    if (bytes.size() < Page::fixedHeader || !bytes.startsWith("OggS") || bytes[4] != 0 ||
        (bytes[5] & ~allFlags) != 0)
        return std::nullopt;
    const auto pieces = static_cast<unsigned char>(bytes[26]);
    if (bytes.size() < Page::fixedHeader + pieces)
        return std::nullopt;
    return Page{begin, static_cast<unsigned>(bytes[5]), qFromLittleEndian<qint64>(bytes.data() + 6),
                qFromLittleEndian<quint32>(bytes.data() + 14),
                bytes.sliced(Page::fixedHeader, pieces).toByteArray()};
}

std::optional<Page> pageAt(const ByteSource& file, qint64 offset) {
    return parsePage(file.read(offset, Page::fixedHeader + 255), offset);
}

/// Whether something that looks like a page is one: another page follows it, or nothing does.
bool isFollowed(const ByteSource& file, const Page& page) {
    return page.end() == file.size || pageAt(file, page.end());
}

constexpr qint64 windowBytes = 128 << 10; // two of the largest pages

/// The first page that begins in [from, to).
std::optional<Page> nextPage(const ByteSource& file, qint64 from, qint64 to) {
    while (from < to) {
        const QByteArray window = file.read(from, std::min(windowBytes, to - from + 3));
        for (qsizetype at = window.indexOf("OggS"); at >= 0; at = window.indexOf("OggS", at + 1))
            if (const auto page = pageAt(file, from + at);
                page && from + at < to && isFollowed(file, *page))
                return page;
        if (window.size() <= 3)
            break;
        from += window.size() - 3;
    }
    return std::nullopt;
}

/// The last whole page in [from, end) that `isWanted`.
template<typename IsWanted>
std::optional<Page> lastPage(const ByteSource& file, qint64 from, qint64 end, IsWanted isWanted) {
    constexpr int mostWindows = 32;
    qint64 to = end;
    for (int windows = 0; windows < mostWindows && to > from; ++windows) {
        const qint64 begin = std::max(from, to - windowBytes);
        const QByteArray window = file.read(begin, to - begin + 3);
        for (qsizetype at = window.lastIndexOf("OggS"); at >= 0;
             at = at > 0 ? window.lastIndexOf("OggS", at - 1) : -1)
            if (const auto page = pageAt(file, begin + at);
                page && page->end() <= end && isWanted(*page))
                return page;
        to = begin;
    }
    return std::nullopt;
}

/// One link's headers and first packets, read page by page.
class LinkHead {
  public:
    LinkHead(const ByteSource& file, qint64 begin)
        : m_file(file) {
        m_link.begin = begin;
    }

    /// Reads up to the first page on which a packet of sound ends. False where there is none of the
    /// codecs.
    bool read() {
        constexpr int mostPages = 4096; // a large picture in the comments takes hundreds
        qint64 at = m_link.begin;
        for (int pages = 0; pages < mostPages && !m_isDone; ++pages) {
            const auto page = pageAt(m_file, at);
            if (!page)
                break;
            at = page->end();
            m_soundFrom = page->begin;
            if (page->isFirst())
                takeFirst(*page);
            else if (!m_serial)
                return false;
            else if (page->serial == *m_serial)
                takePackets(*page);
        }
        return m_isDone;
    }

    [[nodiscard]] bool holds(quint32 serial) const {
        return std::find(m_serials.begin(), m_serials.end(), serial) != m_serials.end();
    }
    [[nodiscard]] quint32 serial() const { return m_serial.value_or(0); }
    /// A page of this link.
    [[nodiscard]] qint64 soundFrom() const { return m_soundFrom; }
    /// The granule position at which a decoder's first frame lies.
    [[nodiscard]] std::int64_t start() const { return m_start; }
    [[nodiscard]] const OggLink& link() const { return m_link; }

  private:
    void takeFirst(const Page& page) {
        m_serials.push_back(page.serial);
        const QByteArray head = m_file.read(page.body(), page.end() - page.body());
        if (!m_serial && takeIdentification(head))
            m_serial = page.serial;
    }

    bool takeIdentification(const QByteArray& head) {
        const auto byteAt = [&](qsizetype i) { return static_cast<unsigned char>(head[i]); };
        if (head.startsWith("OpusHead") && head.size() >= 19) {
            m_link.codec = OggCodec::opus;
            m_link.sampleRate = 48'000;
            m_link.channels = byteAt(9);
            m_link.delay = qFromLittleEndian<quint16>(head.constData() + 10);
            m_headers = 1;
        } else if (head.startsWith("\x01vorbis") && head.size() >= 30) {
            m_link.codec = OggCodec::vorbis;
            m_link.channels = byteAt(11);
            m_link.sampleRate = qFromLittleEndian<qint32>(head.constData() + 12);
            m_identification = head;
            m_headers = 2;
        } else if (head.startsWith("\x7f"
                                   "FLAC") &&
                   head.size() >= 51) {
            m_link.codec = OggCodec::flac;
            const char* info = head.constData() + 17; // behind the block's own header
            const auto packed = qFromBigEndian<quint32>(info + 10);
            m_link.sampleRate = static_cast<int>(packed >> 12);
            m_link.channels = static_cast<int>(packed >> 9 & 7) + 1;
            m_link.bitsPerSample = static_cast<int>(packed >> 4 & 31) + 1;
            if (qFromBigEndian<quint16>(info) == qFromBigEndian<quint16>(info + 2))
                m_packetFrames = qFromBigEndian<quint16>(info);
            const int stated = qFromBigEndian<quint16>(head.constData() + 7);
            m_headers = stated > 0 ? stated : std::numeric_limits<int>::max();
        } else if (head.startsWith("Speex   ") && head.size() >= 80) {
            const auto field = [&](qsizetype at) {
                return qFromLittleEndian<qint32>(head.constData() + at);
            };
            m_link.codec = OggCodec::speex;
            m_link.sampleRate = field(36);
            m_link.channels = field(48);
            m_packetFrames = std::int64_t{field(56)} * std::max(field(64), 1);
            m_headers = 1 + std::clamp(field(68), 0, 100);
        } else {
            return false;
        }
        return m_link.sampleRate > 0 && m_link.channels > 0;
    }

    void takePackets(const Page& page) {
        qint64 at = page.body();
        qint64 size = 0;
        bool isRest = page.isContinued();
        bool endsPacket = false;
        for (const char lacing : page.lacing) {
            const auto piece = static_cast<unsigned char>(lacing);
            size += piece;
            if (piece == 255)
                continue;
            takePiece(at, size, !isRest, true);
            endsPacket = true;
            isRest = false;
            at += size;
            size = 0;
        }
        if (size > 0)
            takePiece(at, size, !isRest, false);
        if (endsPacket && m_packets > m_headers && page.granule != Page::noGranule)
            finish(page);
    }

    void takePiece(qint64 at, qint64 size, bool isBegin, bool isEnd) {
        constexpr qint64 largestSetup = 1 << 20;
        const bool isSetup = m_link.codec == OggCodec::vorbis && m_packets == 1;
        if (isSetup && m_setup.size() + size <= largestSetup)
            m_setup += m_file.read(at, size);
        if (isBegin)
            m_opening = m_file.read(at, std::min<qint64>(size, 2));
        if (!isEnd)
            return;
        // FLAC may leave the number of its headers open; a frame of sound begins with 14 set bits.
        const bool isFlacSound = m_link.codec == OggCodec::flac && m_opening.startsWith('\xff');
        if (m_packets >= m_headers || isFlacSound) {
            m_headers = std::min(m_headers, m_packets);
            countFrames();
        }
        ++m_packets;
    }

    void countFrames() {
        if (m_link.codec == OggCodec::opus) {
            m_frames += opusPacketFrames(m_opening);
        } else if (m_link.codec == OggCodec::vorbis) {
            if (!m_blocks)
                m_blocks = VorbisBlocks::from(m_identification, m_setup);
            const int block = m_blocks ? m_blocks->blockFrames(m_opening) : 0;
            if (m_lastBlock > 0 && block > 0)
                m_frames += (m_lastBlock + block) / 4;
            m_lastBlock = block;
        } else {
            m_frames += m_packetFrames;
        }
    }

    void finish(const Page& page) {
        m_isDone = true;
        const bool isCounted = m_link.codec != OggCodec::vorbis || m_blocks.has_value();
        // On a last page the granule position cuts off the end, not the beginning.
        if (!page.isLast() && isCounted)
            m_start = page.granule - m_frames;
        // A FLAC stream has no frames to be left out, but its blocks may be of several sizes.
        if (m_link.codec == OggCodec::flac)
            m_start = m_packetFrames > 0 ? std::max<std::int64_t>(m_start, 0) : 0;
        m_link.delay += std::max<std::int64_t>(-m_start, 0);
    }

    const ByteSource& m_file;
    OggLink m_link;
    std::vector<quint32> m_serials; ///< of all streams of the link
    std::optional<quint32> m_serial;
    QByteArray m_identification;
    QByteArray m_setup;
    QByteArray m_opening; ///< of the present packet
    std::optional<VorbisBlocks> m_blocks;
    int m_lastBlock = 0;
    int m_headers = 0;               ///< packets behind the first that are no sound
    int m_packets = 0;               ///< whole ones behind the first
    std::int64_t m_packetFrames = 0; ///< where all packets have as many
    std::int64_t m_frames = 0;
    std::int64_t m_start = 0;
    qint64 m_soundFrom = 0;
    bool m_isDone = false;
};

/// Where the link ends: at the first page of a stream that is not the link's.
qint64 endOfLink(const ByteSource& file, const LinkHead& head) {
    const auto isPage = [&](const Page& page) { return isFollowed(file, page); };
    const auto last = lastPage(file, head.soundFrom(), file.size, isPage);
    if (!last || head.holds(last->serial))
        return file.size;
    qint64 inside = head.soundFrom();
    qint64 outside = last->begin;
    qint64 searchEnd = outside;
    while (searchEnd - inside > windowBytes) {
        const qint64 middle = inside + (searchEnd - inside) / 2;
        const auto page = nextPage(file, middle, searchEnd);
        if (page && head.holds(page->serial)) {
            inside = page->begin;
        } else {
            outside = page ? page->begin : outside;
            searchEnd = middle;
        }
    }
    for (auto page = pageAt(file, inside); page && page->end() < outside;
         page = pageAt(file, page->end()))
        if (!head.holds(page->serial))
            return page->begin;
    return outside;
}

} // namespace

std::vector<OggLink> oggLinks(const ByteSource& file) {
    constexpr std::size_t mostLinks = 1000;
    std::vector<OggLink> links;
    for (qint64 at = 0; at < file.size && links.size() < mostLinks;) {
        LinkHead head(file, at);
        if (!head.read())
            break;
        OggLink link = head.link();
        link.end = endOfLink(file, head);
        const auto endsSound = [&](const Page& page) {
            return page.serial == head.serial() && page.granule != Page::noGranule;
        };
        const auto last = lastPage(file, head.soundFrom(), link.end, endsSound);
        link.length = last ? last->granule - head.start() - link.delay : 0;
        const bool follows = links.empty() || (link.codec == links[0].codec &&
                                               link.sampleRate == links[0].sampleRate &&
                                               link.channels == links[0].channels);
        if (!follows || link.length <= 0)
            break;
        at = link.end;
        links.push_back(link);
    }
    return links;
}

std::optional<OggPlace> oggPageBefore(const ByteSource& file, qint64 from, std::int64_t granule) {
    const auto first = pageAt(file, from);
    if (!first)
        return std::nullopt;
    const auto next = [&](qint64 begin, qint64 end) {
        auto page = pageAt(file, begin);
        if (!page)
            page = nextPage(file, begin, end);
        while (page && (page->serial != first->serial || page->granule == Page::noGranule))
            page = nextPage(file, page->end(), end);
        return page;
    };
    std::optional<Page> found;
    qint64 begin = from;
    qint64 end = file.size;
    while (begin < end) {
        const qint64 middle = end - begin > windowBytes ? begin + (end - begin) / 2 : begin;
        const auto page = next(middle, end);
        if (page && page->granule <= granule) {
            found = page;
            begin = page->end();
        } else if (middle > begin) {
            end = middle;
        } else {
            break;
        }
    }
    if (!found)
        return std::nullopt;
    const auto ends = std::count_if(found->lacing.begin(), found->lacing.end(),
                                    [](char piece) { return piece != '\xff'; });
    return OggPlace{found->begin, found->granule,
                    static_cast<int>(ends) - (found->isContinued() ? 1 : 0)};
}

} // namespace halvane
