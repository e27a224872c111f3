// SPDX-License-Identifier: MIT
#include "model/file_size.h"

#include <array>
#include <cmath>

namespace halvane {

using namespace Qt::StringLiterals;

QString byteCountText(qint64 bytes) {
    if (bytes < 1000)
        return bytes == 0 ? u"Zero KB"_s
                          : QString::number(bytes) + (bytes == 1 ? u" byte"_s : u" bytes"_s);
    static const std::array units{u" KB"_s, u" MB"_s, u" GB"_s, u" TB"_s, u" PB"_s, u" EB"_s};
    double value = static_cast<double>(bytes) / 1000;
    for (std::size_t unit = 0;; ++unit) {
        const double scale = unit == 0 ? 1 : 10;
        const double rounded = std::round(value * scale) / scale;
        if (rounded < 1000 || unit + 1 == units.size())
            return QString::number(rounded, 'f', rounded == std::floor(rounded) ? 0 : 1) +
                   units[unit];
        value /= 1000;
    }
}

} // namespace halvane
