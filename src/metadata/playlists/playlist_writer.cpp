// SPDX-License-Identifier: MIT
#include "metadata/playlists/playlist_writer.h"

#include "model/file_url.h"

#include <QSaveFile>
#include <QUrl>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// Without line ends and what XML has no place for.
QString oneLine(const QString& text) {
    QString line = QString::fromUtf8(text.toUtf8()).simplified(); // halves of characters are mended
    line.removeIf([](QChar c) {
        return c.category() == QChar::Other_Control || c.unicode() == 0xfffe ||
               c.unicode() == 0xffff;
    });
    return line;
}

QString relativePath(const QString& path, const QString& folder) {
    return path.startsWith(folder) && path.size() > folder.size() ? path.sliced(folder.size())
                                                                  : path;
}

QString uriOf(const QString& path, const QString& folder) {
    const QString relative = relativePath(path, folder);
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(relative, "/"));
    return relative.startsWith(u'/') ? u"file://"_s + encoded : encoded;
}

// A path as it stands, but where a reader would take it for something else.
QString lineOf(const QString& path, const QString& folder) {
    const bool isAmbiguous = std::any_of(
        path.cbegin(), path.cend(), [](QChar c) { return c == u'\n' || c == u'\r' || c == u'\\'; });
    if (isAmbiguous || path.back().isSpace())
        return u"file://"_s + QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
    const QString relative = relativePath(path, folder);
    const QChar first = relative.front();
    return first == u'#' || first.isSpace() || (first != u'/' && relative.contains(u':'))
               ? u"./"_s + relative
               : relative;
}

QByteArray m3uContents(const QString& folder, const QString& name,
                       const std::vector<WrittenEntry>& entries) {
    QString text = u"#EXTM3U\n#PLAYLIST:%1\n"_s.arg(oneLine(name));
    for (const WrittenEntry& entry : entries) {
        if (!entry.title.isEmpty()) {
            const double seconds = entry.seconds.value_or(-1);
            text += u"#EXTINF:"_s + QString::number(std::lround(seconds)) + u',';
            if (!entry.artist.isEmpty())
                text += oneLine(entry.artist) + u" - "_s;
            text += oneLine(entry.title) + u'\n';
        }
        text += lineOf(entry.path, folder) + u'\n';
    }
    return text.toUtf8();
}

QByteArray xspfContents(const QString& folder, const QString& name,
                        const std::vector<WrittenEntry>& entries) {
    QByteArray contents;
    QXmlStreamWriter xml(&contents);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(u"playlist"_s);
    xml.writeDefaultNamespace(u"http://xspf.org/ns/0/"_s);
    xml.writeAttribute(u"version"_s, u"1"_s);
    xml.writeTextElement(u"title"_s, oneLine(name));
    xml.writeStartElement(u"trackList"_s);
    for (const WrittenEntry& entry : entries) {
        xml.writeStartElement(u"track"_s);
        xml.writeTextElement(u"location"_s, uriOf(entry.path, folder));
        if (!entry.title.isEmpty())
            xml.writeTextElement(u"title"_s, oneLine(entry.title));
        if (!entry.artist.isEmpty())
            xml.writeTextElement(u"creator"_s, oneLine(entry.artist));
        if (entry.seconds)
            xml.writeTextElement(u"duration"_s,
                                 QString::number(std::llround(*entry.seconds * 1000)));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return contents;
}

} // namespace

QByteArray playlistContents(const QString& path, const QString& name,
                            const std::vector<WrittenEntry>& entries) {
    const QString file = standardizedPath(path);
    const QString folder = file.first(file.lastIndexOf(u'/') + 1);
    return file.endsWith(".xspf"_L1, Qt::CaseInsensitive) ? xspfContents(folder, name, entries)
                                                          : m3uContents(folder, name, entries);
}

Result<> writePlaylist(const QString& path, const QString& name,
                       const std::vector<WrittenEntry>& entries) {
    const QByteArray contents = playlistContents(path, name, entries);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
        !file.commit())
        return Failure{file.errorString()};
    return {};
}

} // namespace halvane
