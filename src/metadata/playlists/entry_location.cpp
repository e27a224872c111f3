// SPDX-License-Identifier: MIT
#include "metadata/playlists/entry_location.h"

#include "metadata/encodings/legacy_text.h"
#include "model/file_url.h"

#include <QByteArray>

#include <algorithm>
#include <cctype>
#include <climits>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

bool isSchemeLetter(QChar c) {
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.');
}

bool isFileUrl(QStringView location) {
    return location.startsWith("file:/"_L1, Qt::CaseInsensitive);
}

// The host of file://HOST/PATH.
QStringView hostOf(QStringView location) {
    const QStringView rest = location.sliced(5);
    if (!rest.startsWith("//"_L1))
        return {};
    const qsizetype end = rest.indexOf(u'/', 2);
    return rest.first(end < 0 ? rest.size() : end).sliced(2);
}

bool isHexDigit(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// A sign that stands for itself is left alone: not every program encodes what it should.
QByteArray decodedPercents(const QByteArray& text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QByteArray digits = text[i] == '%' ? text.mid(i + 1, 2) : QByteArray();
        const bool isByte =
            digits.size() == 2 && std::all_of(digits.cbegin(), digits.cend(), isHexDigit);
        bytes.append(isByte ? static_cast<char>(digits.toUInt(nullptr, 16)) : text[i]);
        i += isByte ? 2 : 0;
    }
    return bytes;
}

// The bytes are UTF-8 by right, and in some programs the system's old encoding.
QString withoutPercents(const QString& text, const QString& file) {
    const QByteArray bytes = decodedPercents(text.toUtf8());
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes);
    QString decoded = undecidedText(bytes);
    QString* const texts[] = {&decoded};
    decideTexts(texts, file);
    return decoded;
}

bool hasDrive(QStringView path) {
    return path.size() > 2 && path[1] == u':' && path[2] == u'/' && path[0].unicode() < 0x80 &&
           path[0].isLetter();
}

// Takes a path in, unless it can be none or is there.
void add(std::vector<QString>& paths, QString path, const QString& file) {
    if (hasDrive(path))
        path.prepend(u'/');
    if (!path.startsWith(u'/'))
        path.prepend(QStringView(file).first(file.lastIndexOf(u'/') + 1));
    path = standardizedPath(path);
    while (path.startsWith("/../"_L1)) // the root is its own parent
        path.remove(0, 3);
    if (path.contains(QChar(0)) || path.toUtf8().size() >= PATH_MAX)
        return;
    if (std::find(paths.cbegin(), paths.cend(), path) == paths.cend())
        paths.push_back(std::move(path));
}

} // namespace

bool isAddress(const QString& location) {
    if (isFileUrl(location)) {
        const QStringView host = hostOf(location);
        return !host.isEmpty() && host.compare("localhost"_L1, Qt::CaseInsensitive) != 0;
    }
    const qsizetype scheme = location.indexOf("://"_L1);
    return scheme > 1 && std::all_of(location.cbegin(), location.cbegin() + scheme, isSchemeLetter);
}

std::vector<QString> pathsOfText(const QString& location, const QString& file) {
    if (isFileUrl(location))
        return pathsOfUri(location, file);
    std::vector<QString> paths;
    // In a name of this system a backslash is rare. Elsewhere it parts folders.
    if (location.contains(u'\\')) {
        const QString slashed = QString(location).replace(u'\\', u'/');
        add(paths, slashed, file);
        add(paths, withoutPercents(slashed, file), file);
    }
    add(paths, location, file);
    add(paths, withoutPercents(location, file), file);
    return paths;
}

std::vector<QString> pathsOfUri(const QString& location, const QString& file) {
    QString path = location;
    if (isFileUrl(location)) {
        path = location.sliced(5);
        if (path.startsWith("//"_L1))
            path = path.sliced(2 + hostOf(location).size());
        if (path.isEmpty())
            return {};
    }
    std::vector<QString> paths;
    add(paths, withoutPercents(path, file), file);
    add(paths, path, file);
    if (path.contains(u'\\'))
        add(paths, path.replace(u'\\', u'/'), file);
    return paths;
}

} // namespace halvane
