// SPDX-License-Identifier: MIT
#include "metadata/readers/id3v2_walk.h"

#include "libav/container.h"
#include "metadata/encodings/legacy_text.h"
#include "metadata/readers/byte_order.h"

#include <QList>
#include <QStringDecoder>

namespace halvane {

namespace {

// TagLib gives frames of ID3v2.2 the names of their successors.
QByteArray modernName(const QByteArray& id) {
    constexpr const char* pairs[][2] = {
        {"TT2", "TIT2"}, {"TP1", "TPE1"}, {"TAL", "TALB"}, {"TCO", "TCON"}, {"TYE", "TDRC"}};
    for (const auto& pair : pairs)
        if (id == pair[0])
            return pair[1];
    return id == "TYER" ? QByteArray("TDRC") : id;
}

// UTF-16 with or without its mark. Writers that left it out used little-endian mostly. Text is
// big-endian when more first than second bytes are zero.
QString utf16Text(const QByteArray& bytes) {
    const QByteArray text = bytes.first(bytes.size() / 2 * 2);
    qsizetype zeroFirst = 0;
    qsizetype zeroSecond = 0;
    for (qsizetype i = 0; i < text.size(); i += 2) {
        zeroFirst += text[i] == 0;
        zeroSecond += text[i + 1] == 0;
    }
    QStringDecoder decode(QStringDecoder::Utf16LE);
    if (text.startsWith("\xfe\xff") || (!text.startsWith("\xff\xfe") && zeroFirst > zeroSecond))
        decode = QStringDecoder(QStringDecoder::Utf16BE);
    return decode(text);
}

// `encoding` is the first byte of a text frame (ID3v2.4.0 structure, 4).
QString decodedText(char encoding, const QByteArray& bytes) {
    switch (encoding) {
    case 0:
        return undecidedText(bytes.split('\0').first());
    case 1:
    case 2:
        return utf16Text(bytes);
    default:
        return QString::fromUtf8(bytes);
    }
}

} // namespace

Id3v2Walk::Id3v2Walk(BoundedFile& file, qint64 offset)
    : m_file(file) {
    OpeningBytes bytes{};
    file.read(offset, Id3v2Header::bytes, bytes.data());
    const auto header = id3v2Header(bytes);
    if (!header)
        return;
    m_version = header->version;
    m_size = header->size;
    m_position = offset + Id3v2Header::bytes;
    m_end = m_position + m_size;
}

std::optional<Id3v2Walk::Frame> Id3v2Walk::next() {
    const qint64 headerSize = m_version < 3 ? 6 : 10;
    if (m_position + headerSize > m_end)
        return std::nullopt;
    char header[10];
    if (m_file.read(m_position, headerSize, header) != headerSize || header[0] == 0)
        return std::nullopt;
    Frame frame{QByteArray(header, m_version < 3 ? 3 : 4), m_position + headerSize, 0,
                m_version < 3 || header[9] == 0};
    if (m_version < 3)
        frame.size = bigEndian32(header + 2) & 0xffffff;
    else
        frame.size = m_version == 3 ? bigEndian32(header + 4) : synchsafe32(header + 4);
    m_position = frame.offset + frame.size;
    return frame;
}

bool id3v2IsOvercrowded(BoundedFile& file, qint64 offset) {
    constexpr qint64 smallTag = 256 << 10; // too small to hold enough frames to matter
    constexpr int mostFrames = 10'000;
    Id3v2Walk walk(file, offset);
    if (walk.tagSize() <= smallTag)
        return false;
    for (int frames = 0; walk.next(); ++frames)
        if (frames > mostFrames)
            return true;
    return file.isExhausted();
}

QString id3v2Text(BoundedFile& file, qint64 tagOffset, const QByteArray& frameId) {
    constexpr qint64 longestText = 64 << 10;
    Id3v2Walk walk(file, tagOffset);
    while (const auto frame = walk.next()) {
        if (modernName(frame->id) != frameId || frame->size > longestText || !frame->isPlain)
            continue;
        const QByteArray bytes = file.read(frame->offset, frame->size);
        if (bytes.size() < 2)
            continue;
        const QString text = decodedText(bytes[0], bytes.sliced(1));
        return text.left(text.indexOf(QChar::Null));
    }
    return {};
}

} // namespace halvane
