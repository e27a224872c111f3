// SPDX-License-Identifier: MIT
#include "model/file_url.h"

#include <QDir>

namespace halvane {

namespace {

// Whether cleaning would leave the path as it is, which holds for nearly all.
bool isStandardized(QStringView path) {
    if (!path.startsWith(u'/') || path.endsWith(u'/'))
        return false;
    for (qsizetype at = 0; at >= 0; at = path.indexOf(u'/', at + 1)) {
        const QStringView rest = path.sliced(at + 1);
        // A doubled slash or a step of dots needs cleaning. A name that begins with a dot may.
        if (rest.startsWith(u'/') || rest.startsWith(u'.'))
            return false;
    }
    return true;
}

} // namespace

QString standardizedPath(const QString& path) {
    return isStandardized(path) ? path : QDir::cleanPath(path);
}

FileUrl::FileUrl(const QString& path)
    : m_path(path)
    , m_standardized(halvane::standardizedPath(path)) {
    if (m_standardized == m_path)
        m_standardized = m_path;
}

QString FileUrl::fileName() const {
    return m_path.mid(m_path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace halvane
