// SPDX-License-Identifier: MIT
#include "metadata/readers/rating_tags.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace halvane {

namespace {

constexpr double mostStars = 5;

double numberOf(const QString& text) {
    bool isNumber = false;
    const double number = QString(text).replace(u',', u'.').toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? number : 0;
}

// Half a star counts as a whole one, and so does less of the first.
quint8 starsOf(double share) {
    if (share <= 0 || share > 1)
        return 0;
    return static_cast<quint8>(std::max(1L, std::lround(share * mostStars)));
}

// By the least number of each star.
quint8 starsFrom(const QString& text, const std::array<double, 5>& least, double most) {
    const double number = numberOf(text);
    return number > most ? quint8(0)
                         : static_cast<quint8>(
                               std::count_if(least.cbegin(), least.cend(),
                                             [number](double limit) { return number >= limit; }));
}

} // namespace

quint8 starsOfShare(const QString& text) {
    return starsOf(numberOf(text));
}

quint8 starsOfRating(const QString& text) {
    const double number = numberOf(text);
    const bool isShare = number <= 1 && (text.contains(u'.') || text.contains(u','));
    const double scale = isShare ? 1 : number <= mostStars ? mostStars : number <= 10 ? 10 : 100;
    return starsOf(number / scale);
}

quint8 starsOfPopularity(const QString& text) {
    return starsFrom(text, {1, 60, 120, 188, 248}, 255);
}

quint8 starsOfShared(const QString& text) {
    return starsFrom(text, {1, 25, 50, 75, 99}, 100);
}

quint32 parsePlays(const QString& text) {
    constexpr double most = 1e6; // more than anybody hears
    const double plays = numberOf(text);
    return plays >= 1 && plays <= most ? static_cast<quint32>(plays) : 0;
}

} // namespace halvane
