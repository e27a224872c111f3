// SPDX-License-Identifier: MIT
#include "model/file_url.h"

#include <QDir>

namespace halvane {

QString standardizedPath(const QString& path) {
    return QDir::cleanPath(path);
}

FileUrl::FileUrl(const QString& path)
    : m_path(path)
    , m_standardized(halvane::standardizedPath(path)) {
    if (m_standardized == m_path)
        m_standardized = m_path;
}

QString FileUrl::fileName() const {
    return m_path.section(QLatin1Char('/'), -1);
}

} // namespace halvane
