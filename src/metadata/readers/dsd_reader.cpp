// SPDX-License-Identifier: MIT
#include "metadata/readers/dsd_reader.h"

#include "libav/container_figures.h"
#include "metadata/encodings/legacy_text.h"
#include "metadata/readers/bounded_source.h"
#include "metadata/readers/byte_order.h"
#include "metadata/readers/id3v2_walk.h"
#include "metadata/readers/plain_taglib_file.h"
#include "metadata/readers/taglib_tags.h"

#include <taglib/id3v2tag.h>

#include <algorithm>

namespace halvane {

namespace {

// TagLib 1 knows neither container, and both are a few fields and an ID3v2 tag.

void addId3v2At(TagFields& fields, BoundedFile& file, qint64 offset) {
    if (file.read(offset, 3) != "ID3" || id3v2IsOvercrowded(file, offset))
        return;
    PlainTagLibFile plain(file);
    const TagLib::ID3v2::Tag tag(&plain.file(), static_cast<taglib::Offset>(offset));
    addId3v2(fields, tag, file, offset);
}

// The headers of a DSF file, little-endian: the chunk "DSD " (28 bytes, at its end where the tag
// begins), the chunk "fmt ".
FileMetadata readDsf(BoundedFile& file) {
    FileMetadata result;
    const QByteArray head = file.read(0, 80);
    if (head.size() < 80 || head.mid(28, 4) != "fmt ")
        return result;
    const char* format = head.constData() + 28;
    result.stream.sampleRate = qFromLittleEndian<quint32>(format + 28);
    result.stream.bitsPerSample = 1;
    const auto bits = static_cast<double>(dsfBits(byteSource(file)).value_or(0));
    if (result.stream.sampleRate > 0)
        result.stream.seconds = bits / result.stream.sampleRate;
    if (const auto tagAt = qFromLittleEndian<qint64>(head.constData() + 20); tagAt > 0)
        addId3v2At(result.tags, file, tagAt);
    return result;
}

// The chunks of a DSDIFF file: four letters, a size of eight bytes, big-endian, and a filling byte
// behind an odd size.
class DsdiffReader {
  public:
    explicit DsdiffReader(BoundedFile& file)
        : m_file(file) {}

    FileMetadata read() {
        constexpr qint64 formHead = 16;
        readChunks(formHead, m_file.size());
        StreamFacts& stream = m_result.stream;
        if (m_frameRate > 0)
            stream.seconds = m_compressedFrames / m_frameRate;
        else if (stream.sampleRate > 0 && m_channels > 0)
            stream.seconds = m_soundBytes * 8 / m_channels / stream.sampleRate;
        if (m_tagAt > 0) // says more than the two texts, so it is read last
            addId3v2At(m_result.tags, m_file, m_tagAt);
        return std::move(m_result);
    }

  private:
    void readChunks(qint64 at, qint64 end) {
        constexpr int mostChunks = 1000;
        for (int chunks = 0; chunks < mostChunks && end - at >= 12; ++chunks) {
            const QByteArray head = m_file.read(at, 12);
            if (head.size() < 12)
                return;
            const auto size = qFromBigEndian<qint64>(head.constData() + 4);
            at += 12;
            if (size < 0)
                return;
            take(head.first(4), at, std::min(size, end - at));
            if (size > end - at)
                return;
            at += size + (size & 1);
        }
    }

    void take(const QByteArray& name, qint64 at, qint64 size) {
        if (name == "PROP" || name == "DST ")
            readChunks(at + (name == "PROP" ? 4 : 0), at + size); // the first begins with its kind
        else if (name == "DIIN")
            readChunks(at, at + size);
        else if (name == "FS  ")
            m_result.stream.sampleRate = bigEndian32(fixed(at, 4).constData());
        else if (name == "CHNL")
            m_channels = qFromBigEndian<quint16>(fixed(at, 2).constData());
        else if (name == "DSD ")
            m_soundBytes = static_cast<double>(size);
        else if (name == "FRTE") {
            m_compressedFrames = bigEndian32(fixed(at, 6).constData());
            m_frameRate = qFromBigEndian<quint16>(fixed(at, 6).constData() + 4);
        } else if (name == "ID3 ")
            m_tagAt = at;
        else if (name == "DITI")
            m_result.tags.add(TagField::title, text(at, size));
        else if (name == "DIAR")
            m_result.tags.add(TagField::artist, text(at, size));
        m_result.stream.bitsPerSample = 1;
    }

    QByteArray fixed(qint64 at, qint64 size) {
        return m_file.read(at, size).leftJustified(size, '\0');
    }

    // A length of four bytes and as many letters.
    QString text(qint64 at, qint64 size) {
        constexpr qint64 longest = 4096;
        const qint64 length = bigEndian32(fixed(at, 4).constData());
        return undecidedText(m_file.read(at + 4, std::min({length, size - 4, longest})));
    }

    BoundedFile& m_file;
    FileMetadata m_result;
    int m_channels = 0;
    double m_soundBytes = 0;
    double m_compressedFrames = 0;
    double m_frameRate = 0; ///< of compressed sound, in frames a second
    qint64 m_tagAt = 0;
};

} // namespace

FileMetadata readDsd(BoundedFile& file, Container container) {
    return container == Container::dsf ? readDsf(file) : DsdiffReader(file).read();
}

} // namespace halvane
