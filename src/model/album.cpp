// SPDX-License-Identifier: MIT
#include "model/album.h"

#include <cmath>

namespace halvane {

QString Album::makeID(const QString& title, const QString& artist, const QString& nameSpace) {
    const QString t = title.trimmed().toLower();
    const QString a = artist.trimmed().toLower();
    if (t.isEmpty() && a.isEmpty())
        return nameSpace + QStringLiteral("|unknown");
    return nameSpace + QLatin1Char('|') + a + QLatin1Char('|') + t;
}

QStringList Album::colorList() const {
    QStringList names;
    for (const Color& color : colors) {
        QString name(u'#');
        for (const double part : {color.red, color.green, color.blue}) {
            const int value = static_cast<int>(std::lround(part * 255));
            name += QString::number(value, 16).rightJustified(2, QLatin1Char('0'));
        }
        names.append(name);
    }
    return names;
}

} // namespace halvane
