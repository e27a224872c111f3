// SPDX-License-Identifier: MIT
#include "metadata/playlists/m3u_reader.h"

#include "metadata/encodings/legacy_text.h"
#include "metadata/playlists/entry_location.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView nameDirective("#PLAYLIST:");
constexpr QLatin1StringView entryDirective("#EXTINF:");

bool isDirective(QByteArrayView line, QLatin1StringView directive) {
    return QLatin1StringView(line).startsWith(directive, Qt::CaseInsensitive);
}

// Without the mark that tells the encoding. None if it is no text.
std::optional<QByteArray> utf8OrLegacy(const QByteArray& contents) {
    const auto marked = QStringConverter::encodingForData(contents);
    QByteArray text = contents;
    if (marked && *marked == QStringConverter::Utf8) {
        text = contents.sliced(3);
    } else if (marked && contents.size() % 2 == 0) {
        QStringDecoder decode(*marked);
        text = QString(decode(contents)).toUtf8();
    }
    if (text.contains('\0'))
        return std::nullopt;
    return text;
}

// The lines that mean something, in portions, as text. The lines of a portion are in one encoding.
// Portions keep the cost of finding it in step with the length of the list.
class Lines {
  public:
    Lines(const QByteArray& text, const QString& file)
        : m_rest(text)
        , m_file(file)
        , m_isUtf8(text.isValidUtf8()) {}

    bool takeNext(QString& line) {
        if (m_next == m_count && !fill())
            return false;
        line = m_lines[m_next++];
        return true;
    }

  private:
    static bool isWanted(QByteArrayView line) {
        return !line.isEmpty() && (!line.startsWith('#') || isDirective(line, nameDirective) ||
                                   isDirective(line, entryDirective));
    }

    QByteArrayView takeLine() {
        const auto end = std::find_if(m_rest.begin(), m_rest.end(),
                                      [](char c) { return c == '\n' || c == '\r'; });
        const qsizetype length = end - m_rest.begin();
        const QByteArrayView line = m_rest.first(length).trimmed();
        m_rest = m_rest.sliced(std::min(length + 1, m_rest.size()));
        return line;
    }

    bool fill() {
        m_next = m_count = 0;
        while (!m_rest.isEmpty() && m_count < m_lines.size()) {
            const QByteArrayView line = takeLine();
            if (isWanted(line))
                m_lines[m_count++] = undecided(line.first(std::min(line.size(), longestLocation)));
        }
        if (!m_isUtf8)
            decide();
        return m_count > 0;
    }

    [[nodiscard]] QString undecided(QByteArrayView line) const {
        return m_isUtf8 ? QString::fromUtf8(line) : undecidedText(line.toByteArray());
    }

    void decide() {
        std::array<QString*, portion> texts;
        for (std::size_t i = 0; i < m_count; ++i)
            texts[i] = &m_lines[i];
        decideTexts(std::span(texts).first(m_count), m_file);
    }

    static constexpr std::size_t portion = 64;

    QByteArrayView m_rest;
    const QString& m_file;
    const bool m_isUtf8;
    std::array<QString, portion> m_lines;
    std::size_t m_count = 0;
    std::size_t m_next = 0;
};

// "SECONDS,Artist - Title". Some programs put attributes between the two, in quotes.
void readFacts(QStringView facts, PlaylistEntry& entry) {
    qsizetype comma = 0;
    for (bool isQuoted = false; comma < facts.size(); ++comma) {
        if (facts[comma] == u'"')
            isQuoted = !isQuoted;
        else if (facts[comma] == u',' && !isQuoted)
            break;
    }
    const QStringView length = facts.first(comma).trimmed();
    const qsizetype blank = length.indexOf(u' ');
    const double seconds = (blank < 0 ? length : length.first(blank)).toDouble();
    if (std::isfinite(seconds) && seconds > 0)
        entry.seconds = seconds;
    entry.label = facts.sliced(std::min(comma + 1, facts.size())).toString().simplified();
}

} // namespace

Result<PlaylistFile> readM3u(const QByteArray& contents, const QString& file) {
    const auto text = utf8OrLegacy(contents);
    if (!text)
        return Failure{u"it is no text"_s};
    PlaylistFile list;
    PlaylistEntry entry;
    Lines lines(*text, file);
    for (QString line; lines.takeNext(line);) {
        if (line.startsWith(nameDirective, Qt::CaseInsensitive)) {
            list.name = line.sliced(nameDirective.size());
        } else if (line.startsWith(entryDirective, Qt::CaseInsensitive)) {
            readFacts(QStringView(line).sliced(entryDirective.size()), entry);
        } else if (isAddress(line)) {
            ++list.addresses;
            entry = {};
        } else {
            entry.paths = pathsOfText(line, file);
            list.entries.push_back(std::exchange(entry, {}));
            if (list.entries.size() > longestPlaylist)
                return Failure{u"it is too long"_s};
        }
    }
    return list;
}

} // namespace halvane
