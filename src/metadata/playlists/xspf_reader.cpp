// SPDX-License-Identifier: MIT
#include "metadata/playlists/xspf_reader.h"

#include "metadata/playlists/entry_location.h"

#include <QStringList>
#include <QXmlStreamReader>

#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// The toolkit keeps what it needs of each open element.
constexpr qsizetype deepest = 64;

class Reader {
  public:
    Reader(const QByteArray& contents, const QString& file)
        : m_xml(contents)
        , m_file(file) {}

    Result<PlaylistFile> read() {
        while (!m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::DTD:
            case QXmlStreamReader::EntityReference:
                return Failure{u"it declares entities"_s};
            case QXmlStreamReader::StartElement:
                m_open.append(m_xml.name().toString());
                m_text.clear();
                break;
            case QXmlStreamReader::Characters:
                m_text.append(m_xml.text().left(longestLocation - m_text.size()));
                break;
            case QXmlStreamReader::EndElement:
                take(m_open.join(u'/'));
                m_open.removeLast();
                m_text.clear();
                break;
            default:
                break;
            }
            if (!m_open.isEmpty() && m_open.front() != "playlist"_L1)
                return Failure{u"it is no list"_s};
            if (m_open.size() > deepest || m_list.entries.size() > longestPlaylist)
                return Failure{u"it is too deep or too long"_s};
        }
        if (m_xml.hasError())
            return Failure{m_xml.errorString()};
        return std::move(m_list);
    }

  private:
    // An element has ended.
    void take(const QString& place) {
        const QString text = m_text.trimmed();
        if (place == "playlist/title"_L1) {
            m_list.name = text;
        } else if (place == "playlist/trackList/track"_L1) {
            takeTrack();
        } else if (place == "playlist/trackList/track/location"_L1) {
            m_isAddress |= isAddress(text);
            if (!text.isEmpty() && !isAddress(text) && m_entry.paths.empty())
                m_entry.paths = pathsOfUri(text, m_file);
        } else if (place == "playlist/trackList/track/title"_L1) {
            m_title = text.simplified();
        } else if (place == "playlist/trackList/track/creator"_L1) {
            m_creator = text.simplified();
        } else if (place == "playlist/trackList/track/duration"_L1) {
            const double seconds = text.toDouble() / 1000;
            if (std::isfinite(seconds) && seconds > 0)
                m_entry.seconds = seconds;
        }
    }

    void takeTrack() {
        m_entry.label =
            m_creator.isEmpty() || m_title.isEmpty() ? m_title : m_creator + u" - "_s + m_title;
        if (m_entry.paths.empty() && m_isAddress)
            ++m_list.addresses;
        else
            m_list.entries.push_back(std::move(m_entry));
        m_entry = {};
        m_isAddress = false;
        m_title.clear();
        m_creator.clear();
    }

    QXmlStreamReader m_xml;
    const QString& m_file;
    QStringList m_open; // the names of the elements around
    QString m_text;     // of the innermost one, since its last child
    PlaylistFile m_list;
    PlaylistEntry m_entry;
    bool m_isAddress = false; // one of the entry's locations
    QString m_title;
    QString m_creator;
};

} // namespace

Result<PlaylistFile> readXspf(const QByteArray& contents, const QString& file) {
    return Reader(contents, file).read();
}

} // namespace halvane
