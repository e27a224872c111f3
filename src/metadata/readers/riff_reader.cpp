// SPDX-License-Identifier: MIT
#include "metadata/readers/riff_reader.h"

#include "metadata/encodings/legacy_text.h"
#include "metadata/readers/byte_order.h"
#include "metadata/readers/id3v2_walk.h"
#include "metadata/readers/tag_names.h"
#include "metadata/readers/taglib_stream.h"
#include "metadata/readers/taglib_tags.h"

#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/rifffile.h>

#include <cmath>
#include <vector>

namespace halvane {

namespace {

// TagLib's list of the chunks of a file, for reading.
class ChunkFile final : public TagLib::RIFF::File {
  public:
    ChunkFile(TagLib::IOStream& stream, bool isLittleEndian)
        : TagLib::RIFF::File(&stream, isLittleEndian ? LittleEndian : BigEndian) {}

    using TagLib::RIFF::File::chunkCount;
    using TagLib::RIFF::File::chunkDataSize;
    using TagLib::RIFF::File::chunkName;
    using TagLib::RIFF::File::chunkOffset;

    [[nodiscard]] TagLib::Tag* tag() const override { return nullptr; }
    [[nodiscard]] TagLib::AudioProperties* audioProperties() const override { return nullptr; }
    bool save() override { return false; }
};

struct Chunk {
    QByteArray name;
    qint64 offset = 0;
    qint64 size = 0;
};

// The format of a WAV file: the code 0xfffe says that the real one follows further on.
struct WavFormat {
    quint16 code = 0;
    double sampleRate = 0;
    double bytesPerSecond = 0;
    int bytesPerFrame = 0;
    int bits = 0;

    explicit WavFormat(const QByteArray& chunk) {
        if (chunk.size() < 16)
            return;
        const char* p = chunk.constData();
        code = qFromLittleEndian<quint16>(p);
        sampleRate = qFromLittleEndian<quint32>(p + 4);
        bytesPerSecond = qFromLittleEndian<quint32>(p + 8);
        bytesPerFrame = qFromLittleEndian<quint16>(p + 12);
        bits = qFromLittleEndian<quint16>(p + 14);
        if (code == 0xfffe && chunk.size() >= 26)
            code = qFromLittleEndian<quint16>(p + 24);
    }
    [[nodiscard]] bool isLossless() const { return code == 1 || code == 3; } // integers and floats
};

// An 80-bit IEEE 754 number, big-endian, as AIFF writes its sample rate.
double extendedFloat(const char* bytes) {
    const int exponent = (qFromBigEndian<quint16>(bytes) & 0x7fff) - 16383 - 63;
    return std::ldexp(static_cast<double>(qFromBigEndian<quint64>(bytes + 2)), exponent);
}

bool isLosslessAiffCompression(const QByteArray& type) {
    constexpr const char* lossless[] = {"NONE", "none", "sowt", "twos", "raw ", "in24", "in32",
                                        "42ni", "23ni", "fl32", "FL32", "fl64", "FL64", "alac"};
    for (const char* name : lossless)
        if (type == name)
            return true;
    return false;
}

class RiffReader {
  public:
    RiffReader(BoundedFile& file, Container container)
        : m_file(file)
        , m_stream(file)
        , m_isWav(container == Container::wav)
        , m_chunks(m_stream, m_isWav) {}

    FileMetadata read() {
        // ID3v2 says more than the older chunks, so it is read last.
        std::vector<Chunk> id3;
        for (unsigned int i = 0; i < m_chunks.chunkCount(); ++i) {
            const auto name = m_chunks.chunkName(i);
            const Chunk chunk{QByteArray(name.data(), name.size()), m_chunks.chunkOffset(i),
                              m_chunks.chunkDataSize(i)};
            if (chunk.name == "ID3 " || chunk.name == "id3 ")
                id3.push_back(chunk);
            else if (m_isWav)
                readWavChunk(chunk);
            else
                readAiffChunk(chunk);
        }
        for (const Chunk& chunk : id3)
            readId3(chunk);
        return m_result;
    }

  private:
    // Descriptions and texts are small; more than this is not read.
    QByteArray bytes(const Chunk& chunk) {
        return m_file.read(chunk.offset, std::min<qint64>(chunk.size, 64 << 10));
    }

    void readId3(const Chunk& chunk) {
        if (id3v2IsOvercrowded(m_file, chunk.offset))
            return;
        const TagLib::ID3v2::Tag tag(&m_chunks, chunk.offset);
        addId3v2(m_result.tags, tag, m_file, chunk.offset);
    }

    void readWavChunk(const Chunk& chunk) {
        if (chunk.name == "fmt ") {
            m_format = WavFormat(bytes(chunk));
            m_result.stream.sampleRate = m_format.sampleRate;
            m_result.stream.bitsPerSample = m_format.isLossless() ? m_format.bits : 0;
        } else if (chunk.name == "fact") {
            const QByteArray fact = bytes(chunk);
            m_frames = fact.size() >= 4 ? qFromLittleEndian<quint32>(fact.constData()) : 0;
        } else if (chunk.name == "data" && m_result.stream.seconds == 0) {
            const auto size = static_cast<double>(chunk.size);
            if (m_format.isLossless() && m_format.bytesPerFrame > 0 && m_format.sampleRate > 0)
                m_result.stream.seconds =
                    std::floor(size / m_format.bytesPerFrame) / m_format.sampleRate;
            else if (m_frames > 0 && m_format.sampleRate > 0)
                m_result.stream.seconds = m_frames / m_format.sampleRate;
            else if (m_format.bytesPerSecond > 0)
                m_result.stream.seconds = size / m_format.bytesPerSecond;
        } else if (chunk.name == "LIST") {
            const QByteArray list = bytes(chunk);
            if (list.startsWith("INFO"))
                addRiffInfo(m_result.tags,
                            TagLib::RIFF::Info::Tag(TagLib::ByteVector(
                                list.constData(), static_cast<unsigned int>(list.size()))));
        }
    }

    void readAiffChunk(const Chunk& chunk) {
        if (chunk.name == "COMM") {
            readCommon(bytes(chunk));
            return;
        }
        for (const TagName& row : TagNames::aiff) {
            if (chunk.name != row.name)
                continue;
            const QString text = undecidedText(bytes(chunk).replace('\0', ""));
            if (row.field == TagField::artist) // each has a chunk
                m_result.tags.addArtists(row.field, m_authors += text);
            else
                m_result.tags.add(row.field, text);
        }
    }

    void readCommon(const QByteArray& common) {
        if (common.size() < 18)
            return;
        const double frames = bigEndian32(common.constData() + 2);
        const double rate = extendedFloat(common.constData() + 8);
        if (!(rate > 0 && rate < 1e7))
            return;
        m_result.stream.sampleRate = rate;
        const QByteArray compression = common.size() >= 22 ? common.mid(18, 4) : QByteArray("NONE");
        if (!isLosslessAiffCompression(compression))
            return; // these frames may be packets, which only a decoder can count
        m_result.stream.seconds = frames / rate;
        m_result.stream.bitsPerSample = qFromBigEndian<quint16>(common.constData() + 6);
    }

    BoundedFile& m_file;
    TagLibStream m_stream;
    bool m_isWav;
    ChunkFile m_chunks;
    WavFormat m_format{QByteArray()};
    double m_frames = 0; // of a lossy WAV, where it says
    QStringList m_authors;
    FileMetadata m_result;
};

} // namespace

FileMetadata readRiff(BoundedFile& file, Container container) {
    return RiffReader(file, container).read();
}

} // namespace halvane
