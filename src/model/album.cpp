// SPDX-License-Identifier: MIT
#include "model/album.h"

namespace halvane {

QString Album::makeID(const QString& title, const QString& artist, const QString& nameSpace) {
    const QString t = title.trimmed().toLower();
    const QString a = artist.trimmed().toLower();
    if (t.isEmpty() && a.isEmpty())
        return nameSpace + QStringLiteral("|unknown");
    return nameSpace + QLatin1Char('|') + a + QLatin1Char('|') + t;
}

} // namespace halvane
